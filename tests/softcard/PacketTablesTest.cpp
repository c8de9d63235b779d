#include <gtest/gtest.h>

#include "bcm/error.h"
#include "softcard/tables/LabelTable.h"
#include "softcard/tables/PortTables.h"

namespace {

using softcard::AttachTable;
using softcard::LabelTable;
using softcard::LagTable;
using softcard::Ports;
using Lines = std::vector<std::string>;
using Action = softcard::LabelAction::Kind;

const Ports kPorts{softcard::CardDescription{}};

TEST(LabelTableTest, ALabelHasOneAction) {
  LabelTable labels(10);
  EXPECT_EQ(labels.Set(0xFFFFF, {Action::kDestination, 20}, kPorts), BCM_E_NONE);
  EXPECT_EQ(labels.Set(0, {Action::kPopVrf, 1}, kPorts), BCM_E_NONE);
  EXPECT_EQ(labels.Set(100, {Action::kPopVrf, 2}, kPorts), BCM_E_NONE);
  EXPECT_EQ(labels.Set(100, {Action::kPopPort, 3}, kPorts), BCM_E_NONE) << "in place of the one before";
  EXPECT_EQ(labels.count(), 3U);
  EXPECT_EQ(softcard::Texts(labels.Rows(kPorts)),
            (Lines{"label 0: action=pop-vrf to=1", "label 100: action=pop-port to=eth3",
                   "label 1048575: action=destination to=20"}));
  EXPECT_EQ(labels.Find(100).value, 3U);
  EXPECT_EQ(labels.Find(99).kind, Action::kNone);
  EXPECT_EQ(labels.Delete(100), BCM_E_NONE);
  EXPECT_EQ(labels.Find(100).kind, Action::kNone);
  EXPECT_EQ(labels.Find(0x100000).kind, Action::kNone);
}

TEST(LabelTableTest, RefusalsLeaveTheTableAsItWas) {
  LabelTable labels(1);
  EXPECT_EQ(labels.Set(0x100000, {Action::kDestination, 20}, kPorts), BCM_E_PARAM);
  EXPECT_EQ(labels.Set(3, {Action::kDestination, 20}, kPorts), BCM_E_PARAM) << "implicit null is never on the wire";
  EXPECT_EQ(labels.Set(100, {}, kPorts), BCM_E_PARAM);
  EXPECT_EQ(labels.Set(100, {Action::kPopPort, 49}, kPorts), BCM_E_PORT);
  EXPECT_EQ(labels.Delete(100), BCM_E_NOT_FOUND);
  EXPECT_EQ(labels.Set(100, {Action::kDestination, 20}, kPorts), BCM_E_NONE);
  EXPECT_EQ(labels.Set(101, {Action::kDestination, 20}, kPorts), BCM_E_FULL);
  EXPECT_EQ(labels.Set(100, {Action::kDestination, 21}, kPorts), BCM_E_NONE) << "it has its row";
  EXPECT_EQ(labels.count(), 1U);
}

TEST(AttachTableTest, AnEthernetPortIsAttachedToOneDestination) {
  AttachTable attachments(48);
  EXPECT_EQ(attachments.Set(1, 20, kPorts), BCM_E_NONE);
  EXPECT_EQ(attachments.Set(1, 21, kPorts), BCM_E_NONE);
  for (const int port : {0, 49, 1001, -1}) EXPECT_EQ(attachments.Set(port, 20, kPorts), BCM_E_PORT);
  EXPECT_EQ(softcard::Texts(attachments.Rows(kPorts)), Lines{"attachment eth1: destination=21"});
  EXPECT_EQ(attachments.Delete(1), BCM_E_NONE);
  EXPECT_EQ(attachments.Delete(1), BCM_E_NOT_FOUND);
}

TEST(LagTableTest, AnEthernetPortIsAMemberOfOneLag) {
  LagTable lags(8);
  EXPECT_EQ(lags.Set(1001, {2, 1}, kPorts), BCM_E_NONE);
  EXPECT_EQ(lags.Set(1001, {1, 3}, kPorts), BCM_E_NONE);
  EXPECT_EQ(lags.Set(1002, {2}, kPorts), BCM_E_NONE) << "no member any more";
  EXPECT_EQ(softcard::Texts(lags.Rows(kPorts)), (Lines{"members lag1: ports=eth1,eth3", "members lag2: ports=eth2"}));
  EXPECT_EQ(lags.Set(1003, {3}, kPorts), BCM_E_EXISTS);
  EXPECT_EQ(lags.Set(1003, {4, 4}, kPorts), BCM_E_PARAM);
  EXPECT_EQ(lags.Set(1003, {}, kPorts), BCM_E_PARAM);
  EXPECT_EQ(lags.Set(1003, {0}, kPorts), BCM_E_PORT);
  EXPECT_EQ(lags.Set(1003, {1001}, kPorts), BCM_E_PORT);
  EXPECT_EQ(lags.Set(1009, {4}, kPorts), BCM_E_PORT);
  EXPECT_EQ(lags.Set(3, {4}, kPorts), BCM_E_PORT);
  EXPECT_EQ(lags.Delete(1001), BCM_E_NONE);
  EXPECT_EQ(lags.Set(1003, {3}, kPorts), BCM_E_NONE);
}

}  // namespace
