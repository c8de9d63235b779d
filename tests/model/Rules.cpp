#include "Rules.h"

namespace model {

// A line is: condition | step | what its failure brings. Lines are taken top to bottom; a line counts when its condition
// holds. A step's failure (negative, nonzero, false or missing, as the column says) brings the listed steps; `end` ends
// the table with its value. `run` takes another table, whose `end` value is its result; `each` takes one per entry of
// the request's list, as `item`, until one ends with 0. README.md explains the steps and names.
const char* const kRules = R"(
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

table install-host
               | log 7 Installing outgoing encapsulation for host {destination dest} |
               | find record dest                    |
  record.found = 1 | log 3 There is already a host with {destination dest}. Can't create a new one. |
  record.found = 1 | end -1                          |
  base-id != 0 | find parent base-id                 | missing: end -1
  base-id != 0 | object base parent.intf             | missing: log 3 Couldn't install outgoing encapsulation for host {destination dest}, because {intf-id parent.intf} wasn't found ; end -1
               | run host-port                       |
               | egress = CreateEgress intf mac vlan unit port -1 cpu drop 0 | negative: log 3 Couldn't install outgoing encapsulation for host {destination dest} ; end -1
               | store dest intf egress              |
               | end 0                               |

table replace-host
               | log 7 Updating outgoing encapsulation for host {destination dest} |
               | find record dest                    | missing: run install-host ; end result
  base-id != 0 | find parent base-id                 | missing: end -1
  base-id != 0 | object base parent.intf             | missing: end -1
               | run host-port                       |
               | rv = UpdateEgress record.egress intf mac vlan unit port -1 cpu drop 0 | negative: log 3 Update of the host {destination dest} failed ; end rv
               | rewrite dest intf record.egress     |
               | end 0                               |

table destroy-host
               | log 7 Destroying outgoing encapsulation for host {destination dest} |
               | find record dest                    | missing: log 4 Couldn't find DestinationIdCorrelator with host {destination dest}, but it is OK since it would be destroyed. ; end 0
               | DeleteEgress record.egress          | negative: log 3 Couldn't destroy outgoing encapsulation for host {destination dest} ; end -1
               | forget dest                         |
               | end 0                               |

table host-port
  base-id = 0  | intf = -1                           |
  base-id = 0  | vlan = 0                            |
  base-id != 0 | intf = parent.intf                  |
  base-id != 0 | vlan = base.vlan                    |
               | run port                            |
               | each host-action                    |
               | end 1                               |

table host-action
  item = 1     | drop = 1                            |
  item = 2     | cpu = 1                             |
               | end 1                               |

table port
               | LimidToType limid                   | negative: limid.type = 0
               | LimidToIndex limid                  | negative: limid.index = 0
               | LimidToName limid                   | negative: limid.named = 0
               | log 7 Converting {limid limid} to port |
               | is = LimidIsFromType limid 3        |
  is != 0      | port = port-table                   | missing: throw HAL ID not found
  is != 0      | end 1                               |
               | is = LimidIsEthernet limid          |
  is != 0      | port = port-table                   | missing: throw HAL ID not found
  is != 0      | end 1                               |
               | is = LimidIsFromType limid 2        |
  is != 0      | port = lag-table                    | missing: throw HAL ID not found
  is != 0      | end 1                               |
               | log 7 Invalid Lim ID. Returning invalid gport |
               | port = -18                          |
               | end 1                               |

table install-mpls
               | log 7 Installing outgoing encapsulation for mpls {destination dest} |
               | run check-vectors                   | false: end -1
  action = 2   | end -1                              |
               | find record dest                    |
  record.found = 1 | log 3 There is already an outgoind encapsulation with {destination dest}. Can't create a new one. |
  record.found = 1 | end -1                          |
               | find parent base-id                 | missing: end -1
               | object base parent.intf             | missing: end -1
               | run mpls-port                       |
               | intf = parent.intf                  |
               | each install-capability             | false: end -1
               | store dest intf egress              |
               | end 0                               |

table install-capability
  item = 1     | log 6 Protection action is not implemented yet |
  item = 2     | run install-swap                    | false: run install-refused ; end 0
  item = 3     | run install-tunnel                  | false: run install-refused ; end 0
  item = 4     | run install-tunnel                  | false: run install-refused ; end 0
  item = 5     | run install-vc                      | false: run install-refused ; end 0
  item = 5     | intf = -1                           |
  item < 1     | log 3 Wrong {capability item} with {destination dest} |
  item < 1     | end 0                               |
  item > 5     | log 3 Wrong {capability item} with {destination dest} |
  item > 5     | end 0                               |
               | end 1                               |

table install-refused
               | log 3 Can't install {capability item} encapsulation with {destination dest} |

table replace-mpls
               | log 7 Updating outgoing encapsulation for mpls {destination dest} |
               | run check-vectors                   | false: end -1
  action = 2   | end -1                              |
               | find record dest                    | missing: log 3 Couldn't find DestinationIdCorrelator with mpls {destination dest} ; end -1
               | intf = record.intf                  |
               | egress = record.egress              |
  intf != -1   | object own intf                     | missing: end -1
  intf != -1   | log 6 Mpls Intf Object: {object own} |
               | find parent base-id                 | missing: end -1
               | object base parent.intf             | missing: end -1
               | log 6 Vlan Intf Object: {object base} |
               | run mpls-port                       |
               | each replace-capability             | false: end -1
               | rewrite dest intf egress            |
               | end 0                               |

table replace-capability
  item = 1     | log 6 Protection action is not implemented yet |
  item = 2 & own.found = 0 | run replace-refused     |
  item = 2 & own.found = 0 | end 0                   |
  item = 2     | run replace-swap                    | false: run replace-refused ; end 0
  item = 3     | run replace-tunnel                  | false: run replace-refused ; end 0
  item = 4     | run replace-tunnel                  | false: run replace-refused ; end 0
  item = 3     | notify dest port                    |
  item = 4     | notify dest port                    |
  item = 5     | run replace-vc                      | false: run replace-refused ; end 0
  item < 1     | log 4 {capability item} with {destination dest} |
  item < 1     | end 0                               |
  item > 5     | log 4 {capability item} with {destination dest} |
  item > 5     | end 0                               |
               | end 1                               |

table replace-refused
               | log 3 Can't update {capability item} encapsulation with {destination dest} |

table destroy-mpls
               | log 7 Destroying outgoing encapsulation for mpls {destination dest} |
               | find record dest                    | missing: end -1
               | DeleteEgress record.egress          |
  record.intf != -1 | object own record.intf         |
  own.found = 1 & own.tunnel = 1 | run clear-initiator record.intf |
  own.found = 1 & own.tunnel = 1 | log 7 Destroying {object own} |
  own.found = 1 & own.tunnel = 1 | DeleteIntf unit record.intf |
               | forget dest                         |
               | end 0                               |

table mpls-port
               | run port                            |
  action = 1   | port = -18                          |
  action = 1   | drop = 1                            |

table check-vectors
  items = 0    | log 4 No capability provided! Returning false. |
  items = 0    | end 0                               |
               | each check-item                     | false: end 0
  counter != 1 | log 4 Invalid counter action ({counter}) to configure mpls tunnel! Returning false. |
  counter != 1 | end 0                               |
               | end 1                               |

table check-item
  item = 1     | log 6 Tunnel Mpls Protection is not available and it will be ignored! |
  item = 1     | end 1                               |
  item = 4 & labels = 0 | log 4 Push action without labels! Returning false. |
  item = 4 & labels = 0 | end 0                      |
  item = 5 & labels = 0 | log 4 VC label action without labels! Returning false. |
  item = 5 & labels = 0 | end 0                      |
               | add counter 1                       |
               | end 1                               |

table install-vc
  first = 3    | log 3 Invalid label informed!       |
  first = 3    | end 0                               |
               | log 7 Installing tunnel outgoing encapsulation for {capability item}: {first} (Total labels informed: {labels}) |
               | egress = CreateEgress base.id mac base.vlan unit port first 0 drop 2 | negative: log 3 Error creating an egress for tunnel {capability item}! ; end 0
               | end 1                               |

table replace-vc
  first = 3    | log 3 Invalid label informed!       |
  first = 3    | end 0                               |
               | log 7 Updating tunnel outgoing encapsulation for {capability item}: {first} (Total labels informed: {labels}) |
               | UpdateEgress egress base.id mac base.vlan unit port first 0 drop 2 | negative: log 3 Error updating an egress for tunnel {capability item}! ; end 0
               | end 1                               |

table install-swap
               | log 7 Installing tunnel outgoing encapsulation for {capability item} |
  labels >= 2  | intf = CreateIntf unit base.vrf base.vlan base.mac base.mtu 0 | negative: log 3 Error creating an intf for tunnel {capability item}! ; end 0
  labels >= 2  | run set-initiator intf              | negative: DeleteIntf unit intf ; end 0
               | run swapped-label                   |
               | egress = CreateEgress intf mac base.vlan unit port swapped 0 drop 1 | negative: run undo-swap ; log 3 Error creating an egress for tunnel {capability item}! ; end 0
               | end 1                               |

table undo-swap
  labels >= 2  | run clear-initiator base.id         |
  labels >= 2  | DeleteIntf unit intf                |

table swapped-label
               | swapped = first                     |
  labels = 0   | swapped = -1                        |
  first = 3    | swapped = -1                        |

table replace-swap
               | log 7 Updating tunnel outgoing encapsulation for {capability item}. Old tunnel type is {tunnel-type own.tunnel} and labels size is {labels} |
               | run swapped-label                   |
  own.tunnel = 1 | run tunnel-to-swap                |
  own.tunnel = 1 | end result                        |
  labels >= 2  | run plain-to-swap-and-push          |
  labels >= 2  | end result                          |
               | run plain-to-swap                   |
               | end result                          |

table tunnel-to-swap
               | run clear-initiator intf            | negative: end 0
  labels < 2   | DeleteEgress egress                 |
  labels < 2   | DeleteIntf unit intf                |
  labels < 2   | intf = base.id                      |
  labels < 2   | run install-swap                    |
  labels < 2   | end 1                               |
               | intf = UpdateIntf intf unit base.vrf base.vlan base.mac base.mtu 0 | negative: log 3 Error updating an intf for tunnel {capability item}! ; end 0
               | run set-initiator intf              | negative: end 0
               | UpdateEgress egress intf mac base.vlan unit port swapped 0 drop 1 | negative: log 3 Error updating an egress for tunnel {capability item}! ; end 0
               | end 1                               |

table plain-to-swap-and-push
               | intf = CreateIntf unit base.vrf base.vlan base.mac base.mtu 0 | negative: log 3 Error updating an intf for tunnel {capability item}! ; end 0
               | run set-initiator intf              | negative: DeleteIntf unit intf ; end 0
               | UpdateEgress egress intf mac base.vlan unit port swapped 0 drop 1 | negative: log 3 Error updating an egress for tunnel {capability item}! ; run clear-initiator intf ; DeleteIntf unit intf ; end 0
               | end 1                               |

table plain-to-swap
  intf != base.id | log 7 Intf changed, so updated it to {base.id}. |
               | intf = base.id                      |
  swapped = 0  | DeleteEgress egress                 |
  swapped = 0  | egress = CreateEgress intf mac base.vlan unit port 0 0 drop 1 | negative: log 3 Error creating an egress for tunnel {capability item}! ; end 0
  swapped != 0 | UpdateEgress egress intf mac base.vlan unit port swapped 0 drop 1 | negative: log 3 Error updating an egress for tunnel {capability item}! ; end 0
               | end 1                               |

table install-tunnel
               | log 7 Installing tunnel outgoing encapsulation for {capability item} |
               | intf = CreateIntf unit base.vrf base.vlan base.mac base.mtu 0 | negative: log 3 Error creating an intf for tunnel {capability item}! ; end 0
               | run set-initiator intf              | negative: DeleteIntf unit intf ; end 0
               | egress = CreateEgress intf mac base.vlan unit port -1 0 drop 0 | negative: run clear-initiator intf ; DeleteIntf unit intf ; log 3 Error creating an egress for tunnel {capability item}! ; end 0
               | end 1                               |

table replace-tunnel
               | log 7 Updating tunnel outgoing encapsulation for {capability item}. |
               | run clear-initiator intf            | negative: end 0
               | intf = UpdateIntf intf unit base.vrf base.vlan base.mac base.mtu 0 | negative: log 3 Error updating an intf for tunnel {capability item}! ; end 0
               | run set-initiator intf              | negative: end 0
               | UpdateEgress egress intf mac base.vlan unit port 0 0 drop 0 | negative: log 3 Error updating an egress for tunnel {capability item}! ; end 0
               | end 1                               |

table set-initiator
               | log 7 FillMplsLabels - {capability item}, labels size is {labels} |
               | exp = ExpMapId                      |
               | InitLabel                           |
               | InitLabel                           |
               | record0.flags = 1                   |
               | count = 0                           |
  item = 2     | run swap-label                      |
  item = 4     | run push-labels                     |
               | object target argument              | missing: end -7
               | SetTtl 255                          |
               | SetType                             |
               | SetCapability item                  |
               | rv = SetInitiator unit argument count | negative: log 3 Error setting tunnel initiator ({intf-id argument}, rv={rv})
               | end rv                              |

table swap-label
  second != 0 & second != 3 | log 7 Tunnel Label 0 is {second} |
  second != 0 & second != 3 | record0.label = second |
  second != 0 & second != 3 | count = 1              |

table push-labels
               | record0.flags = 17                  |
               | record0.map = exp                   |
  first != 0 & first != 3 | log 7 Tunnel Label 0 is {second} |
  first != 0 & first != 3 | record0.label = first    |
  first != 0 & first != 3 | count = 1                |
  second != 0 & second != 3 & count = 1 | run push-second-label |
  second != 0 & second != 3 & count = 0 | run push-only-second-label |

table push-second-label
               | log 7 Tunnel Label 1 is {second}    |
               | record1.label = second              |
               | record1.flags = 17                  |
               | record1.map = exp                   |
               | count = 2                           |
               | end 1                               |

table push-only-second-label
               | log 7 Tunnel Label 0 is {second}    |
               | record0.label = second              |
               | count = 1                           |

table clear-initiator
               | rv = ClearInitiator unit argument   | negative: run clear-refused
               | end rv                              |

table clear-refused
  rv != -16    | log 3 Error clearing tunnel initiator ({intf-id argument}, rv={rv}) |
)";

}  // namespace model
