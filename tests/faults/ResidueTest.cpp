#include <gtest/gtest.h>

#include <set>

#include "diagnosis/Attempt.h"

using Names = std::vector<std::string>;

namespace {

/// A request, the functions whose first call in it fails, and the card's tables that are not as they were before.
struct Residue {
  Names before;
  const char* request;
  Names failing;
  Names changed;
};

const char kVrf1[] = "install-vrf 1";
const char kVrf2[] = "install-vrf 2";
const char kVlan[] = "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01 caps=1";
const char kMoveVlan[] = "replace-vlan 10 lim=vlan200 vrf=2 mtu=1500 mac=00:00:5e:00:01:01";
const char kHost[] = "install-host 30 vlan=10 lim=eth1 mac=02:00:00:00:00:02";
const char kPush[] = "install-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=100,200 caps=4";
const char kSwap[] = "install-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=100 caps=2";
const char kSwapAndPush[] = "install-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=100,200 caps=2";
const char kToPush[] = "replace-mpls 20 vlan=10 lim=eth2 mac=02:00:00:00:00:01 labels=300 caps=4";
const char kToSwap[] = "replace-mpls 20 vlan=10 lim=eth2 mac=02:00:00:00:00:01 labels=300 caps=2";
const char kToSwapAndPush[] = "replace-mpls 20 vlan=10 lim=eth2 mac=02:00:00:00:00:01 labels=300,400 caps=2";

const char kInsertStation[] = "MyStationManager::InsertMyStationVlanEntry";
const char kUpdateStation[] = "MyStationManager::UpdateMyStationVlanEntry";
const char kRemoveStation[] = "MyStationManager::RemoveMyStationVlanEntry";
const char kAssociate[] = "IngressManager::AssociateVlanToVrf";
const char kDissociate[] = "IngressManager::DissociateVlanfromVrf";
const char kCreateIntf[] = "IntfManager::CreateIntf";
const char kUpdateIntf[] = "IntfManager::UpdateIntf";
const char kDeleteIntf[] = "IntfManager::DeleteIntf";
const char kCreateEgress[] = "EgressManager::CreateEgress";
const char kUpdateEgress[] = "EgressManager::UpdateEgress";
const char kDeleteEgress[] = "EgressManager::DeleteEgress";
const char kSetInitiator[] = "bcm_mpls_tunnel_initiator_set";
const char kClearInitiator[] = "bcm_mpls_tunnel_initiator_clear";
const char kProtocolOff[] = "vlan_proto_ctrl_disable";

const std::vector<Residue> kResidues = {
    // Protocol packet control stays on, whatever failed after it.
    {{kVrf1}, kVlan, {kInsertStation}, {"protocol"}},
    {{kVrf1}, kVlan, {kAssociate}, {"protocol"}},
    {{kVrf1}, kVlan, {kAssociate, kRemoveStation}, {"protocol", "stations"}},
    {{kVrf1}, kVlan, {kCreateIntf}, {"protocol"}},
    {{kVrf1}, kVlan, {kCreateIntf, kRemoveStation}, {"protocol", "stations"}},
    {{kVrf1}, kVlan, {kCreateIntf, kDissociate}, {"associations", "protocol"}},
    // A replace undoes nothing.
    {{kVrf1, kVrf2, kVlan}, kMoveVlan, {kUpdateStation}, {}},
    {{kVrf1, kVrf2, kVlan}, kMoveVlan, {kDissociate}, {"stations"}},
    {{kVrf1, kVrf2, kVlan}, kMoveVlan, {kAssociate}, {"associations", "stations"}},
    {{kVrf1, kVrf2, kVlan}, kMoveVlan, {kUpdateIntf}, {"associations", "stations"}},
    // The station entry that a destroy puts back has the interface's flags and not those of the install.
    {{kVrf1, kVlan}, "destroy-vlan 10", {kRemoveStation}, {}},
    {{kVrf1, kVlan}, "destroy-vlan 10", {kDissociate}, {"stations"}},
    {{kVrf1, kVlan}, "destroy-vlan 10", {kDeleteIntf}, {"stations"}},
    {{kVrf1, kVlan}, "destroy-vlan 10", {kDeleteIntf, kAssociate}, {"associations", "stations"}},
    {{kVrf1, kVlan}, "destroy-vlan 10", {kProtocolOff}, {"associations", "destinations", "intfs", "stations"}},

    {{kVrf1, kVlan}, kHost, {kCreateEgress}, {}},
    {{kVrf1, kVlan, kHost}, "replace-host 30 vlan=0 lim=eth2 mac=02:00:00:00:00:02", {kUpdateEgress}, {}},
    {{kVrf1, kVlan, kHost}, "destroy-host 30", {kDeleteEgress}, {}},

    {{kVrf1, kVlan}, kPush, {kCreateIntf}, {}},
    {{kVrf1, kVlan}, kPush, {kSetInitiator}, {}},
    {{kVrf1, kVlan}, kPush, {kSetInitiator, kDeleteIntf}, {"intfs"}},
    {{kVrf1, kVlan}, kPush, {kCreateEgress}, {}},
    {{kVrf1, kVlan}, kPush, {kCreateEgress, kDeleteIntf}, {"intfs"}},
    {{kVrf1, kVlan}, kSwap, {kCreateEgress}, {}},
    {{kVrf1, kVlan}, kSwapAndPush, {kSetInitiator}, {}},
    {{kVrf1, kVlan}, kSwapAndPush, {kCreateEgress}, {}},
    // The undo clears the initiator of the interface to leave through, so the tunnel's own goes only with its
    // interface.
    {{kVrf1, kVlan}, kSwapAndPush, {kCreateEgress, kDeleteIntf}, {"initiators", "intfs"}},

    {{kVrf1, kVlan, kPush}, kToPush, {kClearInitiator}, {}},
    {{kVrf1, kVlan, kPush}, kToPush, {kUpdateIntf}, {"initiators"}},
    {{kVrf1, kVlan, kPush}, kToPush, {kSetInitiator}, {"initiators"}},
    {{kVrf1, kVlan, kPush}, kToPush, {kUpdateEgress}, {"initiators"}},
    // From a tunnel to a swap all is made anew, and the record follows even when that fails.
    {{kVrf1, kVlan, kPush}, kToSwap, {kClearInitiator}, {}},
    {{kVrf1, kVlan, kPush}, kToSwap, {kCreateEgress}, {"destinations", "egresses", "initiators", "intfs"}},
    {{kVrf1, kVlan, kPush}, kToSwap, {kDeleteIntf}, {"destinations", "egresses", "initiators"}},
    // The one replace that undoes what it made.
    {{kVrf1, kVlan, kSwap}, kToSwapAndPush, {kSetInitiator}, {}},
    {{kVrf1, kVlan, kSwap}, kToSwapAndPush, {kUpdateEgress}, {}},
    {{kVrf1, kVlan, kSwap}, kToSwapAndPush, {kUpdateEgress, kDeleteIntf}, {"intfs"}},
    {{kVrf1, kVlan, kSwap}, kToSwap, {kUpdateEgress}, {}},
    // A destroy forgets the destination whatever the chip says.
    {{kVrf1, kVlan, kPush}, "destroy-mpls 20", {kDeleteEgress}, {"destinations", "initiators", "intfs"}},
    {{kVrf1, kVlan, kPush}, "destroy-mpls 20", {kClearInitiator}, {"destinations", "egresses", "initiators", "intfs"}},
    {{kVrf1, kVlan, kPush}, "destroy-mpls 20", {kDeleteIntf}, {"destinations", "egresses", "initiators"}},
};

/// The tables of which rows went or came, in the order of their names.
Names Changed(const diagnosis::Attempt& attempt) {
  std::set<std::string> tables;
  for (const auto& rows :
       {diagnosis::Without(attempt.before, attempt.after), diagnosis::Without(attempt.after, attempt.before)}) {
    for (const softcard::Row& row : rows) tables.insert(row.table->name);
  }
  return {tables.begin(), tables.end()};
}

}  // namespace

TEST(TheCard, KeepsOfAFailedRequestWhatIsNotUndoneAndNothingElse) {
  scenario::Language language;
  scenario::AddStandard(language);
  for (const auto& [before, request, failing, changed] : kResidues) {
    diagnosis::Situation situation{before, request};
    for (const auto& function : failing) situation.before.push_back("fail " + function + " result=BCM_E_PARAM");
    const diagnosis::Attempt attempt = diagnosis::Try(language, softcard::Card::Get(), situation);
    EXPECT_EQ(Changed(attempt), changed) << request << " with " << situation.before.back();
  }
}
