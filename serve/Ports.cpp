#include "serve/Ports.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "scenario/Suggestion.h"
#include "scenario/Values.h"
#include "softcard/LimId.h"
#include "softcard/packets/Way.h"

namespace serve {
namespace {

using softcard::View;
using softcard::Way;

constexpr std::chrono::milliseconds kBetweenLooks{200};
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

const softcard::TableDescription kDescription = {"interfaces",
                                                 "interface",
                                                 softcard::Origin::kCounted,
                                                 {"of", calls::Kind::kText},
                                                 {{"name", calls::Kind::kText},
                                                  {"state", calls::Kind::kText},
                                                  {"received", calls::Kind::kNumber},
                                                  {"sent", calls::Kind::kNumber},
                                                  {"lost", calls::Kind::kNumber},
                                                  {"cut", calls::Kind::kNumber},
                                                  {"missed", calls::Kind::kNumber},
                                                  {"changes", calls::Kind::kNumber}}};

}  // namespace

Ports::Ports(asio::io_context& events, softcard::Card& card, const Natives& natives, const Bindings& ports,
             const Bindings& hosts, Say say, Capture capture)
    : card_(card), natives_(natives), say_(std::move(say)), capture_(std::move(capture)), look_(events) {
  const auto port_of = [&card](const std::string& name) {
    const auto limid = softcard::ReadLimId(name);
    const int port = limid ? scenario::ToPort(*limid, card) : -1;
    if (card.tables().ports.IsEthernet(port)) return port;
    throw std::runtime_error("this card has no Ethernet port " + scenario::Quoted(name) +
                             "; a LAG's members are bound one by one");
  };
  for (const auto& [name, interface_name] : ports) {
    const int port = port_of(name);
    Side*& side = ports_[port];
    if (side != nullptr) throw std::runtime_error(name + " is bound to " + side->interface.name() + " already");
    side = &Bind(events, card.tables().ports.Name(port), interface_name);
    side->take = [this, port, side](View frame) {
      Show(*side, frame);
      Came(port, frame);
    };
  }
  for (const auto& [name, interface_name] : hosts) {
    const int port = port_of(name);
    const auto outside = ports_.find(port);
    if (outside == ports_.end()) {
      throw std::runtime_error(name + " has a side towards the processor and no interface; bind it by --port");
    }
    Side*& side = hosts_[port];
    if (side != nullptr) throw std::runtime_error(name + " has a side towards the processor already");
    side = &Bind(events, card.tables().ports.Name(port) + " host", interface_name);
    side->take = [this, to = outside->second](View frame) { Send(*to, frame); };
  }
  for (Side& side : sides_) Wait(side);
  if (!sides_.empty()) LookAgain();
}

Ports::Side& Ports::Bind(asio::io_context& events, const std::string& name, const std::string& interface_name) {
  for (const Side& side : sides_) {
    if (side.interface.name() == interface_name) {
      throw std::runtime_error("interface " + interface_name + " is that of " + side.name + " already");
    }
  }
  return sides_.emplace_back(events, name, interface_name);
}

void Ports::Wait(Side& side) {
  if (!side.events_of.is_open()) return;
  side.events_of.async_wait(asio::posix::stream_descriptor::wait_read, [this, &side](std::error_code error) {
    if (error) return;
    side.interface.Receive(side.take);
    // One that is down is ready all the time; Look() sees to it.
    if (side.interface.state() == Interface::State::kUp) Wait(side);
  });
}

void Ports::LookAgain() {
  look_.expires_after(kBetweenLooks);
  look_.async_wait([this](std::error_code error) {
    if (error) return;
    for (Side& side : sides_) {
      if (side.interface.IsAnother()) side.Release();
      if (!side.interface.Look()) continue;
      say_(side.name + ": interface " + side.interface.name() + " is " + StateName(side.interface.state()));
      if (side.events_of.is_open()) {
        side.events_of.cancel();
      } else if (side.interface.descriptor() >= 0) {
        side.events_of.assign(side.interface.descriptor());
      }
      if (side.interface.state() == Interface::State::kUp) Wait(side);
    }
    LookAgain();
  });
}

void Ports::Came(int port, View frame) {
  const auto host = hosts_.find(port);
  const bool attached = card_.tables().attachments.Find(port) != nullptr;
  const auto to_host = [&](std::optional<unsigned> destination) {
    const Way way{Way::Fate::kToCpu, {}, 0, destination};
    card_.counters().Injected(port, way, frame.size, frame.size);
    host->second->interface.Send(frame);
  };
  if (host != hosts_.end() && !attached && IsProcessors(frame)) return to_host({});

  View carried = frame;
  const auto native = natives_.find(port);
  if (native != natives_.end() && !attached && frame.size >= softcard::kEthernetBytes && !IsTagged(frame)) {
    tagged_.resize(frame.size + softcard::kTagBytes);
    std::copy_n(frame.data, kAddresses, tagged_.data());
    softcard::Put16(tagged_.data() + kAddresses, softcard::kEtherTypeVlan);
    softcard::Put16(tagged_.data() + kAddresses + 2, native->second);
    std::copy(frame.data + kAddresses, frame.data + frame.size, tagged_.data() + kAddresses + softcard::kTagBytes);
    carried = tagged_;
  }
  const Way way = softcard::Inject(card_.tables(), card_.common().destination_id_correlators, port, carried, &out_);
  if (host != hosts_.end() && IsForProcessor(way)) return to_host(way.destination);
  card_.counters().Injected(port, way, carried.size, out_.size());
  if (way.fate == Way::Fate::kSent) Leave(way.port, out_);
}

/// What its destination says, and what is for an address of a network that this card is on and no host has yet.
bool Ports::IsForProcessor(const Way& way) const {
  if (way.fate != Way::Fate::kDropped) return way.fate == Way::Fate::kToCpu;
  if (way.drop != softcard::Drop::kNoEgress) return false;
  const auto& records = card_.common().destination_id_correlators;
  const auto record = records.find(static_cast<int>(*way.destination));
  return record != records.end() && record->second.egress_id == 0;
}

void Ports::Leave(int port, softcard::Bytes& frame) {
  const auto side = ports_.find(port);
  if (side == ports_.end()) {
    ++unbound_;
    return;
  }
  View leaving = frame;
  const auto native = natives_.find(port);
  if (native != natives_.end() && IsTagged(frame) && card_.tables().attachments.Find(port) == nullptr &&
      (softcard::Get16(frame.data() + kAddresses + 2) & softcard::kVlanBits) == native->second) {
    std::copy_backward(frame.data(), frame.data() + kAddresses, frame.data() + kAddresses + softcard::kTagBytes);
    leaving = leaving.From(softcard::kTagBytes);
  }
  Send(*side->second, leaving);
}

/// By a port.
void Ports::Send(Side& side, View frame) {
  Show(side, frame);
  side.interface.Send(frame);
}

void Ports::Show(const Side& side, View frame) {
  if (capture_ && !capture_(side.name, frame)) ++uncaptured_;
}

std::vector<softcard::Row> Ports::Rows() const {
  const auto value = [](std::uint64_t number) { return calls::Value(static_cast<std::int64_t>(number)); };
  std::vector<softcard::Row> rows;
  for (const Side& side : sides_) {
    const Interface::Count count = side.interface.count();
    rows.push_back({&kDescription,
                    calls::ToValue(side.name),
                    {calls::ToValue(side.interface.name()), calls::ToValue(StateName(side.interface.state())),
                     value(count.received), value(count.sent), value(count.lost), value(count.cut), value(count.missed),
                     value(count.changes)}});
  }
  const auto lost = [&](const char* name, std::uint64_t frames) {
    if (frames == 0) return;
    rows.push_back({&kDescription,
                    calls::ToValue(name),
                    {calls::ToValue("none"), calls::ToValue("gone"), value(0), value(0), value(frames), value(0),
                     value(0), value(0)}});
  };
  lost("ports without one", unbound_);
  lost("captures", uncaptured_);
  return rows;
}

}  // namespace serve
