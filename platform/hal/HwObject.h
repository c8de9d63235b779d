#ifndef HAL_HW_OBJECT_H
#define HAL_HW_OBJECT_H

#include <string>

#pragma GCC visibility push(default)

/// An object on the chip that belongs to a VLAN.
class HwObject {
 public:
  HwObject();
  virtual ~HwObject();

  /// The object in words; `deep`: with all it holds.
  virtual std::string ToString(bool deep) const;

  unsigned int vlan_id() const;

 private:
  friend class IntfManager;

  unsigned int vlan_id_;
};

#pragma GCC visibility pop

#endif
