#include "hal/TunnelObject.h"

#include "softcard/Funnel.h"

using namespace softcard;

TunnelObject::TunnelObject() : type_(kTunnelTypeNone), ttl_(0), mpls_capability_(HAL_MPLS_CAPABILITY_NONE) {}

TunnelObject::EnumTunnelType TunnelObject::type() const {
  return Call<Named("TunnelObject::type")>(Args(), [&] { return type_; });
}

void TunnelObject::set_type(EnumTunnelType type) {
  Call<Named("TunnelObject::set_type")>(Args(type), [&] { type_ = type; });
}

void TunnelObject::set_ttl(unsigned int ttl) {
  Call<Named("TunnelObject::set_ttl")>(Args(ttl), [&] { ttl_ = ttl; });
}

void TunnelObject::set_mpls_capability(en_HalMplsCapabilities capability) {
  Call<Named("TunnelObject::set_mpls_capability")>(Args(static_cast<int>(capability)),
                                                   [&] { mpls_capability_ = capability; });
}

std::string TunnelObject::TunnelTypeToString(EnumTunnelType type) {
  return Call<Named("TunnelObject::TunnelTypeToString")>(
      Args(type), [&] { return calls::Text(calls::Kind::kTunnelType, calls::ToValue(type)); });
}
