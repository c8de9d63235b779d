#pragma once

#include <string>

class HwObject {
  bool dirty = false;

 public:
  unsigned vlan = 0;

  virtual ~HwObject() {}
  virtual std::string ToString(bool deep) const { return deep ? "object and all it holds" : "object"; }
  virtual unsigned vlan_id() const { return vlan; }
  virtual bool is_dirty() const { return dirty; }
};
