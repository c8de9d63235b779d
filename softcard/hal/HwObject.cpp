#include "hal/HwObject.h"

#include "softcard/Funnel.h"

using namespace softcard;

HwObject::HwObject() : vlan_id_(0) {}

HwObject::~HwObject() = default;

std::string HwObject::ToString(bool deep) const {
  return Access("HwObject::ToString", Args("deep", deep), [&] { return Fields(" ", "vlan", vlan_id_); });
}

unsigned int HwObject::vlan_id() const {
  return Access("HwObject::vlan_id", Args(), [&] { return vlan_id_; });
}
