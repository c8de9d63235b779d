#ifndef HAL_TUNNEL_OBJECT_H
#define HAL_TUNNEL_OBJECT_H

#include <string>

#include "HalEncapsulationTypes.h"

#pragma GCC visibility push(default)

/// The tunnel that an L3 interface starts, as the common library remembers it.
class TunnelObject {
 public:
  enum EnumTunnelType : int {
    kTunnelTypeNone = 0,
    kTunnelTypeMpls = 1,  ///< the interface has an MPLS tunnel initiator
  };

  TunnelObject();

  EnumTunnelType type() const;
  void set_type(EnumTunnelType type);
  void set_ttl(unsigned int ttl);
  void set_mpls_capability(en_HalMplsCapabilities capability);

  static std::string TunnelTypeToString(EnumTunnelType type);

 private:
  friend class IntfManager;

  EnumTunnelType type_;
  unsigned int ttl_;
  en_HalMplsCapabilities mpls_capability_;
};

#pragma GCC visibility pop

#endif
