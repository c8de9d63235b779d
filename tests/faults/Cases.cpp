#include "tests/faults/Cases.h"

namespace faults {
namespace {

// The base that most cases build on: destination 10 on interface 1.
#define BASE "install-vrf 1", "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01 caps=1"
#define SECOND_BASE "install-vlan 11 lim=vlan200 vrf=1 mtu=9000 mac=00:00:5e:00:01:02"
#define PUSH "install-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=100,200 caps=4"
#define SWAP "install-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=100 caps=2"
#define SWAP_AND_PUSH "install-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=100,200 caps=2"
#define VC "install-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=100 caps=5"
#define HOST "install-host 30 vlan=10 lim=eth1 mac=02:00:00:00:00:02"
#define MPLS(OPERATION, REST) OPERATION "-mpls 20 vlan=10 lim=eth2 mac=02:00:00:00:00:03 " REST

}  // namespace

const std::vector<Case> kCases = {
    {"init", {}, "init"},
    {"vrf", {}, "install-vrf 7"},
    {"vrf twice", {"install-vrf 7"}, "install-vrf 7"},
    {"vrf, away", {"install-vrf 7"}, "destroy-vrf 7"},

    {"vlan", {"install-vrf 1"}, "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"},
    {"vlan, station flag",
     {"install-vrf 1"},
     "install-vlan 10 lim=vlan1 vrf=1 mtu=1 mac=00:00:5e:00:01:01 caps=0,1,2,1"},
    {"vlan that is there", {BASE}, "install-vlan 10 lim=vlan200 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"},
    {"vlan id beyond 16 bits", {"install-vrf 1"}, "install-vlan 10 lim=vlan65636 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"},
    {"vlan without a MAC", {"install-vrf 1"}, "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=null"},
    {"vlan moved within its VRF", {BASE}, "replace-vlan 10 lim=vlan200 vrf=1 mtu=9000 mac=00:00:5e:00:01:03"},
    {"vlan moved to another VRF",
     {BASE, "install-vrf 2"},
     "replace-vlan 10 lim=vlan200 vrf=2 mtu=9000 mac=00:00:5e:00:01:03 caps=1"},
    {"vlan moved that is not there", {}, "replace-vlan 4294967295 lim=vlan200 vrf=2 mtu=9000 mac=00:00:5e:00:01:03"},
    {"vlan, away", {BASE}, "destroy-vlan 10"},
    {"vlan, away though not there", {}, "destroy-vlan 2147483648"},

    {"host", {BASE}, HOST},
    {"host on a LAG, dropping and to the CPU",
     {BASE},
     "install-host 30 vlan=10 lim=lag1 mac=02:00:00:00:00:02 actions=1,2"},
    {"host on the CPU port without a base", {}, "install-host 30 vlan=0 lim=cpu mac=02:00:00:00:00:02 actions=2,3"},
    {"host on no port", {BASE}, "install-host 30 vlan=10 lim=vlan100 mac=02:00:00:00:00:02"},
    {"host on an absent port", {BASE}, "install-host 30 vlan=10 lim=absent:eth99 mac=02:00:00:00:00:02"},
    {"host on an absent LAG", {BASE}, "install-host 30 vlan=10 lim=absent:lag99 mac=02:00:00:00:00:02"},
    {"host on an unknown base", {}, "install-host 30 vlan=10 lim=eth1 mac=02:00:00:00:00:02"},
    {"host that is there", {BASE, HOST}, HOST},
    {"host moved", {BASE, SECOND_BASE, HOST}, "replace-host 30 vlan=11 lim=lag2 mac=02:00:00:00:00:04 actions=1"},
    {"host moved off its base", {BASE, HOST}, "replace-host 30 vlan=0 lim=eth3 mac=02:00:00:00:00:04 actions=2"},
    {"host moved that is not there", {BASE}, "replace-host 30 vlan=10 lim=eth3 mac=02:00:00:00:00:04"},
    {"host moved to an unknown base", {BASE, HOST}, "replace-host 30 vlan=12 lim=eth3 mac=02:00:00:00:00:04"},
    {"host, away", {BASE, HOST}, "destroy-host 30"},
    {"host, away though not there", {}, "destroy-host 30"},

    {"push", {BASE}, MPLS("install", "labels=100 caps=4")},
    {"push of two labels", {BASE}, MPLS("install", "labels=100,200,300 caps=4")},
    {"push whose first label is none", {BASE}, MPLS("install", "labels=3,200 caps=1,4")},
    {"push whose second label is none", {BASE}, MPLS("install", "labels=100,0 caps=4")},
    {"push of no label", {BASE}, MPLS("install", "labels=0,3 caps=4,1")},
    {"push, dropping", {BASE}, MPLS("install", "labels=100,200 caps=4 action=1")},
    {"push to the CPU", {BASE}, MPLS("install", "labels=100,200 caps=4 action=2")},
    {"push without labels", {BASE}, MPLS("install", "caps=4")},
    {"push that is there", {BASE, PUSH}, MPLS("install", "labels=100,200 caps=4")},
    {"push on an unknown base", {}, MPLS("install", "labels=100,200 caps=4")},
    {"push on an absent port",
     {BASE},
     "install-mpls 20 vlan=10 lim=absent:eth99 mac=02:00:00:00:00:03 labels=100 caps=4 action=1"},
    {"forward", {BASE}, MPLS("install", "labels=100,200 caps=3")},
    {"swap", {BASE}, MPLS("install", "labels=100 caps=2")},
    {"swap without labels", {BASE}, MPLS("install", "caps=2")},
    {"swap to the implicit null", {BASE}, MPLS("install", "labels=3 caps=2")},
    {"swap and push", {BASE}, MPLS("install", "labels=100,200 caps=2")},
    {"swap and push of no label", {BASE}, MPLS("install", "labels=3,3 caps=2")},
    {"vc", {BASE}, MPLS("install", "labels=100,200 caps=5")},
    {"vc of the implicit null", {BASE}, MPLS("install", "labels=3 caps=5")},
    {"capability none", {BASE}, MPLS("install", "labels=100 caps=0")},
    {"capability unknown", {BASE}, MPLS("install", "labels=100 caps=6")},
    {"capability negative", {BASE}, MPLS("install", "labels=100 caps=-1")},
    {"two capabilities", {BASE}, MPLS("install", "labels=100 caps=3,4")},
    {"no capability", {BASE}, MPLS("install", "labels=100")},

    {"push to push, clients told",
     {BASE, PUSH, "client a notify", "client b empty"},
     MPLS("replace", "labels=300,400 caps=4")},
    {"push to forward, a client throws",
     {BASE, PUSH, "client a throw \"client a\"", "client b notify"},
     MPLS("replace", "caps=3")},
    {"push to push, dropping", {BASE, PUSH, "client a notify"}, MPLS("replace", "labels=300 caps=1,4 action=1")},
    {"push to swap", {BASE, PUSH}, MPLS("replace", "labels=300 caps=2")},
    {"push to swap without labels", {BASE, PUSH}, MPLS("replace", "caps=2")},
    {"push to swap and push", {BASE, PUSH}, MPLS("replace", "labels=3,400 caps=2")},
    {"push to vc", {BASE, PUSH}, MPLS("replace", "labels=300 caps=5")},
    {"push to the implicit null as vc", {BASE, PUSH}, MPLS("replace", "labels=3 caps=5")},
    {"push to nothing known", {BASE, PUSH}, MPLS("replace", "labels=300 caps=7")},
    {"push to none", {BASE, PUSH}, MPLS("replace", "labels=300 caps=0")},
    {"push moved to another base",
     {BASE, SECOND_BASE, PUSH},
     "replace-mpls 20 vlan=11 lim=lag1 mac=02:00:00:00:00:03 labels=1 caps=4"},
    {"push moved to an unknown base",
     {BASE, PUSH},
     "replace-mpls 20 vlan=12 lim=lag1 mac=02:00:00:00:00:03 labels=1 caps=4"},
    {"push moved to an absent port",
     {BASE, PUSH},
     "replace-mpls 20 vlan=10 lim=absent:eth99 mac=02:00:00:00:00:03 labels=1 caps=4"},
    {"push whose interface has no initiator", {BASE, SWAP}, MPLS("replace", "labels=300 caps=4")},
    {"swap to swap", {BASE, SWAP}, MPLS("replace", "labels=300 caps=2")},
    {"swap to the explicit null", {BASE, SWAP}, MPLS("replace", "labels=0 caps=2")},
    {"swap to the implicit null, replaced", {BASE, SWAP}, MPLS("replace", "labels=3 caps=2")},
    {"swap to swap and push", {BASE, SWAP}, MPLS("replace", "labels=300,400 caps=2")},
    {"swap moved to another base",
     {BASE, SECOND_BASE, SWAP},
     "replace-mpls 20 vlan=11 lim=lag1 mac=02:00:00:00:00:03 labels=1 caps=2"},
    {"swap and push to itself", {BASE, SWAP_AND_PUSH}, MPLS("replace", "labels=300,400 caps=2")},
    {"swap and push to a swap on itself",
     {BASE, SWAP_AND_PUSH},
     "replace-mpls 20 vlan=20 lim=eth2 mac=02:00:00:00:00:03 labels=1 caps=2"},
    {"vc to vc", {BASE, VC}, MPLS("replace", "labels=300 caps=5")},
    {"vc to swap", {BASE, VC}, MPLS("replace", "labels=300 caps=2")},
    {"vc to push", {BASE, VC}, MPLS("replace", "labels=300 caps=4")},
    {"mpls moved that is not there", {BASE}, MPLS("replace", "labels=300 caps=4")},
    {"mpls moved to the CPU", {BASE, PUSH}, MPLS("replace", "labels=300 caps=4 action=2")},

    {"push, away", {BASE, PUSH}, "destroy-mpls 20"},
    {"swap, away", {BASE, SWAP}, "destroy-mpls 20"},
    {"vc, away", {BASE, VC}, "destroy-mpls 20"},
    {"push, away after its base", {BASE, PUSH, "destroy-vlan 10"}, "destroy-mpls 20"},
    {"mpls, away though not there", {}, "destroy-mpls 20"},
};

}  // namespace faults
