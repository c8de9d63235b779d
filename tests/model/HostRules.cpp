#include "tests/model/Rules.h"

namespace model {

// Host encapsulations, and ports.
const char* const kHostRules = R"(
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
)";

}  // namespace model
