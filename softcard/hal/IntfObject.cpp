#include "hal/IntfObject.h"

#include "softcard/Funnel.h"

using namespace softcard;

IntfObject::IntfObject() : id_(0), vrf_(0), macsa_{}, mtu_(0), l3_flags_(0) {}

std::string IntfObject::ToString(bool deep) const {
  return Access("IntfObject::ToString", Args("deep", deep), [&] { return IntfText(*this, deep); });
}

int IntfObject::id() const {
  return Access("IntfObject::id", Args(), [&] { return id_; });
}

unsigned int IntfObject::vrf() const {
  return Access("IntfObject::vrf", Args(), [&] { return vrf_; });
}

MacAddress IntfObject::macsa() const {
  return Access("IntfObject::macsa", Args(), [&] { return macsa_; });
}

unsigned int IntfObject::mtu() const {
  return Access("IntfObject::mtu", Args(), [&] { return mtu_; });
}

unsigned int IntfObject::l3_flags() const {
  return Access("IntfObject::l3_flags", Args(), [&] { return l3_flags_; });
}

TunnelObject& IntfObject::tunnel() {
  return *Access("IntfObject::tunnel", Args(), [&] { return &tunnel_; });
}
