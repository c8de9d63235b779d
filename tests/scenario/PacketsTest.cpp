#include <gtest/gtest.h>

#include <set>

#include "tests/scenario/Observed.h"

namespace scenario {
namespace {

using Fate = softcard::Way::Fate;

// Routed on VLAN 100: destination 20 is a host behind eth1, 21 pushes two labels behind LAG 1, 22 is a virtual circuit.
const std::string kRouter =
    "install-vrf 1\n"
    "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
    "install-host 20 vlan=10 lim=eth1 mac=00:00:5e:00:02:01\n"
    "install-mpls 21 vlan=10 lim=lag1 mac=00:00:5e:00:02:02 labels=100,200 caps=push\n"
    "install-mpls 22 vlan=10 lim=eth2 mac=00:00:5e:00:02:03 labels=500 caps=vc\n";
const std::string kInject = "inject eth5 dmac=00:00:5e:00:01:01 vlan=100 ";

class PacketsTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { Failures(""); }
};

/// The way of the last packet, a line each; with the bytes that left when `frames` says so.
std::string WayOf(const std::string& text, bool frames = false) {
  const Observed observed(text);
  std::string way;
  for (const TraceLine& line : observed.steps.back().trace().lines) {
    if (frames || line.kind() == TraceLine::Kind::kPacket) way += line.Text() + "\n";
  }
  return way;
}

Forwarded LastPacket(const std::string& text) { return *Observed(text).steps.back().trace().packet; }

std::string Hex(const softcard::Bytes& bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : bytes) (text += kDigits[byte >> 4]) += kDigits[byte & 0xF];
  return text;
}

TEST_F(PacketsTest, TheStoryNamesEachRowThatDecidedThenTheFrameLayerByLayer) {
  EXPECT_EQ(WayOf(kRouter + "route 1 198.51.100.0/24 21\nlag lag1 eth3\n" + kInject + "tos=0xa0 payload=0102", true),
            "in through eth5, 40 bytes\n"
            "station 100: mask=0xfff mac=00:00:5e:00:01:01 flags=0x0\n"
            "association 100: vrf=1\n"
            "route 198.51.100.0/24: vrf=1 destination=21\n"
            "destination 21: intf=2 egress=100002\n"
            "egress 100002: intf=2 mac=00:00:5e:00:02:02 vlan=100 port=lag1 label=none to_cpu=false drop=false "
            "control=0\n"
            "intf 2: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=mpls\n"
            "initiator 2: labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}, {flags=0x11, label=200, "
            "qos_map=1, exp=0, ttl=255}]\n"
            "members lag1: ports=eth3\n"
            "| ethernet dst=00:00:5e:00:02:02 src=00:00:5e:00:01:01 type=0x8100\n"
            "| 802.1q vlan=100 type=0x8847\n"
            "| mpls label=200 exp=5 s=0 ttl=255\n"
            "| mpls label=100 exp=5 s=1 ttl=255\n"
            "| ipv4 src=192.0.2.1 dst=198.51.100.1 ttl=63 tos=0xa0 size=22\n"
            "sent through eth3, 48 bytes\n"
            "frame 00005e000202 00005e000101 81000064 8847 000c8aff 00064bff "
            "45a00016000000003ffd8e15c0000201c63364010102\n");
}

TEST_F(PacketsTest, ARouteIsFollowedToWhatItsDestinationIsNow) {
  const std::string text = kRouter + "route 1 198.51.100.0/24 20\nroute 1 198.51.100.1 21\n" + kInject + "\n" +
                           "expect packet \"route 198.51.100.1/32: *\"\nexpect packet \"destination 21:*\"\n" +
                           "no-route 1 198.51.100.1/32\n" + kInject + "\nexpect packet \"sent through eth1,*\"\n" +
                           "replace-host 20 vlan=10 lim=eth9 mac=00:00:5e:00:02:01\n" + kInject + "\n" +
                           "expect packet \"sent through eth9,*\"\ndestroy-host 20\n" + kInject + "\n" +
                           "expect packet \"dropped: no-record: destination 20 is not installed\"\n" +
                           "no-route 1 198.51.100.0/24\n" + kInject + "\nexpect packet \"dropped: no-route*\"\n" +
                           "no-route 1 198.51.100.0/24\nexpect result BCM_E_NOT_FOUND\n";
  EXPECT_EQ(Failures(text), "");
}

TEST_F(PacketsTest, ALabelGoesToADestinationIsPoppedAndRoutedOrLetsTheFrameOut) {
  EXPECT_EQ(Failures(kRouter + "route 1 2001:db8:1::/48 20\nlabel 16 21\nlabel 17 pop 1\nlabel 18 port eth8\n" +
                     kInject + "labels=16,99 ttl=9\nexpect packet \"| mpls label=99 exp=0 s=1 ttl=9\"\n" + kInject +
                     "labels=17 dst=2001:db8:1::7 ttl=9\nexpect packet \"| ipv6 * dst=2001:db8:1::7 ttl=8 *\"\n" +
                     kInject + "labels=17,18 frame=\"020000000001 020000000002 0800 00\"\n" +
                     "expect packet \"frame 020000000001 020000000002 0800 00\"\n" +
                     "expect packet \"sent through eth8, 15 bytes\"\nno-label 18\n" + kInject +
                     "labels=18 frame=0200000000010200000000020800\nexpect packet \"dropped: no-label*\"\n" +
                     "label 3 20\nexpect result BCM_E_PARAM\nlabel 18 port absent:eth99\nexpect result BCM_E_PORT\n"),
            "");
}

TEST_F(PacketsTest, WhatComesInOnAnAttachedPortGoesWholeToItsDestination) {
  const std::string frame = "020000000001020000000002080045";
  EXPECT_EQ(Failures(kRouter + "attach eth7 22\ninject eth7 hex=" + frame +
                     "\nexpect packet \"frame 00005e000203 00005e000101 81000064 8847 001f41ff 020000000001 *\"\n"
                     "no-attach eth7\ninject eth7 hex=" +
                     frame + "\nexpect packet \"dropped: not-routed*\"\nno-attach eth7\nexpect result -7\n" +
                     "attach lag1 22\nexpect result BCM_E_PORT\nsend 22 frame=" + frame +
                     "\nexpect packet \"| mpls label=500 exp=0 s=1 ttl=255\"\n"),
            "");
}

TEST_F(PacketsTest, AFlowLeavesByOneMemberOfItsLag) {
  std::string text = kRouter + "lag lag1 eth3,eth4\nexpect result 0\n";
  for (int i = 0; i < 3; ++i) text += "send 21 src=192.0.2.77 ttl=" + std::to_string(10 + i) + "\n";
  const Observed observed(text + "for I in 1..20\nsend 21 src=192.0.2.$I\nend\n");
  std::set<std::string> of_one_flow, of_all;
  for (const KeptStep& step : observed.steps) {
    if (step.kind != Kind::kPacket) continue;
    const std::string& port = step.trace().packet->out_port;
    (step.text.find("192.0.2.77") != std::string::npos ? of_one_flow : of_all).insert(port);
  }
  EXPECT_EQ(of_one_flow.size(), 1u);
  EXPECT_EQ(of_all, (std::set<std::string>{"eth3", "eth4"}));
  EXPECT_EQ(Failures("lag lag1 eth3,eth3\nexpect result BCM_E_PARAM\nlag eth1 eth3\nexpect result BCM_E_PORT\n"
                     "lag lag1 eth3\nlag lag2 eth3\nexpect result BCM_E_EXISTS\n"),
            "");
}

TEST_F(PacketsTest, PacketsAreWhatTheirFieldsSay) {
  const auto sent = [](const std::string& fields) { return Hex(LastPacket("send 1 " + fields).in); };
  EXPECT_EQ(sent(""), "450000140000000040fd8db7c0000201c6336401");
  EXPECT_EQ(sent("src=10.0.0.1 dst=10.0.0.2 ttl=1 tos=7 size=22 payload=ff"),
            "450700160000000001fda4e20a0000010a000002ff00");
  EXPECT_EQ(sent("dst=::2 src=::1 ttl=3 tos=0xff payload=\"01 02\""),
            "6ff000000002fd0300000000000000000000000000000001000000000000000000000000000000020102");
  EXPECT_EQ(sent("src=2001:db8::5").substr(48, 32), "20010db8000100000000000000000001");
  EXPECT_EQ(sent("labels=5,6 ttl=7 tos=0x20").substr(0, 16), "0000520700006307");
  EXPECT_EQ(sent("frame=0102"), "0102");
  EXPECT_EQ(sent("frame=0102 labels=7 ttl=9"), "000071090102");

  const auto injected = [](const std::string& fields) { return Hex(LastPacket("inject eth1 " + fields).in); };
  EXPECT_EQ(injected("hex="), "");
  EXPECT_EQ(injected("hex=\"0A 0b\""), "0a0b");
  EXPECT_EQ(injected("dmac=02:00:00:00:00:09 smac=02:00:00:00:00:08").substr(0, 32),
            "0200000000090200000000080800450"
            "0");
  EXPECT_EQ(injected("dmac=02:00:00:00:00:09 vlan=4095 dst=::").substr(0, 38),
            "0200000000090200000000018100"
            "0fff86dd60");
  EXPECT_EQ(injected("dmac=02:00:00:00:00:09 labels=1").substr(24, 12), "884700001140");
}

TEST_F(PacketsTest, AFrameOnAPortThatTheCardDoesNotHaveIsDropped) {
  for (const char* port : {"absent:eth99", "absent:eth1001", "lag1", "cpu", "vlan3"}) {
    const Forwarded packet = LastPacket(std::string("inject ") + port + " hex=00");
    EXPECT_EQ(packet.way.drop, softcard::Drop::kNoPort) << port;
    EXPECT_EQ(packet.in_port, "") << port;
  }
  EXPECT_EQ(WayOf("inject absent:eth99 hex=00"),
            "in through 99, 1 bytes\ndropped: no-port: 99 is no Ethernet port of this card\n");
}

TEST_F(PacketsTest, EachPacketComesAMicrosecondAfterTheOneBefore) {
  const Observed observed(kRouter + "send 20\ninject eth1 hex=00\ninit\nsend 20\n");
  std::vector<std::uint64_t> times;
  for (const KeptStep& step : observed.steps) {
    if (step.kind == Kind::kPacket) times.push_back(step.trace().packet->time);
  }
  EXPECT_EQ(times, (std::vector<std::uint64_t>{1000, 2000, 3000}));
  EXPECT_EQ(observed.steps.back().trace().packet->out_port, "eth1");
}

TEST_F(PacketsTest, PacketsAreCountedByDestinationPortAndDrop) {
  EXPECT_EQ(Failures(kRouter + "route 1 0.0.0.0/0 20\n" + kInject + "\n" + kInject + "ttl=1\nsend 20\nsend 99\n" +
                     "expect table counters\n"
                     "counter destination 20: packets=2 bytes=76\n"
                     "counter eth1 out: packets=2 bytes=76\n"
                     "counter eth5 in: packets=2 bytes=76\n"
                     "counter drop no-record: packets=1 bytes=20\n"
                     "counter drop ttl: packets=1 bytes=38\n"
                     "end\nexpect rows counters 5\n"),
            "");
}

TEST_F(PacketsTest, WhatOtherModulesFillIsLeftOnTheCardAndWhatPacketsLeaveIsNot) {
  EXPECT_EQ(Failures("route 1 10.0.0.0/8 20\nexpect rows routes 1\nsend 1\n"
                     "expect empty except=routes\nno-route 1 10.0.0.0/8\nexpect empty\n"),
            "");
  EXPECT_EQ(Failures("card routes=1 labels=1\nroute 1 10.0.0.0/8 20\nroute 1 ::/0 20\nexpect result BCM_E_FULL\n"
                     "label 16 20\nlabel 17 20\nexpect result BCM_E_FULL\nexpect empty\n"),
            "8: expect empty\n    expected: nothing on the card\n    found:    route 10.0.0.0/8: vrf=1 destination=20\n"
            "              label 16: action=destination to=20\n");
}

TEST_F(PacketsTest, TheExpComesThroughTheMapThatTheCardDescribes) {
  EXPECT_EQ(
      Failures("card exp=7,6,5,4,3,2,1,0\n" + kRouter + "send 21 tos=0x20\n" +
               "expect packet \"| mpls label=100 exp=6 s=1 ttl=255\"\nexpect packet \"exp-map 1: priority=1 exp=6\"\n" +
               "send 20\nexpect no packet \"exp-map*\"\n"),
      "");
}

TEST_F(PacketsTest, ADestinationIsShownAsTheChainOfItsRows) {
  const auto chain = [](const std::string& text) {
    std::string lines;
    const Observed observed(text);
    for (const std::string& line : std::get<ShownChain>(observed.steps.back().content).lines) lines += line + "\n";
    return lines;
  };
  EXPECT_EQ(chain(kRouter + "lag lag1 eth3,eth4\nshow destination 21\n"),
            "destination 21: intf=2 egress=100002\n"
            "egress 100002: intf=2 mac=00:00:5e:00:02:02 vlan=100 port=lag1 label=none to_cpu=false drop=false "
            "control=0\n"
            "intf 2: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=mpls\n"
            "initiator 2: labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}, {flags=0x11, label=200, "
            "qos_map=1, exp=0, ttl=255}]\n"
            "members lag1: ports=eth3,eth4\n"
            "labels on the wire: 200 100\n"
            "out through one of its members\n");
  EXPECT_EQ(chain(kRouter + "show destination 10\n"),
            "destination 10: intf=1 egress=0\n"
            "dropped: no-egress: destination 10 is a VLAN, not a way to a next hop\n");
  const std::string host = chain(kRouter + "show destination 20\n");
  EXPECT_NE(host.find("labels on the wire: none\nout through eth1\n"), std::string::npos) << host;
  EXPECT_EQ(Failures(kRouter + "show destination 20\nexpect rows counters 0\n"), "") << "no packet is sent";
  EXPECT_NE(chain(kRouter + "install-host 30 vlan=10 lim=eth1 mac=00:00:5e:00:02:05 actions=cpu\nshow destination 30\n")
                .find("CPU"),
            std::string::npos);
}

TEST_F(PacketsTest, LabelsThatWereAskedForInVainAreToldOf) {
  const std::string asked =
      kRouter + "install-mpls 23 vlan=10 lim=eth2 mac=00:00:5e:00:02:02 labels=100,200,300 caps=push\n";
  const std::string remark = "at odds: labels asked for: 3; a push takes the first two";
  EXPECT_EQ(Failures(asked + "send 23\nexpect packet \"" + remark + "\"\nsend 21\nexpect no packet \"at odds*\"\n" +
                     "replace-mpls 23 vlan=10 lim=eth2 mac=00:00:5e:00:02:02 labels=100 caps=push\nsend 23\n" +
                     "expect no packet \"at odds*\"\n"),
            "");
  EXPECT_EQ(Failures(asked + "destroy-mpls 23\ninstall-host 23 vlan=10 lim=eth2 mac=00:00:5e:00:02:02\nsend 23\n" +
                     "expect no packet \"at odds*\"\n"),
            "");
  const std::pair<const char*, const char*> others[] = {
      {"vc", "labels asked for: 2; a virtual circuit takes the first"},
      {"forward", "labels asked for: 2; a forward takes none"}};
  for (const auto& [capability, text] : others) {
    EXPECT_EQ(Failures(kRouter + "install-mpls 23 vlan=10 lim=eth2 mac=00:00:5e:00:02:02 labels=100,200 caps=" +
                       capability + "\nsend 23\nexpect packet \"at odds: " + text + "\"\n"),
              "");
  }
  const Observed observed(asked + "show destination 23\n");
  EXPECT_EQ(std::get<ShownChain>(observed.steps.back().content).lines[1], remark);
}

TEST_F(PacketsTest, WhatGoesToTheCpuIsShownAsTheCpuGetsIt) {
  const Forwarded packet = LastPacket(
      kRouter + "install-host 30 vlan=10 lim=cpu mac=00:00:5e:00:02:05 actions=cpu\nroute 1 0.0.0.0/0 30\n" + kInject);
  EXPECT_EQ(packet.way.fate, Fate::kToCpu);
  EXPECT_EQ(packet.out_port, "cpu");
  EXPECT_EQ(packet.out, packet.in);
}

}  // namespace
}  // namespace scenario
