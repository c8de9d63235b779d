#include <new>

#include "src/encapsulation/HalL3MplsEncapsulationBcm.h"
#include "tests/encapsulation/ModuleTest.h"
#include "tests/proof/Allocations.h"

// The registry's operations are private: an explicit instantiation may name them, and hands them out through a friend.

namespace {

using Bcm = HalL3MplsEncapsulationBcm;

template <typename Tag, typename Tag::Member kMember>
struct Open {
  friend typename Tag::Member Get(Tag) { return kMember; }
};

struct Store {
  using Member = void (Bcm::*)(DestinationIdCorrelator&) const;
  friend Member Get(Store);
};
template struct Open<Store, &Bcm::StoreDestinationIdCorrelator>;

struct FindInto {
  using Member = bool (Bcm::*)(int, DestinationIdCorrelator**) const;
  friend Member Get(FindInto);
};
template struct Open<FindInto, &Bcm::GetDestinationIdCorrelator>;

struct Find {
  using Member = DestinationIdCorrelator* (Bcm::*)(int) const;
  friend Member Get(Find);
};
template struct Open<Find, &Bcm::GetDestinationIdCorrelator>;

struct Delete {
  using Member = void (Bcm::*)(int) const;
  friend Member Get(Delete);
};
template struct Open<Delete, &Bcm::DeleteDestinationIdCorrelator>;

class DestinationCorrelationTest : public ModuleTest {
 protected:
  template <typename Tag, typename... Arguments>
  auto Call(Tag tag, Arguments&&... arguments) {
    return (bcm_.*Get(tag))(std::forward<Arguments>(arguments)...);
  }

  const Bcm& bcm_ = *Bcm::GetInstance();
};

TEST_F(DestinationCorrelationTest, StoredRecordIsFoundByBothLookupsSilently) {
  auto* const record = new DestinationIdCorrelator{7, 1, 2};
  Call(Store{}, *record);
  DestinationIdCorrelator* found = nullptr;
  EXPECT_TRUE(Call(FindInto{}, 7, &found));
  EXPECT_EQ(found, record);
  EXPECT_EQ(Call(Find{}, 7), record);
  Call(Delete{}, 7);
  EXPECT_EQ(Trace(), "\n");
  EXPECT_EQ(Rows("destinations"), "\n");
}

TEST_F(DestinationCorrelationTest, SecondRecordOfAnIdIsRefusedAndTheFirstStays) {
  auto* const first = new DestinationIdCorrelator{7, 1, 2};
  DestinationIdCorrelator second{7, 3, 4};
  Call(Store{}, *first);
  Call(Store{}, second);
  EXPECT_EQ(Trace(),
            "\nlog 3: Tried to insert DestinationIdCorrelator with destination id(7), but there was already a member "
            "with the same identifier.\n");
  EXPECT_EQ(Call(Find{}, 7), first);
}

TEST_F(DestinationCorrelationTest, LookupsOfAnAbsentIdGiveNullAndTheSameLine) {
  DestinationIdCorrelator other{};
  DestinationIdCorrelator* found = &other;
  EXPECT_FALSE(Call(FindInto{}, 7, &found));
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(Call(Find{}, 7), nullptr);
  EXPECT_EQ(Trace(), R"(
log 3: Couldn't find DestinationIdCorrelator with destination id(7)
log 3: Couldn't find DestinationIdCorrelator with destination id(7)
)");
}

TEST_F(DestinationCorrelationTest, LookupSetsItsTargetToNullBeforeAnythingIsLogged) {
  DestinationIdCorrelator other{};
  DestinationIdCorrelator* found = &other;
  allocations::FailNth(1);  // of the card, which writes the line
  EXPECT_THROW(Call(FindInto{}, 7, &found), std::bad_alloc);
  EXPECT_TRUE(allocations::HasFailed());
  EXPECT_EQ(found, nullptr);
}

TEST_F(DestinationCorrelationTest, DeleteOfAnAbsentIdOnlySaysSo) {
  Call(Store{}, *new DestinationIdCorrelator{8, 1, 2});
  Call(Delete{}, 7);
  EXPECT_EQ(Trace(), "\nlog 3: Couldn't delete DestinationIdCorrelator with destination id(7)\n");
  EXPECT_EQ(Rows("destinations"), "\ndestination 8: intf=1 egress=2\n");
}

TEST_F(DestinationCorrelationTest, DeletedIdIsAbsentForDeleteAndLookup) {
  Call(Store{}, *new DestinationIdCorrelator{7, 1, 2});
  Call(Delete{}, 7);
  Call(Delete{}, 7);
  Call(Find{}, 7);
  EXPECT_EQ(Trace(), R"(
log 3: Couldn't delete DestinationIdCorrelator with destination id(7)
log 3: Couldn't find DestinationIdCorrelator with destination id(7)
)");
}

TEST_F(DestinationCorrelationTest, NegativeKeysArePrintedAsUnsigned) {
  Call(Find{}, -1);
  EXPECT_EQ(Trace(), "\nlog 3: Couldn't find DestinationIdCorrelator with destination id(4294967295)\n");
}

}  // namespace
