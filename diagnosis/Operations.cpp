#include "diagnosis/Operations.h"

namespace diagnosis {
namespace {

#define VRFS "install-vrf 1", "install-vrf 2"
#define VLAN VRFS, "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"
#define HOST VLAN, "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09"
#define INSTALL(REST) "install-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 " REST
#define REPLACE(REST) "replace-mpls 30 vlan=10 lim=eth3 mac=00:00:5e:00:01:02 " REST

const Operation kOperations[] = {
    {"InitEncapsulationModule", "Both modes are tried, whatever becomes of the first.", {{VRFS}, "init"}},
    {"InstallVrf", "The platform's status is the result, also when positive.", {{VRFS}, "install-vrf 3"}},
    {"DestroyVrf", "The platform's status is the result, also when positive.", {{VRFS}, "destroy-vrf 2"}},

    {"InstallVlanOutgoingEncapsulation",
     "The protocol packet control stays on after every failure. An id that is installed already gets a second set of "
     "chip objects, the first record stays.",
     {{VRFS}, "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"}},
    {"ReplaceVlanOutgoingEncapsulation, same VRF, another VLAN",
     "The association and the old VLAN's my-station entry stay where they are.",
     {{VLAN}, "replace-vlan 10 lim=vlan200 vrf=1 mtu=9000 mac=00:00:5e:00:01:02"}},
    {"ReplaceVlanOutgoingEncapsulation, another VRF",
     "The stored VLAN leaves the stored VRF before the new pair is associated. Nothing is undone.",
     {{VLAN}, "replace-vlan 10 lim=vlan200 vrf=2 mtu=9000 mac=00:00:5e:00:01:02"}},
    {"DestroyVlanOutgoingEncapsulation",
     "Everything about the VLAN is taken from the interface object. A restored my-station entry has the interface's "
     "flags, not those of the install.",
     {{VLAN}, "destroy-vlan 10"}},

    {"InstallHostOutgoingEncapsulation",
     "One chip object, made last: nothing to undo.",
     {{VLAN}, "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09"}},
    {"ReplaceHostOutgoingEncapsulation",
     "The platform's negative status is the result. A host that is not installed is installed, as above.",
     {{HOST}, "replace-host 20 vlan=0 lim=eth2 mac=00:00:5e:00:01:02"}},
    {"DestroyHostOutgoingEncapsulation", "A host that is not installed is a success.", {{HOST}, "destroy-host 20"}},

    {"InstallMplsUnprotectedOutgoingEncapsulation, push of two labels",
     "A failed install leaves no record.",
     {{VLAN}, INSTALL("labels=100,200 caps=push")}},
    {"InstallMplsUnprotectedOutgoingEncapsulation, forward",
     "As a push, with an initiator that pushes nothing.",
     {{VLAN}, INSTALL("caps=forward")}},
    {"InstallMplsUnprotectedOutgoingEncapsulation, swap into a tunnel",
     "When the egress object is refused, the initiator cleared is that of the VLAN's interface: this is meant.",
     {{VLAN}, INSTALL("labels=16,300 caps=swap")}},
    {"InstallMplsUnprotectedOutgoingEncapsulation, swap",
     "No interface of its own: the record names the VLAN's, which the destroy leaves alone.",
     {{VLAN}, INSTALL("labels=16 caps=swap")}},
    {"InstallMplsUnprotectedOutgoingEncapsulation, VC label",
     "The record names no interface.",
     {{VLAN}, INSTALL("labels=500 caps=vc")}},

    {"ReplaceMplsUnprotectedOutgoingEncapsulation, push",
     "Nothing is undone and the record keeps its ids after a failure. The update clients are called before the record "
     "is written.",
     {{VLAN, INSTALL("labels=100,200 caps=push")}, REPLACE("labels=300 caps=push")}},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, swap that stays in its tunnel",
     "Nothing is undone.",
     {{VLAN, INSTALL("labels=16,300 caps=swap")}, REPLACE("labels=17,301 caps=swap")}},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, swap out of its tunnel",
     "Succeeds though the new egress object is refused; the record then holds the negative status.",
     {{VLAN, INSTALL("labels=16,300 caps=swap")}, REPLACE("labels=17 caps=swap")}},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, swap into a tunnel",
     "The new interface is taken back.",
     {{VLAN, INSTALL("labels=16 caps=swap")}, REPLACE("labels=17,301 caps=swap")}},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, swap without a tunnel",
     "",
     {{VLAN, INSTALL("labels=16 caps=swap")}, REPLACE("labels=17 caps=swap")}},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, swap to label 0",
     "The egress object is made anew.",
     {{VLAN, INSTALL("labels=16 caps=swap")}, REPLACE("labels=0 caps=swap")}},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, VC label",
     "",
     {{VLAN, INSTALL("labels=500 caps=vc")}, REPLACE("labels=501 caps=vc")}},

    {"DestroyMplsUnprotectedOutgoingEncapsulation, push",
     "Goes through whatever the chip says.",
     {{VLAN, INSTALL("labels=100 caps=push")}, "destroy-mpls 30"}},
    {"DestroyMplsUnprotectedOutgoingEncapsulation, VC label",
     "",
     {{VLAN, INSTALL("labels=500 caps=vc")}, "destroy-mpls 30"}},
};

}  // namespace

std::vector<Operation> Operations() { return {std::begin(kOperations), std::end(kOperations)}; }

}  // namespace diagnosis
