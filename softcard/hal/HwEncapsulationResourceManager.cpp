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

template <typename Table>
std::string Usage(const char* things, const Table& table) {
  return std::to_string(table.rows().size()) + " of " + std::to_string(table.size()) + ' ' + things;
}

std::string ResourceText(bool deep) {
  if (!deep) return "resources";
  const Tables& tables = TheTables();
  return "resources: " + Usage("interfaces", tables.intfs) + ", " + Usage("egress objects", tables.egresses) + ", " +
         Usage("tunnel initiators", tables.initiators) + ", " + Usage("my-station entries", tables.stations) + ", " +
         Usage("VRFs", tables.vrfs) + ", " + Usage("VLAN associations", tables.associations);
}

}  // namespace

HwEncapsulationResourceManager::~HwEncapsulationResourceManager() = default;

std::string HwEncapsulationResourceManager::ToString(bool deep) const {
  return Call<Named("HwEncapsulationResourceManager::ToString")>(Args(deep), [&] { return ResourceText(deep); });
}

HwEncapsulationResourceManager* HwEncapsulationResourceManager::GetInstance() {
  // Never destroyed: modules keep the pointer until the process is gone.
  static HwEncapsulationResourceManager* const manager = new HwEncapsulationResourceManager;
  return Call<Named("HwEncapsulationResourceManager::GetInstance")>(Args(), [] { return manager; });
}

IntfManager* HwEncapsulationResourceManager::intf_mng() {
  return Call<Named("HwEncapsulationResourceManager::intf_mng")>(Args(), [] { return &the_intf_manager; });
}

EgressManager* HwEncapsulationResourceManager::egress_mng() {
  return Call<Named("HwEncapsulationResourceManager::egress_mng")>(Args(), [] { return &the_egress_manager; });
}

IngressManager* HwEncapsulationResourceManager::ingress_mng() {
  return Call<Named("HwEncapsulationResourceManager::ingress_mng")>(Args(), [] { return &the_ingress_manager; });
}

MyStationManager* HwEncapsulationResourceManager::my_station_mng() {
  return Call<Named("HwEncapsulationResourceManager::my_station_mng")>(Args(), [] { return &the_my_station_manager; });
}
