#include "tests/model/Rules.h"

namespace model {

// MPLS encapsulations, and the check of their vectors.
const char* const kMplsRules = R"(
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
)";

}  // namespace model
