#ifndef HAL_HW_ENCAPSULATION_RESOURCE_MANAGER_H
#define HAL_HW_ENCAPSULATION_RESOURCE_MANAGER_H

#include <string>

#pragma GCC visibility push(default)

class IntfManager;
class EgressManager;
class IngressManager;
class MyStationManager;

/// Hands out the managers of the chip's encapsulation resources. All pointers are non-null and owned by the platform.
class HwEncapsulationResourceManager {
 public:
  virtual ~HwEncapsulationResourceManager();

  /// The resources in words; `deep`: with all they hold.
  virtual std::string ToString(bool deep) const;

  static HwEncapsulationResourceManager* GetInstance();

  IntfManager* intf_mng();
  EgressManager* egress_mng();
  IngressManager* ingress_mng();
  MyStationManager* my_station_mng();
};

#pragma GCC visibility pop

#endif
