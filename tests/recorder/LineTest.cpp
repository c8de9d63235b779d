#include <gtest/gtest.h>

#include "recorder/Format.h"
#include "recorder/Request.h"

using namespace recorder;

TEST(ALine, BeginsWithItsDistanceInTime) {
  std::string text;
  AppendLine(&text, 12, 4, "fm_init() = 0");
  AppendLine(&text, 123456789012, 0, "install-vrf 1");
  EXPECT_EQ(text, "      12     fm_init() = 0\n123456789012 install-vrf 1\n");
}

TEST(ALine, StaysOneWhateverItsText) {
  const std::string text = std::string("a\nb\\c\rd\x7f\0e", 10) + "\xc3\xa4";
  std::string line;
  AppendLine(&line, 0, 2, text);
  EXPECT_EQ(line, "       0   a\\nb\\\\c\\x0dd\\x7f\\x00e\xc3\xa4\n");
  line.pop_back();
  const auto read = ReadLine(line);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->text, text);
  EXPECT_EQ(read->indentation, 2u);
}

TEST(ALine, IsNotReadFromWhatNoRecorderWrites) {
  for (const char* line : {"", "   ", "12", "12 ", "x install-vrf 1", "-1 init", "12 a\\", "12 a\\q", "12 a\\x1",
                           "12 a\\xgg", "99999999999999999999 init", "12 a\tb", "12init"}) {
    EXPECT_FALSE(ReadLine(line)) << line;
  }
}

TEST(ARequest, IsReadBackFromItsText) {
  for (const char* text :
       {"start", "init", "install-vrf 1", "destroy-vrf 4294967295",
        "install-vlan 10 lim=0x4000064 vrf=1 mtu=1500 mac=00:00:5e:00:01:01", "destroy-vlan 10",
        "replace-vlan 10 lim=0xffffffff vrf=1 mtu=0 mac=null caps=station-flag,none,7,-1",
        "install-host 20 vlan=0 lim=0x1000001 mac=00:00:5e:00:01:01 actions=drop,cpu,9",
        "replace-mpls 20 vlan=10 lim=0x0 mac=null labels=100,4294967295 caps=push,protection,-2 action=drop",
        "install-mpls 20 vlan=10 lim=0x1000001 mac=00:00:5e:00:01:01"}) {
    const auto request = ReadRequest(text);
    ASSERT_TRUE(request) << text;
    EXPECT_EQ(Text(*request), text);
  }
}

TEST(ARequest, IsNotReadFromAnotherText) {
  for (const char* text :
       {"", "install", "install-vrf", "install-vrf x", "install-vrf 1 ", "install-vrf 4294967296",
        "install-vlan 10 vrf=1", "install-vlan 10 lim=eth1 vrf=1 mtu=1 mac=null", "destroy-vlan 10 caps=1",
        "install-host 1 vlan=0 lim=0x1 mac=0 actions=", "install-host 1 vlan=0 lim=0x1 mac=00:00:5e:00:01:-1",
        "install-host 1 vlan=0 lim=0x1 mac=null actions=drop,", "start 1"}) {
    EXPECT_FALSE(ReadRequest(text)) << text;
  }
}

TEST(AClientsName, IsAWordWhateverItsCharacters) {
  for (const char* name : {"statistics", "", "two words", "a\"b", "back\\slash", "new\nline"}) {
    const std::string word = Word(name) + " notify";
    std::string_view rest = word;
    EXPECT_EQ(TakeWord(&rest), name);
    EXPECT_EQ(rest, " notify");
  }
  std::string_view open = "\"never closed";
  EXPECT_FALSE(TakeWord(&open));
}

TEST(ATime, IsUtcInMicroseconds) { EXPECT_EQ(TimeText(1795270398102030), "2026-11-21T14:13:18.102030Z"); }
