#include "serve/Ports.h"

#include <asio/post.hpp>
#include <chrono>
#include <stdexcept>
#include <system_error>

#include "scenario/Suggestion.h"
#include "scenario/Values.h"
#include "softcard/LimId.h"

namespace serve {
namespace {

using softcard::View;

constexpr std::chrono::milliseconds kBetweenLooks{200};
const softcard::TableDescription kInterfaces = {"interfaces",
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

Ports::Ports(asio::io_context& events, softcard::Card& card, const Living& living, const Bindings& ports,
             const Bindings& hosts, Say say, Capture capture)
    : forwarder_(card, living, *this), say_(std::move(say)), capture_(std::move(capture)), look_(events) {
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
      forwarder_.Came(port, frame);
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
    side->take = [this, port, to = outside->second](View frame) {
      forwarder_.CameFromHost(port, frame);
      Send(*to, frame);
    };
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
  if (side.waits || !side.events_of.is_open()) return;
  side.waits = true;
  side.events_of.async_wait(asio::posix::stream_descriptor::wait_read, [this, &side](std::error_code error) {
    side.waits = false;
    if (!error) Read(side);
  });
}

void Ports::Read(Side& side) {
  const int came = side.interface.Receive(side.take);
  for (Side& each : sides_) each.interface.Flush();
  if (came == 0) Wait(side);
  if (came <= 0) return;
  // More may have come meanwhile: looking costs less than being woken. Others have their turn before.
  side.waits = true;
  asio::post(look_.get_executor(), [this, &side] {
    side.waits = false;
    Read(side);
  });
}

void Ports::LookAgain() {
  look_.expires_after(kBetweenLooks);
  look_.async_wait([this](std::error_code error) {
    if (error) return;
    for (Side& side : sides_) {
      if (side.interface.IsAnother()) side.Release();
      const bool changed = side.interface.Look();
      if (!side.events_of.is_open() && side.interface.descriptor() >= 0) {
        side.events_of.assign(side.interface.descriptor());
      }
      if (changed) {
        say_(side.name + ": interface " + side.interface.name() + " is " + StateName(side.interface.state()));
      }
      if (side.interface.state() == Interface::State::kUp) Wait(side);
    }
    LookAgain();
  });
}

bool Ports::HasHost(int port) const { return hosts_.count(port) != 0; }

void Ports::ToHost(int port, View frame) { hosts_.at(port)->interface.Send(frame); }

void Ports::ToPort(int port, View frame) {
  const auto side = ports_.find(port);
  if (side == ports_.end()) {
    ++unbound_;
    return;
  }
  Send(*side->second, frame);
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
    rows.push_back({&kInterfaces,
                    calls::ToValue(side.name),
                    {calls::ToValue(side.interface.name()), calls::ToValue(StateName(side.interface.state())),
                     value(count.received), value(count.sent), value(count.lost), value(count.cut), value(count.missed),
                     value(count.changes)}});
  }
  const auto lost = [&](const char* name, std::uint64_t frames) {
    if (frames == 0) return;
    rows.push_back({&kInterfaces,
                    calls::ToValue(name),
                    {calls::ToValue("none"), calls::ToValue("gone"), value(0), value(0), value(frames), value(0),
                     value(0), value(0)}});
  };
  lost("ports without one", unbound_);
  lost("captures", uncaptured_);
  return rows;
}

}  // namespace serve
