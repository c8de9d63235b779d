#include "tests/model/Rules.h"

namespace model {

// Start-up, VRFs and VLAN encapsulations.
const char* const kVlanRules = R"(
table init
               | egress = SwitchControl unit 230 1   | negative: log 3 Could not init encapsulation module L3 egress mode: bcm_err='{error egress}' [{egress}]
               | ingress = SwitchControl unit 232 1  | negative: log 3 Could not init encapsulation module L3 ingress mode: bcm_err='{error ingress}' [{ingress}] ; end -1
  egress < 0   | end -1                              |
               | log 7 Encapsulation module initialized successfully |
               | end 0                               |

table install-vrf
               | rv = CreateIngress unit vrf 0       |
               | end rv                              |

table destroy-vrf
               | rv = DeleteIngress unit vrf         |
               | end rv                              |

table install-vlan
               | log 7 Installing outgoing encapsulation for VLAN {destination dest} |
               | vlan = LimidToVlan limid            |
               | slot = LocalSlot                    |
               | ProtocolEnabler slot                |
               | ProtocolEnable unit vlan            | nonzero: log 3 Error enabling VLAN Protocol Packet Control on VLAN {vlan}
               | each station-flags                  |
               | InsertStation vlan 4095 mac flags   | negative: end -1
               | Associate vlan vrf                  | nonzero: RemoveStation vlan ; end -1
               | intf = CreateIntf unit vrf vlan mac mtu 0 | negative: log 3 Error on installing vlan outgoing encapsulation of {vlan-id vlan} ; RemoveStation vlan ; Dissociate vlan vrf ; end -1
               | store dest intf 0                   |
               | end 0                               |

table replace-vlan
               | log 7 Updating outgoing encapsulation for vlan {destination dest} |
               | find record dest                    | missing: end -1
               | each station-flags                  |
               | vlan = LimidToVlan limid            |
               | UpdateStation vlan 4095 mac flags   | negative: end -1
               | object base record.intf             | missing: moved = 0
  base.found = 1 & base.vrf != vrf | moved = 1       |
  moved = 1    | Dissociate base.vlan base.vrf       | nonzero: end -1
  moved = 1    | Associate vlan vrf                  | nonzero: end -1
               | UpdateIntf record.intf unit vrf vlan mac mtu 0 | negative: log 3 Error on updating vlan {destination dest} ; end -1
               | end 0                               |

table destroy-vlan
               | log 7 Destroying outgoing encapsulation for vlan {destination dest} |
               | find record dest                    | missing: end -1
               | object base record.intf             | missing: end -1
               | RemoveStation base.vlan             | negative: end -1
               | Dissociate base.vlan base.vrf       | nonzero: InsertStation base.vlan 4095 base.mac base.flags ; end -1
               | DeleteIntf unit record.intf         | negative: log 3 Error on destroying vlan {destination dest} ; Associate base.vlan base.vrf ; InsertStation base.vlan 4095 base.mac base.flags ; end -1
               | slot = LocalSlot                    |
               | ProtocolDisabler slot               |
               | ProtocolDisable unit base.vlan      | nonzero: log 3 Error disabling VLAN Protocol Packet Control on VLAN {base.vlan}
               | forget dest                         |
               | end 0                               |

table station-flags
  item = 1     | flags = 32                          |
               | end 1                               |
)";

}  // namespace model
