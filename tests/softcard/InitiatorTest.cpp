#include "bcm/mpls.h"
#include "tests/softcard/OnCard.h"

namespace {

class InitiatorTest : public OnCard {
 protected:
  static bcm_mpls_egress_label_t Record(unsigned int label) { return {0x11, label, 1, 0, 255}; }
  int Set(int num_labels, bcm_mpls_egress_label_t* labels) {
    return bcm_mpls_tunnel_initiator_set(0, intf_, num_labels, labels);
  }

  int intf_ = CreateIntf();
  bcm_mpls_egress_label_t labels_[2] = {Record(100), Record(200)};
};

TEST_F(InitiatorTest, HoldsAsManyRecordsAsItWasGiven) {
  EXPECT_EQ(Set(2, labels_), BCM_E_NONE);
  EXPECT_EQ(Rows("initiators"), Lines{"initiator 1: labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}, "
                                      "{flags=0x11, label=200, qos_map=1, exp=0, ttl=255}]"});
  EXPECT_EQ(Set(1, labels_), BCM_E_NONE);
  EXPECT_EQ(Rows("initiators"), Lines{"initiator 1: labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}]"});
}

TEST_F(InitiatorTest, WithoutLabelsItIsSetAllTheSame) {
  EXPECT_EQ(Set(0, labels_), BCM_E_NONE);
  EXPECT_EQ(Rows("initiators"), Lines{"initiator 1: labels=[]"});
  EXPECT_EQ(bcm_mpls_tunnel_initiator_clear(0, intf_), BCM_E_NONE);
  EXPECT_EQ(Set(0, nullptr), BCM_E_NONE);
  EXPECT_EQ(Rows("initiators"), Lines{"initiator 1: labels=[]"});
}

TEST_F(InitiatorTest, ClearingOneThatIsNotSetIsUnavailable) {
  EXPECT_EQ(bcm_mpls_tunnel_initiator_clear(0, intf_), BCM_E_UNAVAIL);
  EXPECT_EQ(bcm_mpls_tunnel_initiator_clear(0, 77), BCM_E_UNAVAIL);
  Set(1, labels_);
  EXPECT_EQ(bcm_mpls_tunnel_initiator_clear(0, intf_), BCM_E_NONE);
  EXPECT_EQ(bcm_mpls_tunnel_initiator_clear(0, intf_), BCM_E_UNAVAIL);
}

TEST_F(InitiatorTest, BadParametersLeaveWhatIsSet) {
  Set(1, labels_);
  const Lines before = Rows("initiators");
  EXPECT_EQ(Set(-1, labels_), BCM_E_PARAM);
  EXPECT_EQ(Set(3, labels_), BCM_E_PARAM);
  EXPECT_EQ(Set(1, nullptr), BCM_E_PARAM);
  labels_[1].label = 0x100000;
  EXPECT_EQ(Set(2, labels_), BCM_E_PARAM);
  labels_[1].label = 0xFFFFF;
  labels_[1].exp = 8;
  EXPECT_EQ(Set(2, labels_), BCM_E_PARAM);
  EXPECT_EQ(Rows("initiators"), before);
  labels_[1].exp = 7;
  EXPECT_EQ(Set(2, labels_), BCM_E_NONE);
}

TEST_F(InitiatorTest, RecordsBeyondTheCountAreNotRead) {
  labels_[1].label = 0xFFFFFFFF;
  EXPECT_EQ(Set(1, labels_), BCM_E_NONE);
}

TEST_F(InitiatorTest, AnUnknownInterfaceIsNotFound) {
  EXPECT_EQ(bcm_mpls_tunnel_initiator_set(0, 77, 1, labels_), BCM_E_NOT_FOUND);
  EXPECT_EQ(Rows("initiators"), Lines{});
}

TEST_F(InitiatorTest, AnotherUnitIsRefused) {
  EXPECT_EQ(bcm_mpls_tunnel_initiator_set(1, intf_, 1, labels_), BCM_E_UNIT);
  Set(1, labels_);
  EXPECT_EQ(bcm_mpls_tunnel_initiator_clear(1, intf_), BCM_E_UNIT);
  EXPECT_EQ(Rows("initiators").size(), 1u);
}

TEST_F(InitiatorTest, AFullTableRefusesNewInitiatorsOnly) {
  softcard::CardDescription description;
  description.initiators = 1;
  card_.Reset(description);
  const int first = CreateIntf();
  const int second = CreateIntf();
  EXPECT_EQ(bcm_mpls_tunnel_initiator_set(0, first, 1, labels_), BCM_E_NONE);
  EXPECT_EQ(bcm_mpls_tunnel_initiator_set(0, second, 1, labels_), BCM_E_FULL);
  EXPECT_EQ(bcm_mpls_tunnel_initiator_set(0, first, 2, labels_), BCM_E_NONE);
  bcm_mpls_tunnel_initiator_clear(0, first);
  EXPECT_EQ(bcm_mpls_tunnel_initiator_set(0, second, 1, labels_), BCM_E_NONE);
}

TEST_F(InitiatorTest, GoesWithItsInterface) {
  Set(2, labels_);
  intfs_.DeleteIntf(0, intf_);
  EXPECT_EQ(Rows("initiators"), Lines{});
  EXPECT_EQ(bcm_mpls_tunnel_initiator_clear(0, intf_), BCM_E_UNAVAIL);
}

TEST_F(InitiatorTest, StaysWhenItsInterfaceIsUpdated) {
  Set(1, labels_);
  const Lines before = Rows("initiators");
  intfs_.UpdateIntf(intf_, 0, 1, 200, router_mac_, 1500, 0);
  EXPECT_EQ(Rows("initiators"), before);
}

TEST_F(InitiatorTest, InitGivesEveryFieldOfARecordZero) {
  bcm_mpls_egress_label_t record = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  bcm_mpls_egress_label_t_init(&record);
  EXPECT_EQ(record.flags, 0u);
  EXPECT_EQ(record.label, 0u);
  EXPECT_EQ(record.qos_map_id, 0);
  EXPECT_EQ(record.exp, 0);
  EXPECT_EQ(record.ttl, 0);
}

}  // namespace
