#include <functional>
#include <stdexcept>
#include <utility>

#include "HalL3MplsEncapsulationUpdItf.h"
#include "hal/HalBcmCommon.h"
#include "tests/encapsulation/ModuleTest.h"

namespace {

class MplsReplaceTest : public ModuleTest {
 protected:
  using Callback = std::function<void(int, unsigned int)>;

  MplsReplaceTest() {
    SetClient(nullptr);
    InstallVlan();
  }
  ~MplsReplaceTest() override { SetClient(nullptr); }

  void SetClient(Callback callback) {
    hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance()->RegisterMplsUpdateClient("client", std::move(callback));
    Forget();
  }
  void Note() {
    SetClient([this](int destination_id, unsigned int port) {
      notices_ += std::to_string(destination_id) + "@" + std::to_string(port) + " ";
    });
  }

  int Install(const Labels& labels, const Capabilities& capabilities) {
    const int result = module_.InstallMplsUnprotectedOutgoingEncapsulation(9, 10, Lim("eth2"), host_mac_, labels,
                                                                           capabilities, HAL_ACTION_NONE);
    Forget();
    return result;
  }
  int Replace(const Labels& labels, const Capabilities& capabilities, ActionFlags action = HAL_ACTION_NONE,
              const char* lim = "eth3", unsigned int vlan_destination_id = 10) {
    return module_.ReplaceMplsUnprotectedOutgoingEncapsulation(9, vlan_destination_id, Lim(lim), other_mac_, labels,
                                                               capabilities, action);
  }
  std::string Record() const { return Rows("destinations").substr(1, Rows("destinations").find('\n', 1)); }
  /// The text of an interface, as its row shows it.
  std::string Intf(int intf_id) const {
    const std::string rows = Rows("intfs");
    const auto begin = rows.find("intf " + std::to_string(intf_id) + ":");
    return rows.substr(begin, rows.find('\n', begin) - begin);
  }

  std::string notices_;
};

TEST_F(MplsReplaceTest, PushReplaceIsShownStepByStep) {
  Install({100, 200}, {kPush});
  Note();
  const std::string mpls_intf = Intf(2);
  const std::string vlan_intf = Intf(1);
  EXPECT_EQ(Replace({300}, {kPush}), 0);
  EXPECT_EQ(Trace(),
            "\nlog 7: Updating outgoing encapsulation for mpls destination id(9)\n"
            "IntfManager::GetIntfObject(intf=2) = true\n"
            "log 6: Mpls Intf Object: " +
                mpls_intf +
                "\n"
                "IntfManager::GetIntfObject(intf=1) = true\n"
                "log 6: Vlan Intf Object: " +
                vlan_intf + R"(
limid_to_type(limid=eth3) = 0
limid_to_ifindex(limid=eth3) = 0
limid_to_intfname(limid=eth3, size=64) = 0
log 7: Converting lim id(name=eth3, type=0x01, value=0x000003) to port
limid_is_from_type(limid=eth3, type=cpuport) = 0
limid_is_from_type_ethernet(limid=eth3) = 1
log 7: Updating tunnel outgoing encapsulation for MPLS Capability(Push).
bcm_mpls_tunnel_initiator_clear(unit=0, intf=2) = 0
IntfManager::UpdateIntf(intf=2, unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 2
log 7: FillMplsLabels - MPLS Capability(Push), labels size is 1
HalBcmCommon::GetMplsExpMapId() = 1
bcm_mpls_egress_label_t_init()
bcm_mpls_egress_label_t_init()
log 7: Tunnel Label 0 is 0
IntfManager::GetIntfObject(intf=2) = true
TunnelObject::set_ttl(ttl=255)
TunnelObject::set_type(type=mpls)
TunnelObject::set_mpls_capability(capability=4)
bcm_mpls_tunnel_initiator_set(unit=0, intf=2, num_labels=1, labels=[{flags=0x11, label=300, qos_map=1, exp=0, ttl=255}]) = 0
EgressManager::UpdateEgress(egress=100001, intf=2, mac=00:00:5e:00:01:02, vlan=100, unit=0, port=3, label=0, to_cpu=false, drop=false, control=0) = 0
log 7: Calling callback for client client.
)");
  EXPECT_EQ(notices_, "9@3 ");
  EXPECT_EQ(Record(), "destination 9: intf=2 egress=100001\n");
}

TEST_F(MplsReplaceTest, ForwardNotifiesAndSwapAndVcDoNot) {
  Note();
  Install({}, {kForward});
  EXPECT_EQ(Replace({}, {kProtection, kForward}), 0);
  EXPECT_EQ(notices_, "9@3 ");
  module_.DestroyMplsUnprotectedOutgoingEncapsulation(9);
  Install({16}, {kSwap});
  EXPECT_EQ(Replace({17}, {kSwap}), 0);
  EXPECT_EQ(Replace({500}, {kVcLabel}), 0);
  EXPECT_EQ(notices_, "9@3 ");
}

TEST_F(MplsReplaceTest, ActionOnePassesTheInvalidPortToTheCardAndToTheClients) {
  Install({100}, {kPush});
  Note();
  EXPECT_EQ(Replace({100}, {kPush}, HAL_ACTION_DROP), 0);
  EXPECT_NE(Trace().find("port=-18, label=0, to_cpu=false, drop=true"), std::string::npos);
  EXPECT_EQ(notices_, "9@4294967278 ");
}

TEST_F(MplsReplaceTest, UnknownPortLeavesAsAnExceptionUnderActionOneToo) {
  Install({100}, {kPush});
  const std::string before = Tables();
  EXPECT_THROW(Replace({100}, {kPush}, HAL_ACTION_DROP, "eth99"), std::out_of_range);
  EXPECT_EQ(Tables(), before);
}

TEST_F(MplsReplaceTest, RejectedVectorsAndActionTwoStopBeforeTheRegistry) {
  EXPECT_EQ(Replace({100}, {}), -1);
  EXPECT_EQ(Replace({100}, {kForward, kPush}), -1);
  EXPECT_EQ(Replace({100}, {kPush}, HAL_ACTION_TO_CPU), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Updating outgoing encapsulation for mpls destination id(9)
log 4: No capability provided! Returning false.
log 7: Updating outgoing encapsulation for mpls destination id(9)
log 4: Invalid counter action (2) to configure mpls tunnel! Returning false.
log 7: Updating outgoing encapsulation for mpls destination id(9)
)");
}

TEST_F(MplsReplaceTest, UnknownDestinationIsMissedByTheRegistryAndThenByTheReplace) {
  EXPECT_EQ(Replace({100}, {kPush}), -1);
  EXPECT_EQ(Trace(), R"(
log 7: Updating outgoing encapsulation for mpls destination id(9)
log 3: Couldn't find DestinationIdCorrelator with destination id(9)
log 3: Couldn't find DestinationIdCorrelator with mpls destination id(9)
)");
}

TEST_F(MplsReplaceTest, UnknownVlanDestinationIsMissedAfterTheMplsInterfaceWasShown) {
  Install({100}, {kPush});
  EXPECT_EQ(Replace({100}, {kPush}, HAL_ACTION_NONE, "eth3", 5), -1);
  EXPECT_EQ(Trace(),
            "\nlog 7: Updating outgoing encapsulation for mpls destination id(9)\n"
            "IntfManager::GetIntfObject(intf=2) = true\n"
            "log 6: Mpls Intf Object: " +
                Intf(2) +
                "\n"
                "log 3: Couldn't find DestinationIdCorrelator with destination id(5)\n");
}

TEST_F(MplsReplaceTest, MissingInterfacesAreSilent) {
  Install({100}, {kPush});
  faults().FailNth("IntfManager::GetIntfObject", 1, 0);
  EXPECT_EQ(Replace({100}, {kPush}), -1);
  EXPECT_EQ(LastLine(), "IntfManager::GetIntfObject(intf=2) = false");
  faults().FailNth("IntfManager::GetIntfObject", 2, 0);
  EXPECT_EQ(Replace({100}, {kPush}), -1);
  EXPECT_EQ(LastLine(), "IntfManager::GetIntfObject(intf=1) = false");
}

TEST_F(MplsReplaceTest, WrongCapabilitiesAreRejectedAtTheLowerLevelWithTheShorterText) {
  Install({100}, {kPush});
  EXPECT_EQ(Replace({100}, {static_cast<en_HalMplsCapabilities>(7)}), -1);
  EXPECT_EQ(LastLine(), "log 4: MPLS Capability(Unknown) with destination id(9)");
  EXPECT_EQ(Replace({100}, {static_cast<en_HalMplsCapabilities>(-1)}), -1);
  EXPECT_EQ(LastLine(), "log 4: MPLS Capability(Unknown) with destination id(9)");
  EXPECT_EQ(Replace({100}, {kNone}), -1);
  EXPECT_EQ(LastLine(), "log 4: MPLS Capability(None) with destination id(9)");
}

TEST_F(MplsReplaceTest, FailedTunnelIsNamedAndTheRecordStays) {
  Note();
  Install({16, 300}, {kSwap});
  struct Case {
    en_HalMplsCapabilities capability;
    const char* line;
  };
  for (const Case& c : {Case{kSwap, "log 3: Can't update MPLS Capability(Swap) encapsulation with destination id(9)"},
                        Case{kForward,
                             "log 3: Can't update MPLS Capability(Forward) encapsulation with destination "
                             "id(9)"},
                        Case{kPush, "log 3: Can't update MPLS Capability(Push) encapsulation with destination id(9)"},
                        Case{kVcLabel,
                             "log 3: Can't update MPLS Capability(VCLabel) encapsulation with destination "
                             "id(9)"}}) {
    faults().FailNth("EgressManager::UpdateEgress", 1, BCM_E_FULL);
    EXPECT_EQ(Replace({17, 301}, {c.capability}), -1);
    EXPECT_EQ(LastLine(), c.line);
    EXPECT_EQ(Record(), "destination 9: intf=2 egress=100001\n");
  }
  EXPECT_EQ(notices_, "");
}

TEST_F(MplsReplaceTest, SwapIntoAndOutOfATunnelMovesTheRecord) {
  Install({16}, {kSwap});
  EXPECT_EQ(Record(), "destination 9: intf=1 egress=100001\n");
  EXPECT_EQ(Replace({16, 300}, {kSwap}), 0);
  EXPECT_EQ(Record(), "destination 9: intf=2 egress=100001\n");
  EXPECT_EQ(Replace({16}, {kSwap}), 0);
  EXPECT_EQ(Record(), "destination 9: intf=1 egress=100002\n");
}

TEST_F(MplsReplaceTest, SwapOutOfATunnelRecordsTheFailureOfItsInnerInstallAndSucceeds) {
  Install({16, 300}, {kSwap});
  faults().FailNth("EgressManager::CreateEgress", 1, BCM_E_FULL);
  EXPECT_EQ(Replace({16}, {kSwap}), 0);
  EXPECT_EQ(Record(), "destination 9: intf=1 egress=-6\n");
}

TEST_F(MplsReplaceTest, SwapOutOfATunnelThatIsItsOwnBaseIsBuiltOnWhatTheInterfaceWas) {
  Install({16, 300}, {kSwap});
  EXPECT_EQ(Replace({17}, {kSwap}, HAL_ACTION_NONE, "eth3", 9), 0);
  const std::string trace = Trace();
  EXPECT_EQ(trace.substr(trace.find("\nEgressManager::DeleteEgress")), R"(
EgressManager::DeleteEgress(egress=100001) = 0
IntfManager::DeleteIntf(unit=0, intf=2) = 0
log 7: Installing tunnel outgoing encapsulation for MPLS Capability(Swap)
EgressManager::CreateEgress(intf=2, mac=00:00:5e:00:01:02, vlan=100, unit=0, port=3, label=17, to_cpu=false, drop=false, control=1) = -7 (No such entry)
log 3: Error creating an egress for tunnel MPLS Capability(Swap)!
)");
  EXPECT_EQ(Record(), "destination 9: intf=2 egress=-7\n");
}

TEST_F(MplsReplaceTest, SwapOfADestinationWithoutAnInterfaceFailsCleanly) {
  Install({500}, {kVcLabel});
  const std::string before = Tables();
  EXPECT_EQ(Replace({16, 300}, {kSwap}), -1);
  EXPECT_EQ(LastLine(), "log 3: Can't update MPLS Capability(Swap) encapsulation with destination id(9)");
  EXPECT_EQ(Trace().find("Mpls Intf Object"), std::string::npos);
  EXPECT_EQ(Tables(), before);
}

TEST_F(MplsReplaceTest, PushOfADestinationWithoutAnInterfaceFailsWithTheCardsReason) {
  Install({500}, {kVcLabel});
  EXPECT_EQ(Replace({100}, {kPush}), -1);
  EXPECT_NE(Trace().find("bcm_mpls_tunnel_initiator_clear(unit=0, intf=-1) = "), std::string::npos);
}

TEST_F(MplsReplaceTest, VcReplaceKeepsTheRecordedInterface) {
  Install({500}, {kVcLabel});
  EXPECT_EQ(Replace({501}, {kVcLabel}), 0);
  EXPECT_EQ(Record(), "destination 9: intf=-1 egress=100001\n");
  module_.DestroyMplsUnprotectedOutgoingEncapsulation(9);
  Install({100}, {kPush});
  EXPECT_EQ(Replace({501}, {kVcLabel}), 0);
  EXPECT_EQ(Record(), "destination 9: intf=2 egress=100002\n");
}

TEST_F(MplsReplaceTest, ThrowingClientLeavesTheRecordUnwritten) {
  Install({100}, {kPush});
  SetClient([](int, unsigned int) { throw std::runtime_error("busy"); });
  faults().FailNth("IntfManager::UpdateIntf", 1, 1);
  EXPECT_THROW(Replace({100}, {kPush}), std::runtime_error);
  EXPECT_EQ(Record(), "destination 9: intf=2 egress=100001\n");
}

TEST_F(MplsReplaceTest, RecordIsWrittenAfterTheClientsWereCalled) {
  Install({100}, {kPush});
  std::string record_seen;
  SetClient([&](int, unsigned int) { record_seen = Record(); });
  faults().FailNth("IntfManager::UpdateIntf", 1, 1);
  EXPECT_EQ(Replace({100}, {kPush}), 0);
  EXPECT_EQ(record_seen, "destination 9: intf=2 egress=100001\n");
  EXPECT_EQ(Record(), "destination 9: intf=1 egress=100001\n");
}

TEST_F(MplsReplaceTest, ClientMayDestroyTheDestinationAndNothingIsWritten) {
  Install({100}, {kPush});
  SetClient([this](int destination_id, unsigned int) {
    EXPECT_EQ(module_.DestroyMplsUnprotectedOutgoingEncapsulation(static_cast<unsigned int>(destination_id)), 0);
    Forget();
  });
  EXPECT_EQ(Replace({100}, {kPush}), 0);
  EXPECT_EQ(Trace(), "\n") << "the record is looked for without a log line";
  EXPECT_EQ(Rows("destinations"), "\ndestination 10: intf=1 egress=0\n");
}

TEST_F(MplsReplaceTest, ClientThatInstallsTheDestinationAnewHasTheLastWord) {
  Install({100}, {kPush});
  SetClient([this](int, unsigned int) {
    EXPECT_EQ(module_.DestroyMplsUnprotectedOutgoingEncapsulation(9), 0);
    EXPECT_EQ(Install({200}, {kPush}), 0);
  });
  EXPECT_EQ(Replace({100}, {kPush}), 0);
  EXPECT_EQ(Trace(), "\n") << "the record is looked for without a log line";
  EXPECT_EQ(Record(), "destination 9: intf=3 egress=100002\n");
}

TEST_F(MplsReplaceTest, RecordIsWrittenOnlyWhenItStillHoldsBothIds) {
  for (int DestinationIdCorrelator::*const id :
       {&DestinationIdCorrelator::intf_id, &DestinationIdCorrelator::egress_id}) {
    Install({100}, {kPush});
    DestinationIdCorrelator& record = HalBcmCommon::GetInstance()->destination_id_correlators.at(9);
    const DestinationIdCorrelator old = record;
    SetClient([&](int, unsigned int) { record.*id = 77; });
    faults().FailNth("IntfManager::UpdateIntf", 1, 1);  // the id that the replace would write
    EXPECT_EQ(Replace({100}, {kPush}), 0);
    EXPECT_EQ(record.*id, 77);
    EXPECT_EQ(record.intf_id == 77 ? record.egress_id : record.intf_id,
              record.intf_id == 77 ? old.egress_id : old.intf_id);
    record = old;
    module_.DestroyMplsUnprotectedOutgoingEncapsulation(9);
  }
}

TEST_F(MplsReplaceTest, ClientThatReplacesTheDestinationHasTheLastWord) {
  Install({100}, {kPush});
  SetClient([this](int, unsigned int) { EXPECT_EQ(Replace({16}, {kSwap}), 0); });
  EXPECT_EQ(Replace({100}, {kPush}), 0);
  EXPECT_EQ(Record(), "destination 9: intf=1 egress=100002\n");
}

TEST_F(MplsReplaceTest, ClientKeepsItsStateAndIsNeverCopied) {
  struct Client {
    explicit Client(std::string* notices) : notices_(notices) {}
    Client(Client&&) = default;
    Client(const Client& other) : notices_(other.notices_) { throw std::runtime_error("copied"); }
    void operator()(int, unsigned int) { *notices_ += std::to_string(++calls_) + " "; }

    std::string* notices_;
    int calls_ = 0;
  };
  Install({100}, {kPush});
  SetClient(Client(&notices_));
  EXPECT_EQ(Replace({100}, {kPush}), 0);
  EXPECT_EQ(Replace({100}, {kPush}), 0);
  EXPECT_EQ(notices_, "1 2 ");
}

TEST_F(MplsReplaceTest, ClientMayCallTheModuleAndTheRegistry) {
  Install({100}, {kPush});
  SetClient([this](int, unsigned int) {
    EXPECT_EQ(module_.InstallHostOutgoingEncapsulation(30, 10, Lim("eth4"), {}, host_mac_), 0);
    hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance()->RegisterMplsUpdateClient("client", nullptr);
  });
  EXPECT_EQ(Replace({100}, {kPush}), 0);
  EXPECT_EQ(Replace({100}, {kPush}), 0);
  EXPECT_NE(Rows("destinations").find("destination 30: intf=1 egress=100002"), std::string::npos);
}

}  // namespace
