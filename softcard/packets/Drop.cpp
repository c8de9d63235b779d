#include "softcard/packets/Drop.h"

namespace softcard {

const char* DropName(Drop drop) {
  switch (drop) {
    case Drop::kNotRouted: return "not-routed";
    case Drop::kNoRoute: return "no-route";
    case Drop::kMissingLabel: return "no-label";
    case Drop::kNoRecord: return "no-record";
    case Drop::kNoEgress: return "no-egress";
    case Drop::kNoInterface: return "no-interface";
    case Drop::kInterfaceGone: return "interface-gone";
    case Drop::kMtu: return "mtu";
    case Drop::kTtl: return "ttl";
    case Drop::kAction: return "action";
    case Drop::kNoPort: return "no-port";
    case Drop::kMalformed: return "malformed";
  }
  return "unknown";
}

}  // namespace softcard
