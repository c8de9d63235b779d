#pragma once

#include <array>

#include "hal/HwObject.h"
#include "hal/TunnelObject.h"

using MacAddress = std::array<unsigned char, 6>;

struct IntfCounters {
  unsigned long long packets = 0, bytes = 0;
};

class IntfObject : protected IntfCounters, public HwObject {
 public:
  IntfObject() = default;
  IntfObject(const IntfObject&) = delete;
  IntfObject& operator=(const IntfObject&) = delete;

  virtual TunnelObject& tunnel() { return tunnel_object; }
  virtual unsigned l3_flags() const { return flags; }
  virtual unsigned mtu() const { return mtu_bytes; }
  virtual MacAddress macsa() const { return mac; }
  virtual unsigned vrf() const { return vrf_number; }
  virtual int id() const { return number; }
  std::string ToString(bool deep) const override;

  TunnelObject tunnel_object;
  MacAddress mac{};
  unsigned flags = 0, mtu_bytes = 0, vrf_number = 0;
  int number = 0;
};
