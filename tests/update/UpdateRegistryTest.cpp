#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "softcard/Card.h"
#include "src/update/HalL3MplsEncapsulationUpd.h"

namespace {

using hal_encap::HalL3MplsEncapsulationUpd;
using Notices = std::vector<std::string>;

/// A registry of its own per test: there is no way to take a client out of the process's one.
class UpdateRegistryTest : public ::testing::Test {
 protected:
  UpdateRegistryTest() { softcard::Card::Get().Reset(); }

  std::function<void(int, unsigned int)> Notice(const std::string& as) {
    return [this, as](int destination_id, unsigned int port) {
      notices_.push_back(as + " " + std::to_string(destination_id) + " " + std::to_string(port));
    };
  }
  static std::vector<std::string> Logged() { return softcard::Card::Get().log().Lines(); }

  HalL3MplsEncapsulationUpd registry_;
  Notices notices_;
};

TEST_F(UpdateRegistryTest, BothEntryPointsGiveTheOneRegistryOfTheProcess) {
  EXPECT_EQ(hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance(), HalL3MplsEncapsulationUpd::GetInstance());
  EXPECT_EQ(HalL3MplsEncapsulationUpd::GetInstance(), HalL3MplsEncapsulationUpd::GetInstance());
}

TEST_F(UpdateRegistryTest, WithoutClientsNothingIsLogged) {
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_EQ(Logged(), Notices{});
}

TEST_F(UpdateRegistryTest, ClientsAreCalledInTheOrderOfTheirNames) {
  for (const char* const name : {"b", "a", "c"}) {
    registry_.RegisterMplsUpdateClient(name, Notice(name));
  }
  EXPECT_EQ(Logged(), Notices{});
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_EQ(notices_, (Notices{"a 20 1", "b 20 1", "c 20 1"}));
  EXPECT_EQ(Logged(), (Notices{"log 7: Calling callback for client a.", "log 7: Calling callback for client b.",
                               "log 7: Calling callback for client c."}));
}

TEST_F(UpdateRegistryTest, NamesAreOrderedByteByByte) {
  for (const char* const name : {"\xC3\xA9", "b", "B", ""}) {
    registry_.RegisterMplsUpdateClient(name, Notice(name));
  }
  registry_.ExecuteMplsUpdate(1, 2);
  EXPECT_EQ(notices_, (Notices{" 1 2", "B 1 2", "b 1 2", "\xC3\xA9 1 2"}));
}

TEST_F(UpdateRegistryTest, SecondRegistrationUnderANameReplacesTheFirstAndSaysSo) {
  registry_.RegisterMplsUpdateClient("a", Notice("first"));
  registry_.RegisterMplsUpdateClient("a", Notice("second"));
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_EQ(notices_, Notices{"second 20 1"});
  EXPECT_EQ(Logged(),
            (Notices{"log 7: Client a already registered, remove old one!", "log 7: Calling callback for client a."}));
}

TEST_F(UpdateRegistryTest, ReplacedCallbackIsDestroyedAtOnceAndAfterTheLineThatSaysSo) {
  const auto notice = [this](const int* held) {
    delete held;
    notices_ = Logged();
  };
  registry_.RegisterMplsUpdateClient("a", [held = std::shared_ptr<int>(new int, notice)](int, unsigned int) {});
  EXPECT_EQ(notices_, Notices{});
  registry_.RegisterMplsUpdateClient("a", nullptr);
  EXPECT_EQ(notices_, Notices{"log 7: Client a already registered, remove old one!"});
}

TEST_F(UpdateRegistryTest, EmptyCallbackStaysAndIsSkippedSilently) {
  registry_.RegisterMplsUpdateClient("a", nullptr);
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_EQ(Logged(), Notices{});
  registry_.RegisterMplsUpdateClient("a", Notice("a"));
  EXPECT_EQ(Logged(), Notices{"log 7: Client a already registered, remove old one!"});
}

TEST_F(UpdateRegistryTest, BothValuesReachTheClientUnchanged) {
  registry_.RegisterMplsUpdateClient("a", Notice("a"));
  registry_.ExecuteMplsUpdate(-1, 0x80000000U);
  registry_.ExecuteMplsUpdate(0, static_cast<unsigned int>(-18));
  EXPECT_EQ(notices_, (Notices{"a -1 2147483648", "a 0 4294967278"}));
}

TEST_F(UpdateRegistryTest, ThrowingClientEndsTheWalk) {
  registry_.RegisterMplsUpdateClient("a", [](int, unsigned int) { throw std::runtime_error("busy"); });
  registry_.RegisterMplsUpdateClient("b", Notice("b"));
  EXPECT_THROW(registry_.ExecuteMplsUpdate(20, 1), std::runtime_error);
  EXPECT_EQ(notices_, Notices{});
}

TEST_F(UpdateRegistryTest, RegistrationsFromACallbackCountFromTheNextUpdateOn) {
  registry_.RegisterMplsUpdateClient("a", [this](int, unsigned int) {
    notices_.push_back("a");
    registry_.RegisterMplsUpdateClient("a", Notice("a again"));
    registry_.RegisterMplsUpdateClient("b", Notice("new b"));
    registry_.RegisterMplsUpdateClient("c", Notice("c"));
  });
  registry_.RegisterMplsUpdateClient("b", Notice("old b"));
  registry_.ExecuteMplsUpdate(1, 1);
  EXPECT_EQ(notices_, (Notices{"a", "old b 1 1"}));
  notices_.clear();
  registry_.ExecuteMplsUpdate(2, 2);
  EXPECT_EQ(notices_, (Notices{"a again 2 2", "new b 2 2", "c 2 2"}));
}

}  // namespace
