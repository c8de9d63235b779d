#include "hal/EgressManager.h"

#include "softcard/Funnel.h"

using namespace softcard;

int EgressManager::CreateEgress(int intf, unsigned char* mac, unsigned short vlan_id, int unit, int port,
                                unsigned int label, bool to_cpu, bool drop, ExpLabelControl control) {
  return Call("EgressManager::CreateEgress",
              Args("intf", intf, "mac", mac, "vlan", vlan_id, "unit", unit, "port", port, "label", Label{label},
                   "to_cpu", to_cpu, "drop", drop, "control", control),
              [&] {
                const Egress values{intf, {}, vlan_id, port, label, to_cpu, drop, control};
                return OnUnit(unit, [&] { return TheTables().egresses.Create(values, mac); });
              });
}

int EgressManager::UpdateEgress(int egress, int intf, unsigned char* mac, unsigned short vlan_id, int unit, int port,
                                unsigned int label, bool to_cpu, bool drop, ExpLabelControl control) {
  return Call("EgressManager::UpdateEgress",
              Args("egress", egress, "intf", intf, "mac", mac, "vlan", vlan_id, "unit", unit, "port", port, "label",
                   Label{label}, "to_cpu", to_cpu, "drop", drop, "control", control),
              [&] {
                const Egress values{intf, {}, vlan_id, port, label, to_cpu, drop, control};
                return OnUnit(unit, [&] { return TheTables().egresses.Update(egress, values, mac); });
              });
}

int EgressManager::DeleteEgress(int egress) {
  return Call("EgressManager::DeleteEgress", Args("egress", egress),
              [&] { return TheTables().egresses.Delete(egress); });
}
