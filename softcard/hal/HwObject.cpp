#include "hal/HwObject.h"

#include "softcard/Funnel.h"

using namespace softcard;

HwObject::HwObject() : vlan_id_(0) {}

HwObject::~HwObject() = default;

std::string HwObject::ToString(bool deep) const {
  return Call<Named("HwObject::ToString")>(Args(deep), [&] { return "vlan=" + std::to_string(vlan_id_); });
}

unsigned int HwObject::vlan_id() const {
  return Call<Named("HwObject::vlan_id")>(Args(), [&] { return vlan_id_; });
}
