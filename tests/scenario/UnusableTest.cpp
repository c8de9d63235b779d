#include <gtest/gtest.h>

#include <cctype>
#include <string_view>

#include "tests/scenario/Parsed.h"

namespace scenario {
namespace {

struct UnusableLine {
  const char* text;
  const char* complaint;
};

class Unusable : public testing::TestWithParam<UnusableLine> {};

TEST_P(Unusable, LineNamesPlaceReasonAndRemedy) { EXPECT_EQ(FirstComplaint(GetParam().text), GetParam().complaint); }

/// The line, as far as a test may be called so.
std::string Name(const testing::TestParamInfo<UnusableLine>& info) {
  std::string name;
  for (const char c : std::string_view(info.param.text)) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      name += c;
    } else if (!name.empty() && name.back() != '_') {
      name += '_';
    }
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, Unusable,
    testing::Values(
        UnusableLine{"install-vrf one", "1:13: \"one\" is no id; it is a number"},
        UnusableLine{"install-vrf 4294967296", "1:13: 4294967296 does not fit; id is 0 ... 4294967295"},
        UnusableLine{"install-vrf -1", "1:13: -1 does not fit; id is 0 ... 4294967295"},
        UnusableLine{"install-vrf 0xZ", "1:13: \"0xZ\" is no id; it is a number"},
        UnusableLine{"install-vrf 99999999999999999999999",
                     "1:13: 99999999999999999999999 does not fit; id is 0 ... 4294967295"},
        UnusableLine{"install-vlan 10 lim=vlan100 vrf=1 mtu=99999999999 mac=00:00:5e:00:01:01",
                     "1:39: 99999999999 does not fit; MTU is 0 ... 4294967295"},
        UnusableLine{"install-mpls 1 vlan=1 lim=eth1 mac=null labels=1,,2", "1:50: \"\" is no label; it is a number"},
        UnusableLine{"install-mpls 1 vlan=1 lim=eth1 mac=null caps=push,pop",
                     "1:51: \"pop\" is no MPLS capability; it is one of none, protection, swap, forward, push, vc"},
        UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=null actions=dorp",
                     "1:49: \"dorp\" is no action; did you mean \"drop\"?"},
        UnusableLine{"fail fm_init result=BCM_E_FUL",
                     "1:21: \"BCM_E_FUL\" is no result of fm_init; did you mean \"BCM_E_FULL\"?"}),
    Name);

INSTANTIATE_TEST_SUITE_P(
    Results, Unusable,
    testing::Values(
        UnusableLine{"fail IntfManager::GetIntfObject result=BCM_E_NOT_FOUND",
                     "1:40: \"BCM_E_NOT_FOUND\" is no result of IntfManager::GetIntfObject; it is true or false"},
        UnusableLine{"fail IntfManager::GetIntfObject result=0",
                     "1:40: \"0\" is no result of IntfManager::GetIntfObject; it is true or false"},
        UnusableLine{"fail IntfManager::CreateIntf result=true",
                     "1:37: \"true\" is no result of IntfManager::CreateIntf; it is one of BCM_E_NONE, BCM_E_INTERNAL, "
                     "BCM_E_MEMORY, BCM_E_UNIT, BCM_E_PARAM, BCM_E_EMPTY, BCM_E_FULL, BCM_E_NOT_FOUND, BCM_E_EXISTS, "
                     "BCM_E_TIMEOUT, BCM_E_BUSY, BCM_E_FAIL, BCM_E_DISABLED, BCM_E_BADID, BCM_E_RESOURCE, "
                     "BCM_E_CONFIG, BCM_E_UNAVAIL, BCM_E_INIT, BCM_E_PORT"},
        UnusableLine{"fail HalBcmCommon::GetMplsExpMapId result=BCM_E_FULL",
                     "1:43: \"BCM_E_FULL\" is no result of HalBcmCommon::GetMplsExpMapId; it is a number"},
        UnusableLine{"fail fm_init nth=evry result=-1",
                     "1:18: \"evry\" is no number of a call; did you mean \"every\"?"},
        UnusableLine{"fail call=1 result=FULL", "1:20: \"FULL\" is no result; did you mean \"BCM_E_FULL\"?"}),
    Name);

INSTANTIATE_TEST_SUITE_P(
    Addresses, Unusable,
    testing::Values(UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=00:00:5e:00:01",
                                 "1:36: this MAC address has 5 bytes; one has six, such as 00:00:5e:00:01:01"},
                    UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=00:00:5e:00:01:01:02",
                                 "1:36: this MAC address has 7 bytes; one has six, such as 00:00:5e:00:01:01"},
                    UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=00:00:5e:00:01:0g",
                                 "1:51: \"0g\" is no byte of a MAC address; one looks like 00:00:5e:00:01:01, or null"},
                    UnusableLine{
                        "install-host 1 vlan=1 lim=eth1 mac=00:00:5e:00:01:101",
                        "1:51: \"101\" is no byte of a MAC address; one looks like 00:00:5e:00:01:01, or null"},
                    UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=",
                                 "1:36: \"\" is no byte of a MAC address; one looks like 00:00:5e:00:01:01, or null"},
                    UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=00:00:5e:00:01:01+x",
                                 "1:54: \"x\" is no offset of a MAC address; it is a number"}),
    Name);

INSTANTIATE_TEST_SUITE_P(
    Ports, Unusable,
    testing::Values(
        UnusableLine{"install-host 1 vlan=1 lim=eht1 mac=null", "1:27: unknown port \"eht1\"; did you mean \"eth1\"?"},
        UnusableLine{"install-host 1 vlan=1 lim=wlan mac=null",
                     "1:27: unknown port \"wlan\"; a lim id is ethN, lagN, vlanN, cpu or the word itself, such as "
                     "0x05000001"},
        UnusableLine{"install-host 1 vlan=1 lim=vlan16777216 mac=null",
                     "1:27: vlan16777216 does not fit; the number of a lim id is 0 ... 16777215"}),
    Name);

INSTANTIATE_TEST_SUITE_P(
    Statements, Unusable,
    testing::Values(
        UnusableLine{"instal-vlan", "1:1: unknown request \"instal-vlan\"; did you mean \"install-vlan\"?"},
        UnusableLine{"install-vrf", "1:1: \"install-vrf\" needs VRF"},
        UnusableLine{"install-vrf 1 2", "1:15: unexpected \"2\""},
        UnusableLine{"install-host 1 vlan=1 lim=eth1", "1:1: \"install-host\" needs mac=MAC"},
        UnusableLine{"install-host 1 vlan=1 vlan=2 lim=eth1 mac=null", "1:23: vlan= is given twice"},
        UnusableLine{"install-host 1 valn=1 lim=eth1 mac=null",
                     "1:16: \"install-host\" has no field \"valn\"; did you mean \"vlan\"?"},
        UnusableLine{"init now=1", "1:6: \"init\" has no field \"now\""},
        UnusableLine{"client c", "1:1: \"client\" needs a name and what it does"},
        UnusableLine{"client c throw", "1:10: \"throw\" needs TEXT"},
        UnusableLine{"client c notify me", "1:17: unexpected \"me\""},
        UnusableLine{"client c calls", "1:10: \"calls\" needs a request"},
        UnusableLine{"client c calls ; init", "1:16: a request is missing before this semicolon"},
        UnusableLine{
            "client c calls show all",
            "1:16: a callback makes requests, \"show\" is none; it is one of start, init, install-vrf, destroy-vrf, "
            "install-vlan, replace-vlan, destroy-vlan, install-host, replace-host, destroy-host, install-mpls, "
            "replace-mpls, destroy-mpls, client, route, no-route, label, no-label, attach, no-attach, lag"},
        UnusableLine{
            "client c calls client d calls init",
            "1:16: a client that a callback registers cannot make calls itself; register it by a line of its own"},
        UnusableLine{
            "fail CreateIntf result=-1",
            "1:6: unknown platform function with a result \"CreateIntf\"; did you mean \"IntfManager::CreateIntf\"?"},
        UnusableLine{"fail result=-1", "1:1: \"fail\" needs either FUNCTION or call=N"},
        UnusableLine{"fail fm_init call=1 result=-1", "1:1: \"fail\" needs either FUNCTION or call=N"},
        UnusableLine{"fail nth=2 call=1 result=-1",
                     "1:10: nth= counts the calls of a function; with call= leave it out"},
        UnusableLine{"fail fm_init nth=0 result=-1", "1:18: 0 does not fit; number of a call is 1 ... 4294967295"},
        UnusableLine{"show", "1:1: \"show\" needs TABLE..."},
        UnusableLine{"show intf", "1:6: unknown table \"intf\"; did you mean \"intfs\"?"},
        UnusableLine{"show intf all vrf", "1:6: unknown table \"intf\"; did you mean \"intfs\"?"},
        UnusableLine{
            "show nothing",
            "1:6: unknown table \"nothing\"; it is one of intfs, egresses, initiators, stations, associations, "
            "vrfs, protocol, switch, ports, lags, destinations, routes, labels, attachments, members, counters, all"},
        UnusableLine{"say", "1:1: \"say\" needs TEXT"},
        UnusableLine{"say \"x\" \nclient \"x notify", "2:8: this quote is not closed"}),
    Name);

INSTANTIATE_TEST_SUITE_P(
    Expectations, Unusable,
    testing::Values(
        UnusableLine{"expect",
                     "1:1: what is expected is missing; it is one of result, throw, log, call, notification, packet, "
                     "trace, rows, table, empty"},
        UnusableLine{"init\nexpect resul 0", "2:8: nothing is expected by \"expect resul\"; did you mean \"result\"?"},
        UnusableLine{"init\nexpect no result 0",
                     "2:11: nothing is expected by \"expect no result\"; it is one of log, call, notification, packet"},
        UnusableLine{"init\nexpect no call CreateIntf",
                     "2:16: unknown platform function \"CreateIntf\"; did you mean \"IntfManager::CreateIntf\"?"},
        UnusableLine{"init\nexpect no call \"IntfManager::CreatIntf(*\"",
                     "2:17: unknown platform function \"IntfManager::CreatIntf\"; did you mean "
                     "\"IntfManager::CreateIntf\"?"},
        UnusableLine{"init\nexpect no call \"IntfManager::CreatI*\"",
                     "2:17: unknown platform function \"IntfManager::CreatI\"; did you mean "
                     "\"IntfManager::CreateIntf\"?"},
        UnusableLine{"init\nexpect no call \"fm_init\"",
                     "2:17: this is no whole call; leave the quotes out for a call of \"fm_init\" whatever its "
                     "arguments and result"},
        UnusableLine{"init\nexpect call fm_init() = 0",
                     "2:23: \"expect call\" has no field \"\"; quotes keep a CALL together"},
        UnusableLine{"init\nexpect call IntfManager::DeleteIntf(unit=0, intf=1) = 0",
                     "2:13: \"expect call\" has no field \"IntfManager::DeleteIntf(unit\"; quotes keep a CALL "
                     "together"},
        UnusableLine{"init\nexpect log 7 Encapsulation module",
                     "2:28: unexpected \"module\"; quotes keep a TEXT together"},
        UnusableLine{"init\nexpect log 9", "2:12: 9 does not fit; log level is 0 ... 7"},
        UnusableLine{"client mars notify\nexpect no notification mras",
                     "2:24: no line before this one registers a client \"mras\"; did you mean \"mars\"?"},
        UnusableLine{"expect no packet \"sent*\"", "1:1: no packet comes before this expectation of its way"},
        UnusableLine{"send 1\ninit\nexpect no packet \"sent*\"", "3:1: \"init\" sends no packet"},
        UnusableLine{"init\nexpect call CreateIntf",
                     "2:13: unknown platform function \"CreateIntf\"; did you mean \"IntfManager::CreateIntf\"?"},
        UnusableLine{"expect result 0", "1:1: no request comes before this expectation of its result"},
        UnusableLine{"client c notify\nexpect result 0", "2:1: \"client\" has no result"},
        UnusableLine{"start\nexpect throw \"x\"", "2:1: \"start\" has no result"},
        UnusableLine{"expect rows intfs many", "1:19: \"many\" is no number of rows; it is a number"},
        UnusableLine{"init\nexpect trace\n  log 7: x", "2:1: no line says \"end\" to what begins here"}),
    Name);

INSTANTIATE_TEST_SUITE_P(
    Packets, Unusable,
    testing::Values(
        UnusableLine{"route 1 192.0.2.1/24 20",
                     "1:9: \"192.0.2.1/24\" has bits behind its length; the prefix is 192.0.2.0/24"},
        UnusableLine{"route 1 192.0.2.0/33 20", "1:19: 33 does not fit; length of this prefix is 0 ... 32"},
        UnusableLine{"route 1 2001:db8::/x 20", "1:20: \"x\" is no length of this prefix; it is a number"},
        UnusableLine{"no-route 1 192.0.2",
                     "1:12: \"192.0.2\" is no IP address; one looks like 192.0.2.1 or like 2001:db8::1"},
        UnusableLine{"label 16", "1:1: \"label\" needs a label and what becomes of it"},
        UnusableLine{"label 16 push 1", "1:1: \"label\" needs a label and what becomes of it"},
        UnusableLine{"label 16 port eth49",
                     "1:15: the card has no eth49; it has eth1 ... eth48, and \"absent:eth49\" asks for the port all "
                     "the same"},
        UnusableLine{"lag lag1 eth1 eth2", "1:15: unexpected \"eth2\""},
        UnusableLine{"attach eth1", "1:1: \"attach\" needs ID"},
        UnusableLine{"show destination", "1:1: \"show destination\" needs ID"},
        UnusableLine{"show destination 1 2", "1:20: unexpected \"2\""},
        UnusableLine{"inject eth1", "1:1: \"inject\" needs hex=HEX or dmac=MAC"},
        UnusableLine{"inject eth1 hex=00 vlan=7", "1:25: hex= is the whole frame: leave vlan= out"},
        UnusableLine{"inject eth1 hex=0g", "1:18: \"g\" is no digit of bytes, which look like 00005e000101"},
        UnusableLine{"inject eth1 hex=000", "1:17: half a byte is left over: two digits are a byte"},
        UnusableLine{"inject eth1 dmac=null", "1:18: a frame has no null address"},
        UnusableLine{"inject eth1 dmac=02:00:00:00:00:01 frame=00",
                     "1:42: frame= lies below labels; the frame that comes in is hex="},
        UnusableLine{"send 1 frame=00 src=192.0.2.1", "1:21: frame= is all that is carried: leave src= out"},
        UnusableLine{"send 1 frame=00 ttl=1", "1:21: an Ethernet frame has none of its own: leave ttl= out"},
        UnusableLine{"send 1 src=192.0.2.1 dst=::1", "1:26: src= and dst= are addresses of different IP versions"},
        UnusableLine{"send 1 dst=::1 size=39", "1:21: 39 does not fit; size of an IPv6 packet is 40 ... 65535"},
        UnusableLine{"send 1 payload=0102 size=21", "1:26: 21 does not fit; size of an IPv4 packet is 22 ... 65535"},
        UnusableLine{"send 1 labels=1048576", "1:15: 1048576 does not fit; label is 0 ... 1048575"},
        UnusableLine{"send 1\nexpect packet \"dropped: no-rout: *\"",
                     "2:25: no packet is dropped by the name of \"no-rout\"; did you mean \"no-route\"?"},
        UnusableLine{"send 1\nexpect packet \"dropped: x*\"",
                     "2:25: no packet is dropped by the name of \"x\"; it is one of not-routed, no-route, no-label, "
                     "no-record, no-egress, no-interface, interface-gone, mtu, ttl, action, no-port, malformed"},
        UnusableLine{"send 1\nexpect no packet \"dropped: mtu\"",
                     "2:28: the packet's line goes on with the reason: write \"dropped: mtu*\""},
        UnusableLine{"send 1\nexpect packet \"dropped: mtu: \"",
                     "2:25: the packet's line goes on with the reason: write \"dropped: mtu*\""},
        UnusableLine{"send 1\nexpect no log 3", "2:1: \"send\" sends a packet, of which the module hears nothing"},
        UnusableLine{"send 1\nexpect no call fm_init",
                     "2:1: \"send\" sends a packet, of which the module hears nothing"},
        UnusableLine{"label 16 pop", "1:1: \"label\" needs a label and what becomes of it"},
        UnusableLine{"card exp=1,2", "1:10: exp= needs an EXP for each of the 8 priorities, such as 0,1,2,3,4,5,6,7"},
        UnusableLine{"card exp=0,1,2,3,4,5,6,8", "1:24: 8 does not fit; EXP is 0 ... 7"}),
    Name);

INSTANTIATE_TEST_SUITE_P(
    Structure, Unusable,
    testing::Values(
        UnusableLine{"for I in 1..3\n  init", "1:1: no line says \"end\" to what begins here"},
        UnusableLine{"init\nend", "2:1: there is no \"for\" or \"expect\" that this \"end\" ends"},
        UnusableLine{"for I in 1..2\nend now", "2:5: nothing follows \"end\" on its line"},
        UnusableLine{"for I of 1..2\nend", "1:1: this is no loop"},
        UnusableLine{"for I in 3\nend", "1:10: \"3\" is no range"},
        UnusableLine{"for I in 3..2\nend", "1:10: this range is empty; a loop counts up"},
        UnusableLine{"for 1 in 1..2\nend", "1:5: \"1\" is no name for a counter; use letters"},
        UnusableLine{"for I in 1..x\nend", "1:13: \"x\" is no end of a range; it is a number"},
        UnusableLine{
            "for I in 1..3\n  install-host $I vlan=0 lim=eth$(I+46) mac=null\nend",
            "2:30: the card has no eth49; it has eth1 ... eth48, and \"absent:eth49\" asks for the port all the "
            "same (with I=3)"},
        UnusableLine{"for I in 1..2\n  for I in 1..2\n  end\nend",
                     "2:7: \"I\" is a name already, of a loop around this one or of -D (with I=1)"},
        UnusableLine{"include", "1:1: \"include\" needs FILE"},
        UnusableLine{"include nowhere.inc", "1:9: cannot read nowhere.inc: No such file or directory; check the path"},
        UnusableLine{"include -", "1:9: no scenario includes standard input; name a file, or ./- for one called \"-\""},
        UnusableLine{"for I in 1..4294967295\n  init\nend",
                     "1:1: the scenario has more than 4000000 lines with the rounds of its loops"},
        UnusableLine{"init\ncard ports=4", "2:1: \"card\" comes once, before everything else"},
        UnusableLine{"card ports=4\ncard ports=8", "2:1: \"card\" comes once, before everything else"},
        UnusableLine{"for I in 1..3000000\n  for J in 1..3000000\n  end\nend",
                     "2:3: the scenario has more than 4000000 lines with the rounds of its loops (with I=1)"},
        UnusableLine{"init\nstart",
                     "2:1: \"start\" comes before every request; without it the module starts first of "
                     "all"},
        UnusableLine{"card ports=70000", "1:12: 70000 does not fit; ports is 0 ... 65535"},
        UnusableLine{"card prots=7", "1:6: \"card\" has no field \"prots\"; did you mean \"ports\"?"}),
    Name);

}  // namespace
}  // namespace scenario
