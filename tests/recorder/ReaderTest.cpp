#include <gtest/gtest.h>

#include <sstream>

#include "recorder/Reader.h"

using namespace recorder;

namespace {

const std::string kHeader =
    "card recording 1\nmodule 1.0.0\nmachine 32-bit big-endian\nunit 3\nbegun 2026-11-21T14:13:18.102030Z\n\n";

std::vector<Entry> Entries(const std::string& text) {
  std::istringstream in(text);
  Reader reader(in);
  std::vector<Entry> entries;
  while (auto entry = reader.Next()) entries.push_back(*std::move(entry));
  return entries;
}

/// What is said of a recording that cannot be used; empty for one that can.
std::string Refusal(const std::string& text) {
  try {
    Entries(text);
  } catch (const BadRecording& bad) {
    return bad.what();
  }
  return "";
}

void ExpectRefusal(const std::string& text, const std::string& begin) {
  const std::string refusal = Refusal(text);
  EXPECT_EQ(refusal.substr(0, begin.size()), begin) << text;
  EXPECT_NE(refusal.find(';'), std::string::npos) << "no remedy: " << refusal;
}

}  // namespace

TEST(AHeader, TellsTheMachine) {
  std::istringstream in(kHeader);
  const Reader reader(in);
  EXPECT_EQ(reader.header().module_version, "1.0.0");
  EXPECT_EQ(reader.header().word_bits, 32);
  EXPECT_TRUE(reader.header().big_endian);
  EXPECT_EQ(reader.header().unit, 3);
  EXPECT_EQ(Text(reader.header()), kHeader);
}

TEST(ARequestOfARecording, HoldsWhatHappenedInIt) {
  const auto entries = Entries(kHeader +
                               "  0 replace-mpls 20 vlan=10 lim=0x1 mac=null\n"
                               "  1     fm_init() = -4 (Their own words)\n"
                               "  1     client a is told id=20 port=-18\n"
                               "  1     client a calls install-vrf 2\n"
                               "  1       log 7: inside\n"
                               "  1     client a gets -6\n"
                               "  1     has lim 0x1 port=none lag=7\n"
                               "  1     client a calls client b empty\n"
                               "  1       log 7: Client b already registered, remove old one!\n"
                               "  1     client a threw std::runtime_error: no\\nroom\n"
                               "  1   => threw std::runtime_error: no\\nroom\n");
  ASSERT_EQ(entries.size(), 1u);
  const Step& step = std::get<Step>(entries[0]);
  EXPECT_EQ(step.line, 7u);
  EXPECT_TRUE(step.complete);
  EXPECT_EQ(step.result, "threw std::runtime_error: no\nroom");
  ASSERT_EQ(step.items.size(), 2u);
  const Notification& notification = std::get<Notification>(step.items[1].what);
  EXPECT_EQ(TellText(notification), "client a is told id=20 port=-18");
  EXPECT_EQ(notification.thrown, "std::runtime_error: no\nroom");
  ASSERT_EQ(notification.steps.size(), 3u);
  const Step& inner = std::get<Step>(notification.steps[0]);
  EXPECT_EQ(ActionText(inner), "install-vrf 2");
  EXPECT_EQ(inner.result, "-6");
  EXPECT_EQ(inner.items.size(), 1u);
  EXPECT_EQ(std::get<Standing>(notification.steps[1]).lag, 7);
  EXPECT_EQ(ActionText(std::get<Step>(notification.steps[2])), "client b empty");
}

TEST(ARecording, MayEndInARequest) {
  const auto entries = Entries(kHeader + "0 install-vrf 1\n1     fm_init() = 0\n");
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_FALSE(std::get<Step>(entries[0]).complete);
}

TEST(ARecording, MayTellOnItsLastLineThatItStopped) {
  const auto entries =
      Entries(kHeader + "0 install-vrf 1\n0 ! the recording stopped, No space left on device: 3 lines\n");
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_FALSE(std::get<Step>(entries[0]).complete);
}

TEST(ARecording, TellsWhatStoodBefore) {
  const auto entries = Entries(kHeader +
                               "0 has nothing\n0 has unit 2\n0 has destination 4294967295 intf=-1 egress=100001\n"
                               "0 has client \"a b\" notify\n0 has lim 0x1000001 port=1 lag=none\n");
  ASSERT_EQ(entries.size(), 5u);
  EXPECT_EQ(std::get<Standing>(entries[2]).destination_id, 4294967295u);
  EXPECT_EQ(std::get<Standing>(entries[3]).client.client, "a b");
  EXPECT_EQ(std::get<Standing>(entries[4]).port, 1);
  EXPECT_EQ(std::get<Standing>(entries[4]).lag, std::nullopt);
}

TEST(WhatIsNoRecording, IsRefusedWithItsLineTheReasonAndARemedy) {
  ExpectRefusal("", "the file is empty");
  ExpectRefusal("install-vrf 1\n", "line 1: this is no recording");
  ExpectRefusal(std::string(2 << 20, 'x'), "line 1: no line of a recording is that long");
  ExpectRefusal("card recording 2\n", "line 1: the recording is of format version 2");
  ExpectRefusal("card recording 1\nmodule 1\n", "line 3: the recording ends in its header");
  ExpectRefusal("card recording 1\nmachine 32-bit big-endian\n", "line 2: the header lacks its line \"module ");
  ExpectRefusal("card recording 1\nmodule 1\nmachine 48-bit big-endian\n",
                "line 3: \"48-bit big-endian\" is no machine");
}

TEST(ARecordingThatWasCut, IsRefused) {
  for (std::size_t size = 1; size < kHeader.size() - 1; ++size) EXPECT_NE(Refusal(kHeader.substr(0, size)), "") << size;
  ExpectRefusal(kHeader + "0 install-vrf 1\n1     fm_in", "line 8: the last line is incomplete: the recording was cut");
}

TEST(ARecordingThatWasEdited, IsRefused) {
  const std::string request = kHeader + "0 install-vrf 1\n";
  ExpectRefusal(kHeader + "0 instal-vrf 1\n", "line 7: \"instal-vrf 1\" is no request");
  ExpectRefusal(kHeader + "install-vrf 1\n", "line 7: this is no line of a recording");
  ExpectRefusal(kHeader + "0     fm_init() = 0\n", "line 7: this line stands in no request");
  ExpectRefusal(request + "0     fm_init() = none\n", "line 8: \"fm_init() = none\" is neither");
  ExpectRefusal(request + "0       fm_init() = 0\n", "line 8: the request of line 7 has no result");
  ExpectRefusal(request + "0   => maybe\n", "line 8: \"=> maybe\" is no result");
  ExpectRefusal(request + "0 install-vrf 2\n", "line 8: the request of line 7 has no result");
  ExpectRefusal(request + "0     client a gets 0\n", "line 8: \"client a gets 0\" is neither");
  ExpectRefusal(kHeader + "0 has port 1\n", "line 7: \"has port 1\" tells nothing");
  ExpectRefusal(kHeader + "0 client a perhaps\n", "line 7: \"client a perhaps\" is no request");
}

TEST(ARecordingOfCallbacksWithoutEnd, IsRefused) {
  std::string text = kHeader + "0 install-vrf 1\n";
  for (unsigned depth = 0; depth < 100; ++depth) {
    AppendLine(&text, 0, EventIndentation(depth), "client a is told id=1 port=1");
    AppendLine(&text, 0, EventIndentation(depth), "client a calls install-vrf 1");
  }
  ExpectRefusal(text, "line 136: clients' callbacks call each other 64 deep");
}
