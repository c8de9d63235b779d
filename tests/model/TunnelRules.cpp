#include "tests/model/Rules.h"

namespace model {

// Tunnels, their initiators and label stacks.
const char* const kTunnelRules = R"(
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
