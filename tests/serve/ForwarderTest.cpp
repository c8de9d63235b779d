#include <gtest/gtest.h>

#include <string>

#include "HalL3MplsEncapsulationInterface.h"
#include "serve/Forwarder.h"
#include "softcard/LimId.h"

namespace {

/// A route processor beside no wire.
class NoWires : public serve::Forwarder::Wires {
 public:
  bool HasHost(int) const override { return false; }
  void ToHost(int, softcard::View) override {}
  void ToPort(int, softcard::View) override {}
};

class ForwarderTest : public testing::Test {
 protected:
  ForwarderTest() {
    card_.Reset();
    living_.router = &router_;
  }

  /// That 192.0.2.1 has an address, in an ARP reply that comes by a port, with a tag or without.
  void Announce(int port, unsigned vlan_id) {
    softcard::Bytes frame(12, 0xFF);
    const auto add = [&frame](const std::initializer_list<int>& bytes) {
      for (const int byte : bytes) frame.push_back(static_cast<unsigned char>(byte));
    };
    if (vlan_id != 0) add({0x81, 0, static_cast<int>(vlan_id >> 8), static_cast<int>(vlan_id & 0xFF)});
    add({8, 6, 0, 1, 8, 0, 6, 4, 0, 2, 2, 0, 0, 0, 0, 1, 192, 0, 2, 1, 2, 0, 0, 0, 0, 9, 192, 0, 2, 9});
    forwarder_.Came(port, frame);
  }
  void Interface(unsigned ifindex, const std::string& port, const std::string& vlan) {
    ASSERT_EQ(router_.SetInterface(ifindex, {softcard::LimId(port), softcard::LimId(vlan), 0, 1500, {2}}), 0);
  }
  std::string Neighbours() const {
    std::string text;
    for (const softcard::Row& row : router_.NeighbourRows()) text += softcard::Text(row) + '\n';
    return text;
  }

  softcard::Card& card_ = softcard::Card::Get();
  router::Router router_{*HalL3MplsEncapsulationInterface::GetInstance(), card_.tables(), softcard::LimId("cpu"),
                         [](const std::string&) {}};
  serve::Living living_;
  NoWires wires_;
  serve::Forwarder forwarder_{card_, living_, wires_};
};

TEST_F(ForwarderTest, WhoAnnouncesAnAddressIsANeighbourByThePortAndVlan) {
  Interface(2, "eth1", "vlan300");
  Announce(1, 301);
  Announce(2, 300);
  Announce(1, 0);
  EXPECT_EQ(Neighbours(), "");
  Announce(1, 300);
  EXPECT_EQ(Neighbours(), "neighbour 192.0.2.1: interface=2 mac=02:00:00:00:00:01 destination=0\n");
}

TEST_F(ForwarderTest, WithoutATagItIsTheNativeVlans) {
  Interface(2, "eth1", "vlan300");
  living_.natives[1] = 300;
  Announce(1, 0);
  EXPECT_NE(Neighbours(), "");
}

TEST_F(ForwarderTest, BehindALagsMemberItIsTheLags) {
  Interface(2, "lag1", "vlan300");
  ASSERT_EQ(card_.tables().lags.Set(1001, {1, 2}, card_.tables().ports), 0);
  Announce(2, 300);
  EXPECT_NE(Neighbours(), "");
}

TEST_F(ForwarderTest, WithoutAControlPlaneNobodyListens) {
  living_.router = nullptr;
  Announce(1, 300);
  EXPECT_EQ(Neighbours(), "");
}

}  // namespace
