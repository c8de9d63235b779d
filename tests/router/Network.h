#ifndef TESTS_ROUTER_NETWORK_H
#define TESTS_ROUTER_NETWORK_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "HalL3MplsEncapsulationInterface.h"
#include "router/Router.h"
#include "softcard/Card.h"

/// A card and what a control plane may tell it. Interface 2 is eth1 on VLAN 100, interface 3 eth2 on VLAN 200.
class Network : public testing::Test {
 public:
  using Kind = router::Way::Kind;

  static softcard::IpAddress Address(const std::string& text) { return *softcard::ReadIpAddress(text); }
  /// "192.0.2.0/24".
  static softcard::Prefix ToPrefix(const std::string& text) {
    const std::size_t slash = text.find('/');
    return {Address(text.substr(0, slash)), static_cast<unsigned>(std::stoul(text.substr(slash + 1)))};
  }
  static router::Way To(const std::string& gateway, unsigned ifindex = 2, Kind kind = Kind::kDeliver,
                        router::Labels labels = {}) {
    return {kind, ifindex, Address(gateway), std::move(labels)};
  }
  static router::Way On(unsigned ifindex) { return {Kind::kDeliver, ifindex, {}, {}}; }

  static router::Told Route(const std::string& prefix, const router::Ways& ways, unsigned table = 254) {
    return router::RouteTold{false, table, ToPrefix(prefix), 0, ways};
  }
  static router::Told RouteBy(const std::string& prefix, unsigned next_hop) {
    return router::RouteTold{false, 254, ToPrefix(prefix), next_hop, {}};
  }
  static router::Told NoRoute(const std::string& prefix, unsigned table = 254) {
    return router::RouteTold{true, table, ToPrefix(prefix), 0, {}};
  }
  static router::Told Label(unsigned label, const router::Ways& ways) { return router::LabelTold{false, label, ways}; }
  static router::Told NoLabel(unsigned label) { return router::LabelTold{true, label, {}}; }
  static router::Told NextHop(unsigned id, const router::Ways& ways) {
    return router::NextHopTold{false, id, ways, {}};
  }
  static router::Told Group(unsigned id, const std::vector<unsigned>& members) {
    return router::NextHopTold{false, id, {}, {members.begin(), members.end()}};
  }
  static router::Told NoNextHop(unsigned id) { return router::NextHopTold{true, id, {}, {}}; }

  static constexpr router::Mac kFirst{2, 0, 0, 0, 0, 1}, kSecond{2, 0, 0, 0, 0, 2};

 protected:
  Network() : Network(softcard::CardDescription()) {}
  explicit Network(const softcard::CardDescription& description) {
    card_.Reset(description);
    EXPECT_EQ(Set(2, "eth1", "vlan100"), 0);
    EXPECT_EQ(Set(3, "eth2", "vlan200"), 0);
    requests_ = router_.requests();
  }

  int Set(unsigned ifindex, const std::string& port, const std::string& vlan, unsigned mtu = 1500) {
    return router_.SetInterface(ifindex, {softcard::LimId(port), softcard::LimId(vlan), 0, mtu, {0, 0, 0x5E, 0, 1, 1}});
  }
  void Tell(const std::vector<router::Told>& told) {
    router_.Hear(told);
    router_.Settle();
  }
  void Learn(const std::string& address, const router::Mac& mac = kFirst, unsigned ifindex = 2) {
    router_.Learn({ifindex, Address(address)}, mac);
  }
  /// That were made since the last time.
  unsigned long Requests() {
    const auto before = requests_;
    requests_ = router_.requests();
    return static_cast<unsigned long>(requests_ - before);
  }
  std::vector<std::string> Rows(const char* table) const { return softcard::Texts(card_.Rows(table)); }
  std::vector<std::string> NextHops() const { return softcard::Texts(router_.NextHopRows()); }
  std::vector<std::string> Unresolved() const { return softcard::Texts(router_.UnresolvedRows()); }
  /// Of the module's destinations those that belong to the control plane.
  unsigned long Destinations() const { return card_.RowCount("destinations"); }
  /// The way of the destination that packets for the address go to; "none".
  std::string WayOf(const std::string& address, unsigned vrf = 0) const {
    const softcard::IpAddress to = Address(address);
    const auto match = card_.tables().routes.Find(vrf, to.version, to.bytes.data());
    return match.value == nullptr ? "none" : WayOf(*match.value);
  }
  std::string WayOf(unsigned destination) const {
    for (const softcard::Row& row : router_.NextHopRows()) {
      if (std::get<std::int64_t>(row.key) != destination) continue;
      const auto text = [&row](std::size_t column) { return std::get<std::string>(row.values[column]); };
      return text(0) + (text(1) == "none" ? "" : ' ' + text(1)) + (text(2) == "none" ? "" : ' ' + text(2)) +
             (text(5) == "ready" ? "" : ' ' + text(5));
    }
    return "destination " + std::to_string(destination);
  }

  softcard::Card& card_ = softcard::Card::Get();
  std::vector<std::string> said_;
  router::Router router_{*HalL3MplsEncapsulationInterface::GetInstance(), card_.tables(), softcard::LimId("cpu"),
                         [this](const std::string& what) { said_.push_back(what); }};

 private:
  std::uint64_t requests_ = 0;
};

#endif
