#include <algorithm>
#include <stdexcept>

#include "bcm/mpls.h"
#include "bcm/switch.h"
#include "hal/HalCallbacksItf.h"
#include "hal/fm.h"
#include "tests/softcard/OnCard.h"

namespace {

using softcard::Card;

class CardTest : public OnCard {
 protected:
  void FillEveryTable() {
    bcm_mpls_egress_label_t label = {0x1, 100, 0, 0, 255};
    ingress_.CreateIngress(0, 1, 0);
    ingress_.AssociateVlanToVrf(100, 1);
    stations_.InsertMyStationVlanEntry(100, 4095, router_mac_, 0);
    const int intf = CreateIntf();
    bcm_mpls_tunnel_initiator_set(0, intf, 1, &label);
    const int egress = CreateEgress(intf);
    fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(1)(0, 100);
    bcm_switch_control_set(0, bcmSwitchL3EgressMode, 1);
    auto* const record = new DestinationIdCorrelator{-1, intf, egress};
    HalBcmCommon::GetInstance()->destination_id_correlators.emplace(-1, *record);
    softcard::Tables& tables = card_.tables();
    tables.routes.Set(1, {}, 20);
    tables.labels.Set(100, {softcard::LabelAction::Kind::kDestination, 20}, tables.ports);
    tables.attachments.Set(1, 20, tables.ports);
    tables.lags.Set(1001, {2, 3}, tables.ports);
    card_.counters().Sent({}, 20, 0);
  }
};

TEST_F(CardTest, TablesAreShownInTheirOrder) {
  EXPECT_EQ(Card::TableNames(),
            (Lines{"intfs", "egresses", "initiators", "stations", "associations", "vrfs", "protocol", "switch", "ports",
                   "lags", "destinations", "routes", "labels", "attachments", "members", "counters"}));
  FillEveryTable();
  for (const std::string& table : Card::TableNames()) EXPECT_FALSE(Rows(table.c_str()).empty()) << table;
}

TEST_F(CardTest, ATableThatDoesNotExistIsNamedWithThoseThatDo) {
  try {
    Rows("neighbours");
    FAIL() << "neighbours are shown";
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(
        error.what(),
        "there is no table \"neighbours\"; the tables are: intfs egresses initiators stations associations vrfs "
        "protocol switch ports lags destinations routes labels attachments members counters");
  }
}

TEST_F(CardTest, ResetEmptiesEverythingAndKeepsWhatWasHandedOut) {
  FillEveryTable();
  card_.faults().FailEvery("fm_init", -1);
  HalCallbacksItf* const callbacks = HalCallbacksItf::getInstance();
  HalBcmCommon* const common = HalBcmCommon::GetInstance();
  card_.Reset();

  for (const std::string& table : Card::TableNames()) {
    EXPECT_EQ(Rows(table.c_str()).size(), table == "ports" ? 49u : table == "lags" ? 8u : 0u) << table;
  }
  EXPECT_EQ(Log(), Lines{});
  EXPECT_TRUE(card_.faults().empty());
  EXPECT_EQ(HwEncapsulationResourceManager::GetInstance(), &manager_);
  EXPECT_EQ(manager_.intf_mng(), &intfs_);
  EXPECT_EQ(manager_.egress_mng(), &egresses_);
  EXPECT_EQ(manager_.ingress_mng(), &ingress_);
  EXPECT_EQ(manager_.my_station_mng(), &stations_);
  EXPECT_EQ(HalCallbacksItf::getInstance(), callbacks);
  EXPECT_EQ(HalBcmCommon::GetInstance(), common);
  EXPECT_EQ(CreateIntf(), 1);
  EXPECT_EQ(CreateEgress(1), 100001);
}

TEST_F(CardTest, ResetKeepsTheRecordingMode) {
  const softcard::Record record(card_.log(), softcard::CallLog::Recording::kNothing);
  card_.Reset();
  fm_init();
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(CardTest, TheDescriptionDecidesUnitSlotAndExpMap) {
  softcard::CardDescription description;
  description.unit = 3;
  description.exp_map_id = 12;
  description.front_ports = 2;
  card_.Reset(description);
  EXPECT_EQ(HalBcmCommon::GetInstance()->unit, 3);
  EXPECT_EQ(HalBcmCommon::GetInstance()->GetMplsExpMapId(), 12);
  EXPECT_EQ(Rows("ports"), (Lines{"port 0: name=cpu", "port 1: name=eth1", "port 2: name=eth2"}));
  EXPECT_EQ(CreateIntf(), BCM_E_UNIT);
  EXPECT_EQ(intfs_.CreateIntf(3, 1, 100, router_mac_, 1500, 0), 1);
}

TEST_F(CardTest, DestinationsAreShownAsCallersKnowThemInTheRegistrysOrder) {
  FillEveryTable();
  auto* const record = new DestinationIdCorrelator{10, 2, 0};
  HalBcmCommon::GetInstance()->destination_id_correlators.emplace(10, *record);
  EXPECT_EQ(Rows("destinations"),
            (Lines{"destination 4294967295: intf=1 egress=100001", "destination 10: intf=2 egress=0"}));
}

TEST_F(CardTest, ResourcesAreCounted) {
  FillEveryTable();
  EXPECT_EQ(manager_.ToString(false), "resources");
  EXPECT_EQ(manager_.ToString(true),
            "resources: 1 of 16384 interfaces, 1 of 65536 egress objects, 1 of 8192 tunnel initiators, 1 of 4094 "
            "my-station entries, 1 of 1024 VRFs, 1 of 4094 VLAN associations");
}

}  // namespace
