#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "diagnosis/CardTerms.h"

namespace {

std::string Recording(const std::string& lines, const std::string& unit = "0") {
  return "card recording 1\nmodule 1.0.0\nmachine 32-bit big-endian\nunit " + unit +
         "\nbegun 2026-11-21T14:13:18.102030Z\n\n" + lines;
}

diagnosis::CardTerms Terms(const std::string& recording) {
  std::istringstream in(recording);
  recorder::Reader reader(in);
  return diagnosis::CardTerms(&reader);
}

/// The requests, calls and log lines in the card's terms, a line each.
std::string Translated(const std::string& lines) {
  const std::string recording = Recording(lines);
  const diagnosis::CardTerms terms = Terms(recording);
  std::istringstream in(recording);
  recorder::Reader reader(in);
  std::string text;
  while (auto entry = reader.Next()) {
    terms.Translate(&*entry);
    const auto* const step = std::get_if<recorder::Step>(&*entry);
    if (!step) continue;
    text += ActionText(*step) + '\n';
    for (const recorder::Item& item : step->items) {
      const auto* const told = std::get_if<recorder::Notification>(&item.what);
      text += (told ? TellText(*told) : calls::Text(std::get<calls::Event>(item.what))) + '\n';
    }
  }
  return text;
}

/// A host's request by a lim id of which the platform answers this.
std::string Host(const std::string& lim, bool ethernet, bool lag, bool cpu) {
  const auto number = [](bool yes) { return std::string(yes ? "1" : "0") + '\n'; };
  return "0 install-host 30 vlan=10 lim=" + lim + " mac=00:00:5e:00:01:01\n" +           //
         "0     limid_to_type(limid=" + lim + ") = 0 -> type=1\n" +                      //
         "0     limid_is_from_type(limid=" + lim + ", type=cpuport) = " + number(cpu) +  //
         "0     limid_is_from_type_ethernet(limid=" + lim + ") = " + number(ethernet) +  //
         "0     limid_is_from_type(limid=" + lim + ", type=lag) = " + number(lag) +      //
         "0   => 0\n";
}

}  // namespace

TEST(ARecordingInTheCardsTerms, IsAsItIsWhenTheCardIsThisOne) {
  std::ifstream in(RECORDING);
  const std::string recording(std::istreambuf_iterator<char>(in), {});
  const diagnosis::CardTerms terms = Terms(recording);
  EXPECT_EQ(terms.Others(), "");
  EXPECT_EQ(terms.CardLine(), "");
  EXPECT_EQ(Terms(Recording("0 has lim 0x2000003 port=none lag=1003\n" + Host("0x2000003", false, true, false) +
                            "0 has lim 0x3000000 port=0 lag=none\n" + Host("0x3000000", false, false, true)))
                .Others(),
            "");
}

TEST(ARecordingInTheCardsTerms, HasTheRecordedUnitSlotAndMap) {
  const auto terms =
      Terms(Recording("0 init\n0     fm_local_slot() = 3\n0     HalBcmCommon::GetMplsExpMapId() = 9\n"
                      "0     fm_local_slot() = -4 (Invalid parameter)\n0   => 0\n",
                      "5"));
  EXPECT_EQ(terms.CardLine(), "card unit=5 slot=3 exp-map=9");
  EXPECT_EQ(terms.description().unit, 5);
}

TEST(ARecordingInTheCardsTerms, GivesEachPortTheCardsOwn) {
  const auto others = [](const std::string& lines) { return Terms(Recording(lines)).Others(); };
  EXPECT_EQ(others("0 has lim 0xe5 port=101 lag=none\n" + Host("0xe5", true, false, false)),
            "on the card lim 0xe5 is eth101");
  EXPECT_EQ(others("0 has lim 0xe5 port=2101 lag=none\n" + Host("0xe5", true, false, false) +
                   "0 has lim 0xe6 port=2101 lag=none\n" + Host("0xe6", true, false, false) +
                   "0 has lim 0xe7 port=1 lag=none\n" + Host("0xe7", true, false, false)),
            "on the card lim 0xe5 is eth2, lim 0xe6 is eth2, lim 0xe7 is eth1, port 2101 is port 2");
  EXPECT_EQ(others("0 has lim 0xa1 port=none lag=70\n" + Host("0xa1", false, true, false)),
            "on the card lim 0xa1 is lag1, port 70 is port 1001");
  EXPECT_EQ(others("0 has lim 0xc0 port=64 lag=none\n" + Host("0xc0", false, false, true)),
            "on the card lim 0xc0 is cpu, port 64 is port 0");
  EXPECT_EQ(others("0 has lim 0xe5 port=none lag=none\n" + Host("0xe5", true, false, false)),
            "on the card lim 0xe5 is eth16777215");
  EXPECT_EQ(others(Host("0xb0", false, false, false)), "on the card lim 0xb0 is vlan16777215");
}

TEST(ARecordingInTheCardsTerms, HasPortsEnough) {
  EXPECT_EQ(Terms(Recording("0 has lim 0xe5 port=101 lag=none\n" + Host("0xe5", true, false, false))).CardLine(),
            "card ports=101");
  std::string lags;
  for (int lag = 10; lag < 20; ++lag) {
    const std::string lim = "0x" + std::to_string(lag);
    lags += "0 has lim " + lim + " port=none lag=" + std::to_string(lag) + '\n' + Host(lim, false, true, false);
  }
  EXPECT_EQ(Terms(Recording(lags)).CardLine(), "card lags=10");
}

TEST(ARecordingInTheCardsTerms, NamesThemInCallsLogLinesAndNotifications) {
  EXPECT_EQ(Translated("0 has lim 0xe5 port=2101 lag=none\n"
                       "0 client a notify\n"
                       "0 replace-mpls 20 vlan=10 lim=0xe5 mac=00:00:5e:00:01:01 labels=16 caps=push\n"
                       "0     limid_to_type(limid=0xe5) = 0 -> type=229\n"
                       "0     limid_to_ifindex(limid=0xe5) = 0 -> ifindex=1\n"
                       "0     limid_to_intfname(limid=0xe5, size=64) = 0 -> name=port 1 (of e5)\n"
                       "0     log 7: Converting lim id(name=port 1 (of e5), type=0xE5, value=0x000001) to port\n"
                       "0     limid_is_from_type_ethernet(limid=0xe5) = 7\n"
                       "0     client a is told id=20 port=2101\n"
                       "0     client a calls destroy-host 30\n"
                       "0       limid_to_type(limid=0xe5) = -4 (Parameter)\n"
                       "0     client a gets 0\n"
                       "0   => 0\n"),
            "client a notify\n"
            "replace-mpls 20 vlan=10 lim=0x1000001 mac=00:00:5e:00:01:01 labels=16 caps=push\n"
            "limid_to_type(limid=0x1000001) = 0 -> type=229\n"
            "limid_to_ifindex(limid=0x1000001) = 0 -> ifindex=1\n"
            "limid_to_intfname(limid=0x1000001, size=64) = 0 -> name=port 1 (of e5)\n"
            "log 7: Converting lim id(name=eth1, type=0x01, value=0x000001) to port\n"
            "limid_is_from_type_ethernet(limid=0x1000001) = 1\n"
            "client a is told id=20 port=1\n");
}

TEST(ARecordingInTheCardsTerms, KeepsAVlansNumber) {
  EXPECT_EQ(Translated("0 install-vlan 10 lim=0x6571 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
                       "0     limid_to_l3_vlan_vlanid(limid=0x6571) = 101\n"
                       "0     EgressManager::DeleteEgress(egress=1) = 0\n0   => 0\n"),
            "install-vlan 10 lim=0x4000065 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
            "limid_to_l3_vlan_vlanid(limid=0x4000065) = 101\nEgressManager::DeleteEgress(egress=1) = 0\n");
}
