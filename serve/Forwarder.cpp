#include "serve/Forwarder.h"

#include <algorithm>

#include "softcard/LimId.h"

namespace serve {
namespace {

using softcard::View;
using softcard::Way;

constexpr unsigned kEtherTypeArp = 0x0806;
constexpr std::size_t kAddresses = 2 * softcard::kMacBytes;

bool IsTagged(View frame) {
  return frame.size >= softcard::kEthernetBytes + softcard::kTagBytes &&
         softcard::Get16(frame.data + kAddresses) == softcard::kEtherTypeVlan;
}

/// The processor's by what it is: group addresses, ARP, neighbour discovery.
bool IsProcessors(View frame) {
  constexpr unsigned kIcmpv6 = 58, kRouterSolicitation = 133, kRedirect = 137;
  if (frame.size < softcard::kEthernetBytes) return false;
  if ((frame.data[0] & 1) != 0) return true;
  const std::size_t at = softcard::kEthernetBytes + (IsTagged(frame) ? softcard::kTagBytes : 0);
  const unsigned type = softcard::Get16(frame.data + at - 2);
  if (type == kEtherTypeArp) return true;
  if (type != softcard::kEtherTypeIpv6 || frame.size <= at + softcard::kIpv6Bytes) return false;
  const unsigned char* const ip = frame.data + at;
  return ip[6] == kIcmpv6 && ip[softcard::kIpv6Bytes] >= kRouterSolicitation && ip[softcard::kIpv6Bytes] <= kRedirect;
}

}  // namespace

void Forwarder::Came(int port, View frame) {
  const bool attached = card_.tables().attachments.Find(port) != nullptr;
  const bool has_host = wires_.HasHost(port);
  if (!attached && IsProcessors(frame)) {
    if (living_.router != nullptr) {
      Tell(port, router::ReadAnnouncement(frame), &router::Router::Learn);
      Tell(port, router::ReadSender(frame), &router::Router::Suppose);
    }
    if (has_host) return ToHost(port, {}, frame);
  }

  View carried = frame;
  const Natives& natives = living_.natives;
  const auto native = natives.find(port);
  if (native != natives.end() && !attached && frame.size >= softcard::kEthernetBytes && !IsTagged(frame)) {
    tagged_.resize(frame.size + softcard::kTagBytes);
    std::copy_n(frame.data, kAddresses, tagged_.data());
    softcard::Put16(tagged_.data() + kAddresses, softcard::kEtherTypeVlan);
    softcard::Put16(tagged_.data() + kAddresses + 2, native->second);
    std::copy(frame.data + kAddresses, frame.data + frame.size, tagged_.data() + kAddresses + softcard::kTagBytes);
    carried = tagged_;
  }
  const Way way = softcard::Inject(card_.tables(), card_.common().destination_id_correlators, port, carried, &out_);
  if (has_host && IsForProcessor(way)) return ToHost(port, way.destination, frame);
  card_.counters().Injected(port, way, carried.size, out_.size());
  if (way.fate == Way::Fate::kSent) Leave(way.port);
}

/// The control plane's interface of a port, or of a LAG that it is a member of, and VLAN.
std::optional<unsigned> Forwarder::FindInterface(int port, unsigned vlan_id) const {
  const auto native = living_.natives.find(port);
  const bool is_native = vlan_id == 0 && native != living_.natives.end();
  const limid_t vlan = softcard::MakeLimId(limid_type_l3_vlan, is_native ? native->second : vlan_id);
  const softcard::Tables& tables = card_.tables();
  int behind = port;
  for (const auto& [lag, members] : tables.lags.rows()) {
    if (std::find(members.begin(), members.end(), port) != members.end()) behind = lag;
  }
  return living_.router->FindInterface(softcard::LimId(tables.ports.Name(behind)), vlan);
}

/// Tells the router, by one of its ways to take it, who has an address.
void Forwarder::Tell(int port, const std::optional<router::Announcement>& who, Taken taken) {
  if (!who) return;
  const auto ifindex = FindInterface(port, who->vlan_id);
  if (ifindex) (living_.router->*taken)({*ifindex, who->address}, who->mac);
}

void Forwarder::CameFromHost(int port, View frame) {
  if (living_.router == nullptr) return;
  Tell(port, router::ReadAnnouncement(frame), &router::Router::LearnOwn);
  Tell(port, router::ReadAddressee(frame), &router::Router::Suppose);
}

void Forwarder::ToHost(int port, std::optional<unsigned> destination, View frame) {
  card_.counters().Injected(port, {Way::Fate::kToCpu, {}, 0, destination}, frame.size, frame.size);
  wires_.ToHost(port, frame);
}

/// What its destination says, and what is for an address of a network that this card is on and no host has yet.
bool Forwarder::IsForProcessor(const Way& way) const {
  if (way.fate != Way::Fate::kDropped) return way.fate == Way::Fate::kToCpu;
  if (way.drop != softcard::Drop::kNoEgress) return false;
  const auto& records = card_.common().destination_id_correlators;
  const auto record = records.find(static_cast<int>(*way.destination));
  return record != records.end() && record->second.egress_id == 0;
}

void Forwarder::Leave(int port) {
  View leaving = out_;
  const Natives& natives = living_.natives;
  const auto native = natives.find(port);
  if (native != natives.end() && IsTagged(out_) && card_.tables().attachments.Find(port) == nullptr &&
      (softcard::Get16(out_.data() + kAddresses + 2) & softcard::kVlanBits) == native->second) {
    std::copy_backward(out_.data(), out_.data() + kAddresses, out_.data() + kAddresses + softcard::kTagBytes);
    leaving = leaving.From(softcard::kTagBytes);
  }
  wires_.ToPort(port, leaving);
}

}  // namespace serve
