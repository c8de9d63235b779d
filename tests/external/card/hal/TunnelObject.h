#pragma once

#include <string>

#include "HalEncapsulationTypes.h"

class TunnelObject {
 public:
  enum EnumTunnelType : int { kTunnelTypeNone, kTunnelTypeMpls, kTunnelTypeGre };

  virtual ~TunnelObject() {}
  virtual void set_ttl(unsigned value) { ttl = value; }
  virtual void set_type(EnumTunnelType value) { kind = value; }
  virtual EnumTunnelType type() const { return kind; }
  virtual void set_mpls_capability(en_HalMplsCapabilities value) { capability = value; }

  static std::string TunnelTypeToString(EnumTunnelType type);

  en_HalMplsCapabilities capability = HAL_MPLS_CAPABILITY_NONE;
  EnumTunnelType kind = kTunnelTypeNone;
  std::string peer;
  unsigned ttl = 0;
};
