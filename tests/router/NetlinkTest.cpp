// Streams that a real zebra wrote, and what becomes of them when somebody spoils them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <variant>

#include "router/Fpm.h"
#include "router/Netlink.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Bytes = std::vector<unsigned char>;

Bytes ReadStream(const std::string& name) {
  std::ifstream file(std::string(FPM_CORPUS) + '/' + name, std::ios::binary);
  Bytes bytes{std::istreambuf_iterator<char>(file), {}};
  EXPECT_FALSE(bytes.empty()) << name;
  return bytes;
}

std::string Text(const router::RouteTold& told) {
  return std::string(told.gone ? "no " : "") + "route " + std::to_string(told.table) + ' ' +
         softcard::Text(told.prefix) + (told.next_hop != 0 ? " by " + std::to_string(told.next_hop) : "") +
         (told.ways.empty() ? "" : ": " + router::Text(told.ways));
}
std::string Text(const router::LabelTold& told) {
  return std::string(told.gone ? "no " : "") + "label " + std::to_string(told.label) +
         (told.ways.empty() ? "" : ": " + router::Text(told.ways));
}
std::string Text(const router::NextHopTold& told) {
  std::string text = std::string(told.gone ? "no " : "") + "next hop " + std::to_string(told.id);
  if (!told.ways.empty()) text += ": " + router::Text(told.ways);
  for (const std::uint32_t member : told.members) text += ' ' + std::to_string(member);
  return text;
}

struct Heard {
  std::vector<std::string> told;
  router::Unread unread;
  std::size_t taken = 0;
};

Heard Hear(const Bytes& stream) {
  Heard heard;
  heard.taken = router::ReadFrames(stream.data(), stream.size(), [&](const unsigned char* messages, std::size_t size) {
    std::vector<router::Told> told;
    router::ReadMessages(messages, size, &told, &heard.unread);
    for (const auto& one : told) {
      heard.told.push_back(std::visit([](const auto& it) { return Text(it); }, one));
    }
  });
  return heard;
}

std::vector<std::string> Hear(const std::string& name) {
  const Bytes stream = ReadStream(name);
  const Heard heard = Hear(stream);
  EXPECT_EQ(heard.taken, stream.size());
  EXPECT_EQ(heard.unread.malformed, 0U);
  return heard.told;
}

TEST(NetlinkTest, RoutesOfBothVersionsGoByNextHopObjects) {
  EXPECT_THAT(Hear("objects-plain"),
              ElementsAre("next hop 19: deliver to 203.0.113.2 on interface 2", "route 254 198.51.100.0/24 by 19",
                          "next hop 20: deliver to 2001:db8:2::2 on interface 2", "route 254 2001:db8:b::/64 by 20"));
}

TEST(NetlinkTest, LabelsComeOutermostFirst) {
  EXPECT_THAT(Hear("objects-two-labels"), ElementsAre("next hop 40: push 200/100 to 203.0.113.2 on interface 2",
                                                      "route 254 198.51.120.0/24 by 40"));
}

TEST(NetlinkTest, GroupsNameTheirMembers) {
  EXPECT_THAT(Hear("objects-ecmp"), ElementsAre("next hop 47: deliver to 203.0.113.5 on interface 2",
                                                "next hop 48: deliver to 203.0.113.21 on interface 3",
                                                "next hop 46 47 48", "route 254 198.51.150.0/24 by 46"));
}

TEST(NetlinkTest, NextHopsInsideOfRoutesAreTheSame) {
  EXPECT_THAT(Hear("inline-vrf"), ElementsAre("route 10 198.51.101.0/24: push 180 to 203.0.113.2 on interface 2",
                                              "route 10 198.51.100.0/24: deliver to 192.0.2.35 on interface 4"));
}

TEST(NetlinkTest, BlackholesAndRejectedPrefixesHaveNoNextHop) {
  EXPECT_THAT(Hear("inline-blackhole"),
              ElementsAre("route 254 192.0.2.128/25: drop", "route 254 2001:db8:dead::/48: drop",
                          "route 254 192.0.2.64/26: processor"));
}

TEST(NetlinkTest, LabelSwitchedPathsSwapPopAndEnd) {
  EXPECT_THAT(Hear("inline-lsp-two-labels"), ElementsAre("label 5001: swap 1000/2222 to 203.0.113.2 on interface 2"));
  EXPECT_THAT(Hear("inline-lsp-implicit-null"), ElementsAre("label 1010: deliver to 203.0.113.2 on interface 2"));
  EXPECT_THAT(Hear("inline-lsp-explicit-null"), ElementsAre("label 1011: swap 0 to 203.0.113.2 on interface 2"));
  EXPECT_THAT(Hear("inline-vpn-label"), ElementsAre("label 5000: pop on interface 6"));
  EXPECT_THAT(Hear("inline-lsp-two-paths"),
              ElementsAre(testing::MatchesRegex("label .*: swap .* interface 2, swap .*")));
}

TEST(NetlinkTest, WhatIsWithdrawnIsGone) {
  EXPECT_THAT(Hear("inline-lsp-withdrawal"), testing::Contains(testing::StartsWith("no label ")));
  EXPECT_THAT(Hear("objects-withdrawal"), testing::Contains(testing::StartsWith("no route 254 ")));
}

TEST(FpmTest, AFrameThatHasNotComeWholeWaits) {
  const Bytes stream = ReadStream("objects-reconnect");
  for (std::size_t size = 0; size < stream.size(); ++size) {
    const Heard heard = Hear(Bytes(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(size)));
    EXPECT_LE(heard.taken, size);
    EXPECT_EQ(heard.unread.malformed, 0U);
  }
}

TEST(FpmTest, WhatIsNoSuchStreamIsRefused) {
  EXPECT_THROW(Hear(Bytes{2, 1, 0, 8, 0, 0, 0, 0}), std::runtime_error) << "another version";
  EXPECT_THROW(Hear(Bytes{1, 2, 0, 8, 0, 0, 0, 0}), std::runtime_error) << "no netlink";
  EXPECT_THROW(Hear(Bytes{1, 1, 0, 3}), std::runtime_error) << "less than a header";
  EXPECT_THAT(Hear(Bytes{1, 1, 0, 4}).told, IsEmpty());
}

/// The stream's first frame with a byte changed, `at` bytes behind the frame's header.
Heard Spoilt(const std::string& name, std::size_t at, unsigned char value) {
  Bytes stream = ReadStream(name);
  stream.resize(static_cast<std::size_t>(stream[2]) << 8 | stream[3]);
  stream.at(4 + at) = value;
  return Hear(stream);
}

constexpr std::size_t kLength = 0, kType = 4, kHeader = 16, kFamily = kHeader, kPrefixLength = kHeader + 1,
                      kRouteType = kHeader + 7, kFirstAttribute = kHeader + 12;

TEST(NetlinkTest, LengthsThatLieAreMalformed) {
  for (const unsigned length : {0U, 1U, 15U, 255U}) {
    EXPECT_EQ(Spoilt("inline-two-labels", kLength, static_cast<unsigned char>(length)).unread.malformed, 1U) << length;
  }
  EXPECT_EQ(Spoilt("inline-two-labels", kLength + 3, 255).unread.malformed, 1U) << "a negative one, to some";
  EXPECT_EQ(Spoilt("inline-two-labels", kLength, kHeader + 4).unread.malformed, 2U)
      << "a short header, and what follows";
  EXPECT_EQ(Spoilt("inline-two-labels", kFirstAttribute, 3).unread.malformed, 1U);
  EXPECT_EQ(Spoilt("inline-two-labels", kFirstAttribute, 250).unread.malformed, 1U);
  EXPECT_EQ(Spoilt("inline-two-labels", kFirstAttribute, 5).unread.malformed, 1U) << "an address that is cut off";
  EXPECT_EQ(Spoilt("inline-two-labels", kPrefixLength, 33).unread.malformed, 1U);
  EXPECT_EQ(Spoilt("inline-lsp-swap", kPrefixLength, 19).unread.malformed, 1U);
}

TEST(NetlinkTest, OtherMessagesFamiliesAndKindsOfRoutesAreIgnored) {
  EXPECT_EQ(Spoilt("inline-two-labels", kType, 16).unread.ignored, 1U) << "a link";
  EXPECT_EQ(Spoilt("inline-two-labels", kFamily, 7).unread.ignored, 1U) << "a bridge's";
  EXPECT_EQ(Spoilt("inline-two-labels", kRouteType, 5).unread.ignored, 1U) << "multicast";
  EXPECT_THAT(Spoilt("inline-two-labels", kRouteType, 77).told, ElementsAre("route 254 198.51.120.0/24: unknown"))
      << "a kind that nobody knows has no way";
}

TEST(NetlinkTest, AStackWithoutABottomIsMalformed) {
  Bytes stream = ReadStream("inline-two-labels");
  const Bytes bottom = {0x00, 0x06, 0x41, 0x00};  // label 100
  const auto found = std::search(stream.begin(), stream.end(), bottom.begin(), bottom.end());
  ASSERT_NE(found, stream.end());
  found[2] = 0x40;
  EXPECT_EQ(Hear(stream).unread.malformed, 1U);
}

TEST(NetlinkTest, AnEncapsulationThatIsNotMplsIsUnknown) {
  Bytes stream = ReadStream("inline-two-labels");
  const Bytes type = {6, 0, 21, 0, 1, 0};
  const auto found = std::search(stream.begin(), stream.end(), type.begin(), type.end());
  ASSERT_NE(found, stream.end());
  found[4] = 5;
  EXPECT_THAT(Hear(stream).told, ElementsAre("route 254 198.51.120.0/24: unknown to 203.0.113.2 on interface 2"));
}

}  // namespace
