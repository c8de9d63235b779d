#include <vector>

#include "recorder/Request.h"

namespace recorder {
namespace {

template <typename Enum>
std::vector<Enum> As(const std::vector<int>& numbers) {
  std::vector<Enum> items;
  items.reserve(numbers.size());
  for (const int number : numbers) items.push_back(static_cast<Enum>(number));
  return items;
}

}  // namespace

int Make(const Request& r, const HalL3MplsEncapsulationInterface& module) {
  auto bytes = r.mac;
  unsigned char* const mac = bytes ? bytes->data() : nullptr;
  const auto mpls_caps = [&] { return As<en_HalMplsCapabilities>(r.items); };
  const auto vlan_caps = [&] { return As<en_HalVlanCapabilities>(r.items); };
  const auto actions = [&] { return As<ActionFlags>(r.items); };
  const auto action = static_cast<ActionFlags>(r.action);
  switch (r.operation) {
    case Operation::kStart: return 0;
    case Operation::kInit: return module.InitEncapsulationModule();
    case Operation::kInstallVrf: return module.InstallVrf(r.id);
    case Operation::kDestroyVrf: return module.DestroyVrf(r.id);
    case Operation::kInstallVlan:
      return module.InstallVlanOutgoingEncapsulation(r.id, r.limid, r.vrf, r.mtu, mac, vlan_caps());
    case Operation::kReplaceVlan:
      return module.ReplaceVlanOutgoingEncapsulation(r.id, r.limid, r.vrf, r.mtu, mac, vlan_caps());
    case Operation::kDestroyVlan: return module.DestroyVlanOutgoingEncapsulation(r.id);
    case Operation::kInstallHost:
      return module.InstallHostOutgoingEncapsulation(r.id, r.vlan_destination_id, r.limid, actions(), mac);
    case Operation::kReplaceHost:
      return module.ReplaceHostOutgoingEncapsulation(r.id, r.vlan_destination_id, r.limid, actions(), mac);
    case Operation::kDestroyHost: return module.DestroyHostOutgoingEncapsulation(r.id);
    case Operation::kInstallMpls:
      return module.InstallMplsUnprotectedOutgoingEncapsulation(r.id, r.vlan_destination_id, r.limid, mac, r.labels,
                                                                mpls_caps(), action);
    case Operation::kReplaceMpls:
      return module.ReplaceMplsUnprotectedOutgoingEncapsulation(r.id, r.vlan_destination_id, r.limid, mac, r.labels,
                                                                mpls_caps(), action);
    case Operation::kDestroyMpls: return module.DestroyMplsUnprotectedOutgoingEncapsulation(r.id);
  }
  return 0;
}

}  // namespace recorder
