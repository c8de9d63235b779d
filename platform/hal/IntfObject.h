#ifndef HAL_INTF_OBJECT_H
#define HAL_INTF_OBJECT_H

#include <array>
#include <string>

#include "hal/HwObject.h"
#include "hal/TunnelObject.h"

#pragma GCC visibility push(default)

/// Six bytes in transmission order.
typedef std::array<unsigned char, 6> MacAddress;

/// An L3 interface of the chip. Owned by `IntfManager`, valid until the interface is deleted.
class IntfObject : public HwObject {
 public:
  IntfObject();

  std::string ToString(bool deep) const override;

  int id() const;
  unsigned int vrf() const;
  MacAddress macsa() const;  ///< source address of the frames that leave through it
  unsigned int mtu() const;  ///< in bytes
  unsigned int l3_flags() const;
  TunnelObject& tunnel();

 private:
  friend class IntfManager;

  int id_;
  unsigned int vrf_;
  MacAddress macsa_;
  unsigned int mtu_;
  unsigned int l3_flags_;
  TunnelObject tunnel_;
};

#pragma GCC visibility pop

#endif
