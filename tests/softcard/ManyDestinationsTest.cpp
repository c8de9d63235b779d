#include <set>

#include "tests/softcard/OnCard.h"

namespace {

using ManyDestinationsTest = OnCard;

TEST_F(ManyDestinationsTest, ACardDescribedLargeHoldsThemAllUnderDifferentIds) {
  constexpr unsigned kMany = 100000;
  softcard::CardDescription description;
  description.intfs = kMany;
  description.egresses = kMany;
  card_.Reset(description);
  const softcard::Record record(card_.log(), softcard::CallLog::Recording::kNothing);

  std::set<int> intfs;
  std::set<int> egresses;
  for (unsigned i = 0; i < kMany; ++i) {
    const int intf = CreateIntf();
    intfs.insert(intf);
    egresses.insert(CreateEgress(intf));
  }
  EXPECT_EQ(intfs.size(), kMany);
  EXPECT_EQ(egresses.size(), kMany);
  EXPECT_GT(*intfs.begin(), 0);
  EXPECT_GT(*egresses.begin(), 0);
  EXPECT_EQ(CreateIntf(), BCM_E_FULL);
  EXPECT_EQ(CreateEgress(1), BCM_E_FULL);

  for (const int intf : intfs) ASSERT_EQ(intfs_.DeleteIntf(0, intf), BCM_E_NONE);
  for (const int egress : egresses) ASSERT_EQ(egresses_.DeleteEgress(egress), BCM_E_NONE);
  EXPECT_EQ(Rows("intfs"), Lines{});
  EXPECT_EQ(Rows("egresses"), Lines{});
}

}  // namespace
