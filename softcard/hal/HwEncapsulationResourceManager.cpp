#include "hal/HwEncapsulationResourceManager.h"

#include "hal/EgressManager.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/MyStationManager.h"
#include "softcard/Funnel.h"

using namespace softcard;

namespace {

IntfManager the_intf_manager;
EgressManager the_egress_manager;
IngressManager the_ingress_manager;
MyStationManager the_my_station_manager;

std::string Usage(const char* things, size_t used, unsigned size) {
  return Text(used) + " of " + Text(size) + ' ' + things;
}

std::string ResourceText(bool deep) {
  if (!deep) return "resources";
  const Tables& tables = TheTables();
  return "resources: " + Usage("interfaces", tables.intfs.rows().size(), tables.intfs.size()) + ", " +
         Usage("egress objects", tables.egresses.rows().size(), tables.egresses.size()) + ", " +
         Usage("tunnel initiators", tables.initiators.rows().size(), tables.initiators.size()) + ", " +
         Usage("my-station entries", tables.stations.rows().size(), tables.stations.size()) + ", " +
         Usage("VRFs", tables.vrfs.rows().size(), tables.vrfs.size()) + ", " +
         Usage("VLAN associations", tables.associations.rows().size(), tables.associations.size());
}

}  // namespace

HwEncapsulationResourceManager::~HwEncapsulationResourceManager() = default;

std::string HwEncapsulationResourceManager::ToString(bool deep) const {
  return Access("HwEncapsulationResourceManager::ToString", Args("deep", deep), [&] { return ResourceText(deep); });
}

HwEncapsulationResourceManager* HwEncapsulationResourceManager::GetInstance() {
  // Never destroyed: modules keep the pointer until the process is gone.
  static HwEncapsulationResourceManager* const manager = new HwEncapsulationResourceManager;
  return Access("HwEncapsulationResourceManager::GetInstance", Args(), [] { return manager; });
}

IntfManager* HwEncapsulationResourceManager::intf_mng() {
  return Access("HwEncapsulationResourceManager::intf_mng", Args(), [] { return &the_intf_manager; });
}

EgressManager* HwEncapsulationResourceManager::egress_mng() {
  return Access("HwEncapsulationResourceManager::egress_mng", Args(), [] { return &the_egress_manager; });
}

IngressManager* HwEncapsulationResourceManager::ingress_mng() {
  return Access("HwEncapsulationResourceManager::ingress_mng", Args(), [] { return &the_ingress_manager; });
}

MyStationManager* HwEncapsulationResourceManager::my_station_mng() {
  return Access("HwEncapsulationResourceManager::my_station_mng", Args(), [] { return &the_my_station_manager; });
}
