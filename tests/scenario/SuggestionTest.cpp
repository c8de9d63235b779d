#include <gtest/gtest.h>

#include "scenario/Suggestion.h"

namespace scenario {

TEST(Suggestion, NamesTheNearestCandidate) {
  EXPECT_EQ(Suggest("instal-vlan", {"install-vrf", "install-vlan"}), "; did you mean \"install-vlan\"?");
  EXPECT_EQ(Suggest("mut", {"mac", "mtu"}), "; did you mean \"mtu\"?");
  EXPECT_EQ(Suggest("BCM_E_FULL", {"bcm_e_full"}), "; did you mean \"bcm_e_full\"?");
}

TEST(Suggestion, FindsANameOfWhichAPartWasLeftOut) {
  EXPECT_EQ(Suggest("CreateIntf", {"IntfManager::DeleteIntf", "IntfManager::CreateIntf"}),
            "; did you mean \"IntfManager::CreateIntf\"?");
}

TEST(Suggestion, ListsAllWhenNoneIsNear) {
  EXPECT_EQ(Suggest("teleport", {"drop", "cpu"}), "; it is one of drop, cpu");
  EXPECT_EQ(Suggest("teleport", {}), "");
}

TEST(Suggestion, QuotedTextShowsWhatWouldNotPrint) {
  EXPECT_EQ(Quoted("a\x1b\n\"\xc3\xa9"), "\"a\\x1b\\x0a\"\xc3\xa9\"");
}

}  // namespace scenario
