#include "hal/EgressManager.h"

#include "softcard/Funnel.h"

using namespace softcard;

int EgressManager::CreateEgress(int intf, unsigned char* mac, unsigned short vlan_id, int unit, int port,
                                unsigned int label, bool to_cpu, bool drop, ExpLabelControl control) {
  return Call<Named("EgressManager::CreateEgress")>(
      Args(intf, mac, vlan_id, unit, port, label, to_cpu, drop, control), [&] {
        const Egress values{intf, {}, vlan_id, port, label, to_cpu, drop, control};
        return OnUnit(unit,
                      [&] { return TheTables().egresses.Create(values, mac, TheTables().intfs, TheTables().ports); });
      });
}

int EgressManager::UpdateEgress(int egress, int intf, unsigned char* mac, unsigned short vlan_id, int unit, int port,
                                unsigned int label, bool to_cpu, bool drop, ExpLabelControl control) {
  return Call<Named("EgressManager::UpdateEgress")>(
      Args(egress, intf, mac, vlan_id, unit, port, label, to_cpu, drop, control), [&] {
        const Egress values{intf, {}, vlan_id, port, label, to_cpu, drop, control};
        return OnUnit(unit, [&] {
          return TheTables().egresses.Update(egress, values, mac, TheTables().intfs, TheTables().ports);
        });
      });
}

int EgressManager::DeleteEgress(int egress) {
  return Call<Named("EgressManager::DeleteEgress")>(Args(egress), [&] { return TheTables().egresses.Delete(egress); });
}
