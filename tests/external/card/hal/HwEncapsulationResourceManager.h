#pragma once

#include <memory>
#include <string>

#include "hal/EgressManager.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/MyStationManager.h"

class HwEncapsulationResourceManager {
 public:
  static HwEncapsulationResourceManager* GetInstance();

  HwEncapsulationResourceManager();
  virtual ~HwEncapsulationResourceManager();
  virtual std::string ToString(bool deep) const;

  MyStationManager* my_station_mng() { return &stations_; }
  IngressManager* ingress_mng() { return &ingresses_; }
  EgressManager* egress_mng() { return &egresses_; }
  IntfManager* intf_mng() { return intfs_.get(); }

 private:
  MyStationManager stations_;
  IngressManager ingresses_;
  EgressManager egresses_;
  std::unique_ptr<IntfManager> intfs_;
};
