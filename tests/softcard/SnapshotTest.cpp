#include "tests/softcard/OnCard.h"

namespace {

class SnapshotTest : public OnCard {};

TEST_F(SnapshotTest, ACopyOfTheTablesKeepsWhatTheyHeld) {
  const int egress = CreateEgress(CreateIntf());
  const softcard::Tables before = card_.tables();
  egresses_.DeleteEgress(egress);
  intfs_.UpdateIntf(1, 0, 7, 200, router_mac_, 9000, 0);

  EXPECT_EQ(before.egresses.rows().size(), 1u);
  EXPECT_EQ(softcard::Text(before.intfs.Rows()[0]),
            "intf 1: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=none");
  EXPECT_EQ(Rows("egresses"), Lines{});
}

TEST_F(SnapshotTest, TablesCanBePutBack) {
  CreateEgress(CreateIntf());
  const softcard::Tables before = card_.tables();
  egresses_.DeleteEgress(100001);
  CreateEgress(1);
  card_.tables() = before;
  EXPECT_EQ(CreateEgress(1), 100002);
}

TEST_F(SnapshotTest, RowsAreCountedWithoutBeingMade) {
  CreateEgress(CreateIntf());
  for (const std::string& table : softcard::Card::TableNames()) {
    EXPECT_EQ(card_.RowCount(table), card_.Rows(table).size()) << table;
  }
}

TEST_F(SnapshotTest, RowsAreJsonObjects) {
  CreateEgress(CreateIntf());
  EXPECT_EQ(softcard::Json(card_.Rows("egresses")[0]),
            R"({"egress": 100001, "intf": 1, "mac": "02:00:00:00:00:0a", "vlan": 100, "port": "eth3", "label": null, )"
            R"("to_cpu": false, "drop": false, "control": 0})");
}

}  // namespace
