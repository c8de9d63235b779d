#include "hal/TunnelObject.h"

#include "softcard/Funnel.h"

using namespace softcard;

TunnelObject::TunnelObject() : type_(kTunnelTypeNone), ttl_(0), mpls_capability_(HAL_MPLS_CAPABILITY_NONE) {}

TunnelObject::EnumTunnelType TunnelObject::type() const {
  return Access("TunnelObject::type", Args(), [&] { return type_; });
}

void TunnelObject::set_type(EnumTunnelType type) {
  Call("TunnelObject::set_type", Args("type", type), [&] { type_ = type; });
}

void TunnelObject::set_ttl(unsigned int ttl) {
  Call("TunnelObject::set_ttl", Args("ttl", ttl), [&] { ttl_ = ttl; });
}

void TunnelObject::set_mpls_capability(en_HalMplsCapabilities capability) {
  Call("TunnelObject::set_mpls_capability", Args("capability", static_cast<int>(capability)),
       [&] { mpls_capability_ = capability; });
}

std::string TunnelObject::TunnelTypeToString(EnumTunnelType type) {
  return Access("TunnelObject::TunnelTypeToString", Args("type", type), [&] { return Text(type); });
}
