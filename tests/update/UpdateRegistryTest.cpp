#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "softcard/Card.h"
#include "src/update/HalL3MplsEncapsulationUpd.h"
#include "tests/proof/Allocations.h"

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
  for (const char* const name : {"b", "a", "c"}) registry_.RegisterMplsUpdateClient(name, Notice(name));
  EXPECT_EQ(Logged(), Notices{});
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_EQ(notices_, (Notices{"a 20 1", "b 20 1", "c 20 1"}));
  EXPECT_EQ(Logged(), (Notices{"log 7: Calling callback for client a.", "log 7: Calling callback for client b.",
                               "log 7: Calling callback for client c."}));
}

TEST_F(UpdateRegistryTest, NamesAreOrderedByteByByte) {
  for (const char* const name : {"\xC3\xA9", "b", "B", ""}) registry_.RegisterMplsUpdateClient(name, Notice(name));
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

TEST_F(UpdateRegistryTest, StateOfACallbackLastsFromOneUpdateToTheNext) {
  registry_.RegisterMplsUpdateClient(
      "a", [this, calls = 0](int, unsigned int) mutable { notices_.push_back(std::to_string(++calls)); });
  registry_.ExecuteMplsUpdate(20, 1);
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_EQ(notices_, (Notices{"1", "2"}));
}

TEST_F(UpdateRegistryTest, NestedUpdateCallsTheRunningCallbackItself) {
  registry_.RegisterMplsUpdateClient("a", [this, calls = 0](int, unsigned int) mutable {
    notices_.push_back(std::to_string(++calls));
    if (calls < 3) registry_.ExecuteMplsUpdate(20, 1);
    notices_.push_back("done at " + std::to_string(calls));
  });
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_EQ(notices_, (Notices{"1", "2", "3", "done at 3", "done at 3", "done at 3"}));
}

TEST_F(UpdateRegistryTest, CallbackIsNeverCopied) {
  struct Uncopied {
    explicit Uncopied(Notices* notices) : notices_(notices) {}
    Uncopied(Uncopied&&) = default;
    Uncopied(const Uncopied& other) : notices_(other.notices_) { throw std::runtime_error("copied"); }
    void operator()(int, unsigned int) const { notices_->push_back("called"); }

    Notices* notices_;
  };
  registry_.RegisterMplsUpdateClient("a", Uncopied(&notices_));
  registry_.RegisterMplsUpdateClient("b", Uncopied(&notices_));
  registry_.RegisterMplsUpdateClient("a", Uncopied(&notices_));
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_EQ(notices_, (Notices{"called", "called"}));
}

TEST_F(UpdateRegistryTest, CallbackThatIsReplacedWhileItRunsLivesUntilItHasReturned) {
  const auto gone = [this](const int* held) {
    delete held;
    notices_.emplace_back("gone");
  };
  registry_.RegisterMplsUpdateClient(
      "a", [this, held = std::shared_ptr<int>(new int(7), gone)](int destination_id, unsigned int) {
        registry_.RegisterMplsUpdateClient("a", Notice("new a"));
        if (destination_id > 0) registry_.ExecuteMplsUpdate(destination_id - 1, 1);
        notices_.push_back("still holds " + std::to_string(*held));
      });
  registry_.RegisterMplsUpdateClient("b", Notice("b"));
  registry_.ExecuteMplsUpdate(2, 1);
  EXPECT_EQ(notices_, (Notices{"new a 1 1", "b 1 1", "still holds 7", "gone", "b 2 1"}));
}

TEST_F(UpdateRegistryTest, CallbackThatIsReplacedBeforeItsTurnIsCalledOnceMoreAndThenGone) {
  const auto gone = [this](const int* held) {
    delete held;
    notices_.emplace_back("gone");
  };
  registry_.RegisterMplsUpdateClient(
      "a", [this](int, unsigned int) { registry_.RegisterMplsUpdateClient("b", Notice("new b")); });
  registry_.RegisterMplsUpdateClient("b", [this, held = std::shared_ptr<int>(new int(7), gone)](int, unsigned int) {
    notices_.push_back("old b holds " + std::to_string(*held));
  });
  registry_.ExecuteMplsUpdate(1, 1);
  EXPECT_EQ(notices_, (Notices{"old b holds 7", "gone"}));
}

TEST_F(UpdateRegistryTest, CallbackThatThrowsAfterItWasReplacedIsGoneToo) {
  const std::weak_ptr<int> held = [this] {
    auto shared = std::make_shared<int>(7);
    registry_.RegisterMplsUpdateClient("a", [this, shared](int, unsigned int) {
      registry_.RegisterMplsUpdateClient("a", Notice("new a"));
      throw std::runtime_error("busy " + std::to_string(*shared));
    });
    return std::weak_ptr<int>(shared);
  }();
  EXPECT_THROW(registry_.ExecuteMplsUpdate(20, 1), std::runtime_error);
  EXPECT_TRUE(held.expired());
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_EQ(notices_, Notices{"new a 20 1"});
}

TEST_F(UpdateRegistryTest, NameMayBelongToTheCallbackThatIsReplaced) {
  auto held = std::make_unique<std::string>("a name that is too long for the string itself");
  const std::string& name = *held;
  registry_.RegisterMplsUpdateClient(name,
                                     [held = std::shared_ptr<std::string>(std::move(held))](int, unsigned int) {});
  registry_.RegisterMplsUpdateClient(name, Notice("new"));
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_EQ(notices_, Notices{"new 20 1"});
}

TEST_F(UpdateRegistryTest, WhatIsRegisteredWhileTheOldCallbackGoesGivesWayToTheNewOne) {
  const auto gone = [this](const int* held) {
    delete held;
    registry_.ExecuteMplsUpdate(1, 1);  // the old one is out, the new one not yet in
    registry_.RegisterMplsUpdateClient("a", Notice("between"));
  };
  registry_.RegisterMplsUpdateClient("a", [held = std::shared_ptr<int>(new int, gone)](int, unsigned int) {});
  registry_.RegisterMplsUpdateClient("a", Notice("new"));
  registry_.ExecuteMplsUpdate(2, 2);
  EXPECT_EQ(notices_, Notices{"new 2 2"});
}

TEST_F(UpdateRegistryTest, WithoutClientsNothingIsAllocated) {
  allocations::FailNth(1);
  registry_.ExecuteMplsUpdate(20, 1);
  EXPECT_FALSE(allocations::HasFailed());
  allocations::FailNth(0);
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
