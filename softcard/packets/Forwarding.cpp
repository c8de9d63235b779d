#include "softcard/packets/Forwarding.h"

#include <utility>

namespace softcard {
namespace {

constexpr size_t kLabelBytes = 4;

struct StackEntry {
  unsigned label;
  unsigned exp;
  unsigned ttl;
};

/// EXP and TTL as the packet brings them.
struct Priority {
  unsigned exp = 0;
  unsigned ttl = 255;
};

Priority PacketPriority(const Packet& packet) {
  const auto byte = [&](size_t i) -> unsigned { return packet.bytes[i]; };
  const size_t size = packet.bytes.size();
  if (packet.ether_type == kEtherTypeIpv4 && size >= 20) return {byte(1) >> 5, byte(8)};
  if (packet.ether_type == kEtherTypeIpv6 && size >= 40) return {byte(0) >> 1 & 7, byte(7)};
  if (packet.ether_type == kEtherTypeMpls && size >= kLabelBytes) return {byte(2) >> 1 & 7, byte(3)};
  return {};
}

/// The labels that the packet gets, the outermost first.
std::vector<StackEntry> PushedLabels(const LabelStack* initiator, const Egress& egress, const Priority& priority) {
  std::vector<StackEntry> stack;
  if (initiator)
    for (auto record = initiator->rbegin(); record != initiator->rend(); ++record)
      stack.push_back({record->label, record->flags & BCM_MPLS_EGRESS_LABEL_EXP_REMARK ? priority.exp : record->exp,
                       record->flags & BCM_MPLS_EGRESS_LABEL_TTL_SET ? record->ttl : priority.ttl});
  if (egress.HasLabel()) stack.push_back({egress.label, priority.exp, priority.ttl});
  return stack;
}

/// Network byte order, whatever the host's.
void Append16(Bytes* bytes, unsigned value) {
  bytes->push_back(static_cast<unsigned char>(value >> 8));
  bytes->push_back(static_cast<unsigned char>(value));
}

Bytes Frame(const Egress& egress, const IntfValues& intf, const std::vector<StackEntry>& stack, const Packet& packet) {
  Bytes frame(egress.mac.begin(), egress.mac.end());
  frame.insert(frame.end(), intf.mac.begin(), intf.mac.end());
  Append16(&frame, kEtherTypeVlan);
  Append16(&frame, intf.vlan_id);
  Append16(&frame, stack.empty() ? packet.ether_type : kEtherTypeMpls);
  for (size_t i = 0; i < stack.size(); ++i) {
    const bool bottom = i + 1 == stack.size() && packet.ether_type != kEtherTypeMpls;
    Append16(&frame, stack[i].label >> 4);
    Append16(&frame, (stack[i].label & 0xF) << 12 | stack[i].exp << 9 | (bottom ? 0x100 : 0) | stack[i].ttl);
  }
  frame.insert(frame.end(), packet.bytes.begin(), packet.bytes.end());
  return frame;
}

std::string PushText(const StackEntry& entry) {
  return "push label=" + std::to_string(entry.label) + " exp=" + std::to_string(entry.exp) +
         " ttl=" + std::to_string(entry.ttl);
}

}  // namespace

Packet Packet::Ip(Bytes bytes) {
  const bool version6 = !bytes.empty() && bytes[0] >> 4 == 6;
  return {version6 ? kEtherTypeIpv6 : kEtherTypeIpv4, std::move(bytes)};
}

Outcome Forward(const Tables& tables, int egress_id, const Packet& packet) {
  Outcome outcome{};
  const auto stop = [&](Outcome::Fate fate, const std::string& reason) {
    outcome.fate = fate;
    outcome.reason = "egress object " + std::to_string(egress_id) + ' ' + reason;
    outcome.trace.push_back((fate == Outcome::Fate::kToCpu ? "to the CPU: " : "dropped: ") + outcome.reason);
    return outcome;
  };

  const Egress* const egress = tables.egresses.Find(egress_id);
  if (!egress) return stop(Outcome::Fate::kDropped, "does not exist");
  outcome.trace.push_back(Text(MakeRow(egress_id, *egress, tables.ports)));
  if (egress->drop) return stop(Outcome::Fate::kDropped, "drops");
  if (egress->to_cpu) {
    outcome.port = "cpu";
    outcome.frame = packet.bytes;
    return stop(Outcome::Fate::kToCpu, "sends to the CPU");
  }
  if (egress->intf == kNoIntf) return stop(Outcome::Fate::kDropped, "is bound to no interface");

  const IntfObject* const object = tables.intfs.Find(egress->intf);
  if (!object)
    return stop(Outcome::Fate::kDropped,
                "is bound to interface " + std::to_string(egress->intf) + ", which has been deleted");
  const IntfValues intf = ValuesOf(*object);
  outcome.trace.push_back(Text(MakeRow(*object)));

  const LabelStack* const initiator = tables.initiators.Find(egress->intf);
  if (initiator) outcome.trace.push_back(Text(MakeRow(egress->intf, *initiator)));
  const std::vector<StackEntry> stack = PushedLabels(initiator, *egress, PacketPriority(packet));
  for (const StackEntry& entry : stack) outcome.trace.push_back(PushText(entry));

  const size_t length = kLabelBytes * stack.size() + packet.bytes.size();
  if (length > intf.mtu)
    return stop(Outcome::Fate::kDropped, "would send " + std::to_string(length) +
                                             " bytes with labels; the MTU of interface " +
                                             std::to_string(egress->intf) + " is " + std::to_string(intf.mtu));

  outcome.fate = Outcome::Fate::kSent;
  outcome.port = tables.ports.Name(egress->port);
  outcome.frame = Frame(*egress, intf, stack, packet);
  outcome.trace.push_back("sent through " + outcome.port + ", " + std::to_string(outcome.frame.size()) + " bytes");
  return outcome;
}

}  // namespace softcard
