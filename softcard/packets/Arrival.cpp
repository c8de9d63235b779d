#include <algorithm>
#include <cstring>

#include "softcard/packets/Walk.h"

namespace softcard {
namespace {

constexpr unsigned kReservedVlan = 4095;
constexpr unsigned kLastHop = 1;  ///< a TTL that no router sends on
constexpr const char* kCutOff = "the Ethernet header is cut off";

}  // namespace

void Walk::FromWire(int port) {
  if (told()) story_->Tell(ArrivalStep{port, arrived_.size});
  if (!tables_.ports.IsEthernet(port)) {
    return Dropped(Drop::kNoPort, [&] { return tables_.ports.Name(port) + " is no Ethernet port of this card"; });
  }
  if (const unsigned* const destination = tables_.attachments.Find(port)) {
    std::optional<Packet> frame = ParseEthernet(arrived_);
    if (!frame) return Malformed(kCutOff);
    if (told()) story_->Tell(AttachmentRow(port, *destination, tables_.ports));
    return ToDestination(*destination, *frame);
  }

  if (arrived_.size < kEthernetBytes) return Malformed(kCutOff);
  const unsigned char* const bytes = arrived_.data;
  std::size_t at = kEthernetBytes;
  unsigned type = Get16(bytes + 2 * kMacBytes);
  unsigned vlan_id = kNoVlan;
  if (type == kEtherTypeVlan) {
    if (arrived_.size < kEthernetBytes + kTagBytes) return Malformed(kCutOff);
    vlan_id = Get16(bytes + at) & kVlanBits;
    type = Get16(bytes + at + 2);
    at += kTagBytes;
  }
  if (vlan_id == kReservedVlan) return Malformed("VLAN 4095 is reserved");
  if (!IsMyStation(vlan_id, bytes)) {
    return Dropped(Drop::kNotRouted, [&] {
      return "no my-station entry has " + calls::Text(calls::Kind::kMac, calls::ToValue(bytes)) +
             (vlan_id == kNoVlan ? " without a VLAN" : " on VLAN " + std::to_string(vlan_id));
    });
  }
  const unsigned* const vrf = tables_.associations.Find(vlan_id);
  if (!vrf) return Dropped(Drop::kNotRouted, [&] { return "VLAN " + std::to_string(vlan_id) + " is in no VRF"; });
  if (told()) story_->Tell(MakeRow(vlan_id, *vrf));

  switch (type) {
    case kEtherTypeIpv4: return Routed(*vrf, ParseIpv4(arrived_.From(at)), 255);
    case kEtherTypeIpv6: return Routed(*vrf, ParseIpv6(arrived_.From(at)), 255);
    case kEtherTypeMpls: return Labelled(*vrf, arrived_.From(at));
    default:
      return Dropped(Drop::kNotRouted, [&] {
        return "Ethernet type " + calls::Text(calls::Kind::kHex, calls::ToValue(type)) + " is not routed";
      });
  }
}

bool Walk::IsMyStation(unsigned vlan_id, const unsigned char* mac) {
  const auto has_mac = [&](const Station& station) { return std::memcmp(station.mac.data(), mac, kMacBytes) == 0; };
  const auto told_of = [&](unsigned entry_vlan_id, const Station& station) {
    if (told()) story_->Tell(MakeRow(entry_vlan_id, station));
    return true;
  };
  const Station* const own = tables_.stations.Find(vlan_id);
  if (own && has_mac(*own)) return told_of(vlan_id, *own);

  // A mask lets the entry of another VLAN match; of several, the one of the lowest VLAN.
  const Station* lowest = nullptr;
  unsigned lowest_vlan_id = 0;
  for (const auto& [entry_vlan_id, station] : tables_.stations.rows()) {
    const bool has_vlan = ((vlan_id ^ entry_vlan_id) & station.vlan_mask & kVlanBits) == 0;
    if (has_vlan && has_mac(station) && (!lowest || entry_vlan_id < lowest_vlan_id)) {
      lowest = &station, lowest_vlan_id = entry_vlan_id;
    }
  }
  return lowest && told_of(lowest_vlan_id, *lowest);
}

/// `ttl`: the labels' that the packet came under, which it must not outlive.
void Walk::Routed(unsigned vrf, std::optional<Packet>&& ip, unsigned ttl) {
  if (!ip) return Malformed("the IP packet is cut off, its lengths are at odds, or its checksum is wrong");
  Packet& packet = *ip;
  packet.ttl = std::min(packet.ttl, ttl);
  hops_ = 1;

  const bool is_v4 = packet.kind == Packet::Kind::kIpv4;
  const auto version = is_v4 ? IpAddress::Version::k4 : IpAddress::Version::k6;
  const unsigned char* const to =
      packet.bytes.data + (is_v4 ? kIpv4Addresses : kIpv6Addresses) + IpAddress::Bytes(version);
  const auto route = tables_.routes.Find(vrf, version, to);
  if (!route.value) {
    return Dropped(Drop::kNoRoute, [&] {
      return "VRF " + std::to_string(vrf) + " has no route to " + Text(IpAddress::From(version, to));
    });
  }
  if (told()) story_->Tell(MakeRow(vrf, Prefix::Around(IpAddress::From(version, to), route.length), *route.value));
  return ToDestination(*route.value, packet);
}

void Walk::Labelled(unsigned vlan_vrf, View stack) {
  std::optional<Packet> labelled = ParseLabelled(stack);
  if (!labelled) return Malformed("the label stack has no bottom");
  hops_ = 1;
  unsigned ttl = 255;
  for (;; stack = stack.From(kLabelBytes)) {
    const StackEntry entry = GetEntry(stack.data);
    ttl = std::min(ttl, entry.ttl);
    LabelAction action = tables_.labels.Find(entry.label);
    const bool has_row = action.kind != LabelAction::Kind::kNone;
    if (has_row && told()) story_->Tell(MakeRow(entry.label, action, tables_.ports));
    if (!has_row && (entry.label == kExplicitNullV4 || entry.label == kExplicitNullV6)) {
      action = {LabelAction::Kind::kPopVrf, vlan_vrf};
      if (told()) story_->Tell(ExplicitNullStep{entry.label, vlan_vrf});
    }

    switch (action.kind) {
      case LabelAction::Kind::kNone:
        return Dropped(Drop::kMissingLabel, [&] { return "label " + std::to_string(entry.label) + " has no row"; });
      case LabelAction::Kind::kDestination:
        takes_label_ = true;
        labelled->bytes = stack;
        labelled->ttl = ttl;
        labelled->exp = entry.exp;
        return ToDestination(action.value, *labelled);
      case LabelAction::Kind::kPopPort:
        if (!entry.bottom) return Malformed("below the label of a virtual circuit lies another label");
        return Unwrapped(static_cast<int>(action.value), stack.From(kLabelBytes), ttl);
      case LabelAction::Kind::kPopVrf:
        if (entry.bottom) return Routed(action.value, ParseIp(stack.From(kLabelBytes)), ttl);
        break;  // the next label is looked up: the stack has a bottom, where this ends
    }
  }
}

/// The frame out of a virtual circuit leaves as it is.
void Walk::Unwrapped(int port, View frame, unsigned ttl) {
  if (ttl <= kLastHop) return Dropped(Drop::kTtl, [&] { return "the label's TTL is " + std::to_string(ttl); });
  const std::optional<Packet> packet = ParseEthernet(frame);
  if (!packet) return Malformed("the Ethernet header below the label is cut off");
  const std::optional<int> member = FindPort(port, *packet);
  if (!member) return NoPort(port);
  out_.assign(frame.data, frame.data + frame.size);
  if (told()) TellLayers(*packet, story_);
  return Sent(*member);
}

}  // namespace softcard
