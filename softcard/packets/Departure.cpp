#include <algorithm>
#include <string>

#include "softcard/packets/Walk.h"

namespace softcard {
namespace {

using std::to_string;

bool Swaps(const Egress& egress) { return egress.HasLabel() && egress.control == EXP_LABEL_CONTROL_SWAP; }

/// What lies below the outermost label.
Packet WithoutLabel(const Packet& packet) {
  const View rest = packet.bytes.From(kLabelBytes);
  if (GetEntry(packet.bytes.data).bottom) return {Packet::Kind::kOpaque, rest};
  const StackEntry next = GetEntry(rest.data);
  return {Packet::Kind::kLabelled, rest, next.ttl, next.exp};
}

/// Where the programmed state is at odds with itself.
void TellOddities(const Egress& egress, const IntfValues& intf, const LabelStack* initiator, Story* story) {
  if (egress.vlan_id != kNoVlan && egress.vlan_id != intf.vlan_id) {
    story->Tell(OddityStep{"the egress object is on VLAN " + to_string(egress.vlan_id) + ", its interface on VLAN " +
                           to_string(intf.vlan_id) + ": the frame is tagged with the interface's"});
  }
  if (!initiator && intf.tunnel == TunnelObject::kTunnelTypeMpls) {
    story->Tell(OddityStep{"interface " + to_string(intf.id) +
                           " starts an MPLS tunnel and has no initiator: it pushes nothing"});
  }
}

}  // namespace

void Walk::ToDestination(unsigned destination, Packet& packet) {
  way_.destination = destination;
  const DestinationIdCorrelator* const record = FindRecord(records_, destination);
  if (!record) {
    return Dropped(Drop::kNoRecord, [&] { return "destination " + to_string(destination) + " is not installed"; });
  }
  const int egress_id = record->egress_id;
  if (told()) story_->Tell(MakeRow(static_cast<int>(destination), *record));
  if (egress_id == 0) {
    return Dropped(Drop::kNoEgress,
                   [&] { return "destination " + to_string(destination) + " is a VLAN, not a way to a next hop"; });
  }

  const auto egress_text = [&](const char* what) { return "egress object " + to_string(egress_id) + what; };
  const Egress* const egress = tables_.egresses.Find(egress_id);
  if (!egress) return Dropped(Drop::kNoEgress, [&] { return egress_text(" does not exist"); });
  if (told()) story_->Tell(MakeRow(egress_id, *egress, tables_.ports));
  if (egress->drop) return Dropped(Drop::kAction, [&] { return egress_text(" drops"); });
  if (egress->to_cpu) return ToCpu(egress_id);

  if (hops_ > 0 && packet.ttl <= hops_) {
    return Dropped(Drop::kTtl, [&] { return "its TTL is " + to_string(packet.ttl); });
  }
  if (egress->intf == kNoIntf) {
    return Dropped(Drop::kNoInterface, [&] { return egress_text(" is bound to no interface"); });
  }
  const Intf* const intf = tables_.intfs.Find(egress->intf);
  if (!intf) {
    return Dropped(Drop::kInterfaceGone, [&] {
      return egress_text(" is bound to interface ") + to_string(egress->intf) + ", which has been deleted";
    });
  }
  if (told() && record->intf_id > 0 && record->intf_id != egress->intf) {
    story_->Tell(OddityStep{"the destination's record names interface " + to_string(record->intf_id) +
                            ", its egress object is bound to " + to_string(egress->intf)});
  }
  return Encapsulated(*egress, *intf, packet);
}

void Walk::Encapsulated(const Egress& egress, const Intf& intf, Packet& packet) {
  const Framing& framing = intf;
  const LabelStack* const initiator = tables_.initiators.Find(egress.intf);
  if (told()) {
    story_->Tell(MakeRow(intf));
    if (initiator) story_->Tell(MakeRow(egress.intf, *initiator));
    TellOddities(egress, ValuesOf(intf), initiator, story_);
  }

  packet.ttl -= hops_;
  const Headers headers{egress.mac, framing.mac, framing.vlan_id, LabelsFor(egress, initiator, packet)};
  const std::size_t pushed = headers.labels.size();
  std::optional<Packet> unlabelled;
  if (packet.kind == Packet::Kind::kLabelled && (takes_label_ || Swaps(egress))) {
    unlabelled = WithoutLabel(packet);
    if (pushed == 0) {  // what was below is outermost now, and must not outlive the label
      if (unlabelled->kind == Packet::Kind::kOpaque) unlabelled = ParseIp(unlabelled->bytes);
      if (!unlabelled) return Malformed("below the last label lies no IP packet");
      unlabelled->ttl = std::min(unlabelled->ttl, packet.ttl);
    }
  }
  const Packet& below = unlabelled ? *unlabelled : packet;
  if (below.kind == Packet::Kind::kEthernet && pushed == 0) {
    return Dropped(Drop::kMissingLabel, [&] { return "a whole frame takes the label of a virtual circuit"; });
  }

  const std::size_t size = kLabelBytes * pushed + below.bytes.size;
  if (size > framing.mtu) {
    return Dropped(Drop::kMtu, [&] {
      return "it would send " + to_string(size) + " bytes with labels; the MTU of interface " + to_string(egress.intf) +
             " is " + to_string(framing.mtu);
    });
  }
  const std::optional<int> port = FindPort(egress.port, packet);
  if (!port) return NoPort(egress.port);
  WriteFrame(headers, below, &out_, story_);
  return Sent(*port);
}

PushedLabels Walk::LabelsFor(const Egress& egress, const LabelStack* initiator, const Packet& packet) const {
  PushedLabels labels;
  const auto push = [&](unsigned label, unsigned exp, unsigned ttl) {
    if (label != kImplicitNull) labels.Push(label, exp, ttl);
  };
  if (egress.HasLabel()) push(egress.label, packet.exp, packet.ttl);
  if (!initiator) return labels;
  std::optional<int> told_map;
  for (const bcm_mpls_egress_label_t& record : *initiator) {
    unsigned exp = record.exp;
    if (record.flags & BCM_MPLS_EGRESS_LABEL_EXP_REMARK) {
      const auto map = tables_.exp_maps.find(record.qos_map_id);
      const bool mapped = map != tables_.exp_maps.end();
      exp = mapped ? map->second[packet.exp] : packet.exp;
      if (mapped && told() && told_map != record.qos_map_id) {
        story_->Tell(ExpMapStep{record.qos_map_id, packet.exp, exp});
        told_map = record.qos_map_id;
      }
    }
    push(record.label, exp, record.flags & BCM_MPLS_EGRESS_LABEL_TTL_SET ? record.ttl : packet.ttl);
  }
  return labels;
}

void Walk::ToCpu(int egress_id) {
  out_.assign(arrived_.data, arrived_.data + arrived_.size);
  if (told()) story_->Tell(ToCpuStep{"egress object " + to_string(egress_id) + " sends to the CPU", arrived_});
  way_.fate = Way::Fate::kToCpu;
}

void Walk::NoPort(int port) {
  return Dropped(Drop::kNoPort, [&] { return "port " + to_string(port) + " does not exist"; });
}

std::optional<int> Walk::FindPort(int port, const Packet& packet) {
  if (tables_.ports.IsLag(port)) return FindMember(port, packet);
  return tables_.ports.Exists(port) ? std::optional<int>(port) : std::nullopt;
}

int Walk::FindMember(int lag, const Packet& packet) {
  const std::vector<int>* const members = tables_.lags.Find(lag);
  if (!members) return lag;
  const uint64_t place = uint64_t{FlowHash(packet)} * members->size() >> 32;
  const int chosen = (*members)[static_cast<std::size_t>(place)];
  if (told()) story_->Tell(MembersRow(lag, *members, tables_.ports));
  return chosen;
}

void Walk::Sent(int port) {
  if (told()) story_->Tell(SentStep{port, out_});
  way_.fate = Way::Fate::kSent;
  way_.port = port;
}

}  // namespace softcard
