#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "diagnosis/OnCard.h"

namespace {

using Lines = std::vector<std::string>;

/// What a replay on the card finds.
struct Replayed {
  std::vector<std::string> different;  ///< the requests that differ
  Lines recorded;                      ///< of the last of them
  Lines now;
  Lines other_ids;
};

Replayed Replay(const std::string& recording) {
  std::istringstream in(recording);
  recorder::Reader reader(in);
  diagnosis::OnCard card(softcard::Card::Get(), {});
  Replayed replayed;
  while (const auto entry = reader.Next()) {
    if (const auto* standing = std::get_if<recorder::Standing>(&*entry)) card.Apply(*standing);
    const auto* const step = std::get_if<recorder::Step>(&*entry);
    if (!step) continue;
    const auto made = card.Make(*step);
    replayed.other_ids.insert(replayed.other_ids.end(), made.other_ids.begin(), made.other_ids.end());
    if (made.recorded == made.now) continue;
    replayed.different.push_back(ActionText(*step));
    replayed.recorded = made.recorded;
    replayed.now = made.now;
  }
  return replayed;
}

/// All that a recording can hold, with `what` everywhere replaced.
std::string Recording(const std::vector<std::pair<std::string, std::string>>& replaced = {}) {
  std::ifstream in(RECORDING);
  std::string text(std::istreambuf_iterator<char>(in), {});
  for (const auto& [what, by] : replaced) {
    EXPECT_NE(text.find(what), std::string::npos) << what;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
      text.replace(at, what.size(), by);
    }
  }
  return text;
}

std::string Small(const std::string& lines) {
  return "card recording 1\nmodule 1.0.0\nmachine 32-bit big-endian\nunit 0\nbegun 2026-11-21T14:13:18.102030Z\n\n" +
         lines;
}

void ExpectRefusal(const std::string& lines, const std::string& begin) {
  try {
    Replay(Small(lines));
    ADD_FAILURE() << "replayed: " << lines;
  } catch (const recorder::BadRecording& bad) {
    EXPECT_EQ(std::string(bad.what()).substr(0, begin.size()), begin);
  }
}

}  // namespace

TEST(OnTheCard, ARecordingOfItselfIsTheSame) {
  const Replayed replayed = Replay(Recording());
  EXPECT_EQ(replayed.different, Lines{}) << testing::PrintToString(replayed.now);
  EXPECT_EQ(replayed.other_ids, Lines{});
}

TEST(OnTheCard, IdsAreToldOnceAndAreNoDifference) {
  const Replayed replayed = Replay(Recording({{"100001", "77"},
                                              {"intf=2", "intf=52"},
                                              {"mtu=1500, flags=0x0) = 2\n", "mtu=1500, flags=0x0) = 52\n"},
                                              {"intf 2: vrf=1", "L3 interface #52"}}));
  EXPECT_EQ(replayed.different, Lines{}) << testing::PrintToString(replayed.now);
  EXPECT_EQ(replayed.other_ids, (Lines{"intf 52 of the recording is intf 2 on the card",
                                       "egress 77 of the recording is egress 100001 on the card"}));
}

TEST(OnTheCard, AnObjectsTextThatWasNotRecordedIsNoDifference) {
  std::string recording = Recording();
  for (std::size_t at = recording.find("IntfObject::ToString"); at != std::string::npos;
       at = recording.find("IntfObject::ToString", at)) {
    const std::size_t begin = recording.rfind('\n', at) + 1;
    recording.erase(begin, recording.find('\n', at) + 1 - begin);
  }
  const Replayed replayed = Replay(recording);
  EXPECT_EQ(replayed.different, Lines{}) << testing::PrintToString(replayed.now);
}

TEST(OnTheCard, WhatTheCardDoesOtherwiseIsADifference) {
  const Replayed replayed = Replay(Recording({{"log 7: Tunnel Label 1 is 400", "log 7: Tunnel Label 1 is 401"}}));
  EXPECT_EQ(replayed.different, (Lines(2,
                                       "replace-mpls 20 vlan=10 lim=0x1000002 mac=00:00:5e:00:01:01 "
                                       "labels=300,400 caps=push")));
}

TEST(OnTheCard, WhatWasRefusedIsRefused) {
  const Replayed replayed =
      Replay(Small("0 install-vrf 1\n0     IngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = -11 (Failed)\n"
                   "0   => -11\n"
                   "0 install-vrf 1\n0     IngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = 0\n0   => 0\n"
                   "0 install-vrf 1\n0     IngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = 0\n0   => 0\n"));
  EXPECT_EQ(replayed.different, Lines{"install-vrf 1"});
  EXPECT_EQ(replayed.recorded, (Lines{"    IngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = 0", "  => 0"}));
  EXPECT_EQ(replayed.now,
            (Lines{"    IngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = -8 (Entry exists)", "  => -8"}));
}

TEST(OnTheCard, AnInterfacesIdInALogLineIsTheRecordedOne) {
  calls::Event created = *calls::ReadEvent(
      "IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 9");
  diagnosis::CardIds ids;
  ids.Begin({&std::get<calls::Call>(created)});
  calls::Event now = *calls::ReadEvent(
      "IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1501, flags=0x0) = 2");
  ids.Translate(&now);
  EXPECT_EQ(ids.TakeOthers(), Lines{"intf 9 of the recording is intf 2 on the card"});
  for (const char* const text : {"log 3: Error setting tunnel initiator (intf id(9), rv=-6)",
                                 "log 7: Intf changed, so updated it to 9.", "log 3: intf id(x)"}) {
    std::string seen = text;
    std::replace(seen.begin(), seen.end(), '9', '2');
    calls::Event line = *calls::ReadEvent(seen);
    ids.Translate(&line);
    EXPECT_EQ(calls::Text(line), text);
  }
}

TEST(OnTheCard, ADestinationFromBeforeTheRecordingCannotBeMade) {
  ExpectRefusal("0 has nothing\n0 has destination 20 intf=1 egress=2\n", "destination 20 was installed before");
  // One that is there meanwhile is known.
  EXPECT_EQ(
      Replay(Recording() + "       0 has nothing\n       0 has destination 10 intf=1 egress=0\n       0 has unit 0\n")
          .different,
      Lines{});
}

TEST(OnTheCard, TheModuleStartsOnce) {
  ExpectRefusal("0 init\n0   => 0\n0 start\n", "line 9: the module starts a second");
}

TEST(OnTheCard, ACallThatThrewCannotBeMadeToThrow) {
  ExpectRefusal("0 init\n0     fm_init() threw std::bad_alloc: std::bad_alloc\n0   => 0\n",
                "line 8: a platform call that threw");
}
