#include "tests/softcard/OnCard.h"

namespace {

class EgressTest : public OnCard {
 protected:
  static constexpr int kEgress = 100001;
  static constexpr unsigned int kNone = 0xFFFFFFFF;

  /// Both operations have the same refusals.
  void ExpectRefused(int rv, int intf, unsigned char* mac, int unit, int port, unsigned int label, int control) {
    const Lines before = Rows("egresses");
    const auto exp_control = static_cast<ExpLabelControl>(control);
    EXPECT_EQ(egresses_.CreateEgress(intf, mac, 100, unit, port, label, false, false, exp_control), rv);
    EXPECT_EQ(egresses_.UpdateEgress(kEgress, intf, mac, 100, unit, port, label, false, false, exp_control), rv);
    EXPECT_EQ(Rows("egresses"), before);
  }

  int intf_ = CreateIntf();
};

TEST_F(EgressTest, AnEgressObjectHoldsWhatItWasCreatedWith) {
  EXPECT_EQ(egresses_.CreateEgress(intf_, host_mac_, 100, 0, 1002, 16, true, true, EXP_LABEL_CONTROL_VC), kEgress);
  EXPECT_EQ(Rows("egresses"), Lines{"egress 100001: intf=1 mac=02:00:00:00:00:0a vlan=100 port=lag2 label=16 "
                                    "to_cpu=true drop=true control=2"});
}

TEST_F(EgressTest, UpdateWritesEverythingAndReturnsSuccess) {
  CreateEgress(intf_);
  EXPECT_EQ(egresses_.UpdateEgress(kEgress, -1, router_mac_, 0, 0, -18, kNone, false, true, EXP_LABEL_CONTROL_SWAP), 0);
  EXPECT_EQ(Rows("egresses"), Lines{"egress 100001: intf=-1 mac=00:00:5e:00:01:01 vlan=0 port=-18 label=none "
                                    "to_cpu=false drop=true control=1"});
}

TEST_F(EgressTest, IdsCountUpAndARefusedCreateTakesNone) {
  EXPECT_EQ(CreateEgress(intf_), kEgress);
  EXPECT_EQ(CreateEgress(intf_, -18), BCM_E_PORT);
  EXPECT_EQ(CreateEgress(intf_), kEgress + 1);
  EXPECT_EQ(egresses_.DeleteEgress(kEgress), BCM_E_NONE);
  EXPECT_EQ(CreateEgress(intf_), kEgress + 2);
}

TEST_F(EgressTest, ANullMacIsABadParameter) {
  CreateEgress(intf_);
  ExpectRefused(BCM_E_PARAM, intf_, nullptr, 0, 3, kNone, 0);
}

TEST_F(EgressTest, AnUnknownLabelControlIsABadParameter) {
  CreateEgress(intf_);
  ExpectRefused(BCM_E_PARAM, intf_, host_mac_, 0, 3, kNone, 3);
  ExpectRefused(BCM_E_PARAM, intf_, host_mac_, 0, 3, kNone, -1);
}

TEST_F(EgressTest, ALabelAbove20BitsIsABadParameterWhereLabelsCount) {
  CreateEgress(intf_);
  for (const unsigned int label : {0x100000u, 0xFFFFFFFEu}) {
    ExpectRefused(BCM_E_PARAM, intf_, host_mac_, 0, 3, label, EXP_LABEL_CONTROL_SWAP);
    ExpectRefused(BCM_E_PARAM, intf_, host_mac_, 0, 3, label, EXP_LABEL_CONTROL_VC);
  }
  for (const unsigned int label : {0xFFFFFu, kNone}) {
    EXPECT_GT(egresses_.CreateEgress(intf_, host_mac_, 100, 0, 3, label, false, false, EXP_LABEL_CONTROL_SWAP), 0);
    EXPECT_GT(egresses_.CreateEgress(intf_, host_mac_, 100, 0, 3, label, false, false, EXP_LABEL_CONTROL_VC), 0);
  }
  EXPECT_GT(egresses_.CreateEgress(intf_, host_mac_, 100, 0, 3, 0x100000, false, false, EXP_LABEL_CONTROL_NONE), 0);
}

TEST_F(EgressTest, AVlanAbove4094IsABadParameterButNoVlanIsGood) {
  const auto create = [&](unsigned short vlan_id) {
    return egresses_.CreateEgress(-1, host_mac_, vlan_id, 0, 3, 0xFFFFFFFF, false, false, EXP_LABEL_CONTROL_NONE);
  };
  EXPECT_EQ(create(4095), BCM_E_PARAM);
  EXPECT_EQ(create(65535), BCM_E_PARAM);
  EXPECT_GT(create(0), 0);
  EXPECT_GT(create(4094), 0);
}

TEST_F(EgressTest, AnUnknownInterfaceIsNotFoundButNoInterfaceIsGood) {
  CreateEgress(intf_);
  ExpectRefused(BCM_E_NOT_FOUND, 2, host_mac_, 0, 3, kNone, 0);
  ExpectRefused(BCM_E_NOT_FOUND, -2, host_mac_, 0, 3, kNone, 0);
  EXPECT_GT(CreateEgress(-1), 0);
}

TEST_F(EgressTest, AnUnknownPortIsRefused) {
  CreateEgress(intf_);
  for (const int port : {-18, -1, 49, 1000, 1009}) ExpectRefused(BCM_E_PORT, intf_, host_mac_, 0, port, kNone, 0);
  for (const int port : {0, 1, 48, 1001, 1008}) EXPECT_GT(CreateEgress(intf_, port), 0) << port;
}

TEST_F(EgressTest, AnEgressObjectThatDropsNeedsNoPort) {
  EXPECT_EQ(egresses_.CreateEgress(intf_, host_mac_, 100, 0, -18, kNone, false, true, EXP_LABEL_CONTROL_NONE), kEgress);
  EXPECT_EQ(egresses_.CreateEgress(intf_, host_mac_, 100, 0, -18, kNone, true, false, EXP_LABEL_CONTROL_NONE),
            BCM_E_PORT);
}

TEST_F(EgressTest, AnotherUnitIsRefused) {
  CreateEgress(intf_);
  ExpectRefused(BCM_E_UNIT, intf_, host_mac_, 1, 3, kNone, 0);
}

TEST_F(EgressTest, AnUnknownEgressObjectIsNotFound) {
  EXPECT_EQ(egresses_.UpdateEgress(kEgress, intf_, host_mac_, 100, 0, 3, kNone, false, false, EXP_LABEL_CONTROL_NONE),
            BCM_E_NOT_FOUND);
  EXPECT_EQ(egresses_.DeleteEgress(kEgress), BCM_E_NOT_FOUND);
  CreateEgress(intf_);
  EXPECT_EQ(egresses_.DeleteEgress(kEgress), BCM_E_NONE);
  EXPECT_EQ(egresses_.DeleteEgress(kEgress), BCM_E_NOT_FOUND);
  EXPECT_EQ(Rows("egresses"), Lines{});
}

TEST_F(EgressTest, AFullTableRefusesNewObjectsOnly) {
  softcard::CardDescription description;
  description.egresses = 1;
  card_.Reset(description);
  ASSERT_EQ(CreateEgress(-1), kEgress);
  EXPECT_EQ(CreateEgress(-1), BCM_E_FULL);
  EXPECT_EQ(CreateEgress(-1, -18), BCM_E_PORT);
  EXPECT_EQ(egresses_.UpdateEgress(kEgress, -1, host_mac_, 0, 0, 4, kNone, false, false, EXP_LABEL_CONTROL_NONE), 0);
  egresses_.DeleteEgress(kEgress);
  EXPECT_EQ(CreateEgress(-1), kEgress + 1);
}

TEST_F(EgressTest, ItsInterfaceCanBeDeletedUnderIt) {
  CreateEgress(intf_);
  const Lines before = Rows("egresses");
  EXPECT_EQ(intfs_.DeleteIntf(0, intf_), BCM_E_NONE);
  EXPECT_EQ(Rows("egresses"), before);
}

}  // namespace
