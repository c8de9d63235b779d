#include <gtest/gtest.h>

#include <string>

#include "router/Discovery.h"
#include "tests/softcard/packets/Hex.h"

namespace {

using softcard::Bytes;

const std::string kEthernet = "ffffffffffff 020000000001 ";
const std::string kArp = "0806 0001 0800 06 04 0002 020000000001 c0000201 020000000009 c0000209";
const std::string kAddress = "fe800000000000000000000000000001";

/// An ICMPv6 message from fe80::1.
std::string Icmpv6(const std::string& message, const std::string& hop_limit = "ff") {
  const std::string bytes = std::to_string(Hex(message).size());
  char length[5];
  std::snprintf(length, sizeof length, "%04zx", Hex(message).size());
  return "86dd 60000000 " + std::string(length) + " 3a " + hop_limit + ' ' + kAddress +
         " ff020000000000000000000000000001 " + message;
}
const std::string kSource = " 01 01 020000000001", kTarget = " 02 01 020000000001";

std::string Text(const std::optional<router::Announcement>& announced) {
  if (!announced) return "nothing";
  return std::to_string(announced->vlan_id) + ' ' + softcard::Text(announced->address) + ' ' +
         std::to_string(announced->mac[5]);
}

std::string Read(const std::string& frame) {
  const Bytes bytes = Hex(frame);
  return Text(router::ReadAnnouncement(bytes));
}

TEST(DiscoveryTest, ArpRequestsAndRepliesAnnounceTheirSender) {
  EXPECT_EQ(Read(kEthernet + kArp), "0 192.0.2.1 1");
  EXPECT_EQ(Read(kEthernet + "8100 0064 " + kArp), "100 192.0.2.1 1");
  std::string request = kArp;
  request.replace(request.find("0002"), 4, "0001");
  EXPECT_EQ(Read(kEthernet + request), "0 192.0.2.1 1");
}

TEST(DiscoveryTest, OtherArpAnnouncesNothing) {
  const auto with = [](const std::string& from, const std::string& to) {
    std::string arp = kArp;
    return Read(kEthernet + arp.replace(arp.find(from), from.size(), to));
  };
  EXPECT_EQ(with("0002", "0003"), "nothing") << "reverse";
  EXPECT_EQ(with("0001 0800", "0006 0800"), "nothing") << "no Ethernet";
  EXPECT_EQ(with("c0000201", "00000000"), "nothing") << "a probe";
  EXPECT_EQ(with("c0000201", "e0000001"), "nothing") << "a group's address";
  EXPECT_EQ(with("020000000001 c0", "000000000000 c0"), "nothing");
  EXPECT_EQ(with("020000000001 c0", "010000000001 c0"), "nothing") << "a group's";
}

TEST(DiscoveryTest, NeighboursAndRoutersAnnounceThemselves) {
  EXPECT_EQ(Read(kEthernet + Icmpv6("85 00 0000 00000000" + kSource)), "0 fe80::1 1");
  EXPECT_EQ(Read(kEthernet + Icmpv6("86 00 0000 40000708 00000000 00000000" + kSource)), "0 fe80::1 1");
  EXPECT_EQ(Read(kEthernet + Icmpv6("87 00 0000 00000000 20010db8000000000000000000000009" + kSource)), "0 fe80::1 1");
  EXPECT_EQ(Read(kEthernet + Icmpv6("88 00 0000 60000000 20010db8000000000000000000000009" + kTarget)),
            "0 2001:db8::9 1");
  EXPECT_EQ(Read(kEthernet + "8100 0064 " + Icmpv6("85 00 0000 00000000 05 01 000000000000" + kSource)),
            "100 fe80::1 1")
      << "behind another option";
}

TEST(DiscoveryTest, OtherIcmpv6AnnouncesNothing) {
  const std::string solicitation = "87 00 0000 00000000 20010db8000000000000000000000009";
  EXPECT_EQ(Read(kEthernet + Icmpv6(solicitation)), "nothing") << "no option";
  EXPECT_EQ(Read(kEthernet + Icmpv6(solicitation + kTarget)), "nothing") << "the other option";
  EXPECT_EQ(Read(kEthernet + Icmpv6(solicitation + kSource, "fe")), "nothing") << "a router has sent it on";
  EXPECT_EQ(Read(kEthernet + Icmpv6(solicitation + " 01 00 020000000001")), "nothing") << "an option without a length";
  EXPECT_EQ(Read(kEthernet + Icmpv6(solicitation + " 01 02 020000000001")), "nothing") << "one that is too long";
  EXPECT_EQ(Read(kEthernet + Icmpv6("80 00 0000 00000000" + kSource)), "nothing") << "an echo";
  EXPECT_EQ(Read(kEthernet + Icmpv6("87 00 0000 00000000")), "nothing") << "no target";
}

TEST(DiscoveryTest, GreetingsOnALinkAreItsSenders) {
  const auto read = [](const std::string& frame) {
    const Bytes bytes = Hex(frame);
    return Text(router::ReadSender(bytes));
  };
  const std::string hello = "0800 45000014 00000000 0159 0000 c0000201 e0000005";
  EXPECT_EQ(read(kEthernet + hello), "0 192.0.2.1 1");
  EXPECT_EQ(read(kEthernet + "8100 0064 " + hello), "100 192.0.2.1 1");
  EXPECT_EQ(read(kEthernet + "0800 45000014 00000000 0159 0000 c0000201 e0000105"), "nothing") << "routers send it on";
  EXPECT_EQ(read(kEthernet + "0800 45000014 00000000 0159 0000 00000000 e0000005"), "nothing") << "of nobody";
  EXPECT_EQ(read(kEthernet + "0800 45000014 00000000 0159 0000 c0000201 e00000"), "nothing") << "cut off";
  EXPECT_EQ(read(kEthernet + "86dd 60000000 0000 59 01 " + kAddress + " ff020000000000000000000000000005"),
            "0 fe80::1 1");
  EXPECT_EQ(read(kEthernet + "86dd 60000000 0000 59 01 " + kAddress + " ff050000000000000000000000000005"), "nothing");
  EXPECT_EQ(read(kEthernet + kArp), "nothing");
}

TEST(DiscoveryTest, WhatIsSaidToAHostIsItsAddressees) {
  const std::string to = "020000000001 00005e000101 ", packet = "0800 45000014 00000000 4006 0000 c00002fe c0000201";
  const auto read = [](const std::string& frame) {
    const Bytes bytes = Hex(frame);
    return Text(router::ReadAddressee(bytes));
  };
  EXPECT_EQ(read(to + packet), "0 192.0.2.1 1");
  EXPECT_EQ(read("01005e000005 00005e000101 " + packet), "nothing") << "a group's";
  EXPECT_EQ(read(to + "0800 45000014"), "nothing") << "cut off";
  EXPECT_EQ(read("02"), "nothing");
}

TEST(DiscoveryTest, FramesThatAreCutOffAnnounceNothing) {
  const Bytes arp = Hex(kEthernet + "8100 0064 " + kArp);
  const Bytes discovery = Hex(kEthernet + Icmpv6("87 00 0000 00000000 20010db8000000000000000000000009" + kSource));
  for (const Bytes& frame : {arp, discovery}) {
    for (std::size_t size = 0; size < frame.size(); ++size) {
      EXPECT_FALSE(router::ReadAnnouncement(Bytes(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(size))))
          << size;
    }
  }
  EXPECT_EQ(Read(kEthernet + "0800 4500"), "nothing") << "neither";
}

}  // namespace
