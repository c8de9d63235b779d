#include <gmock/gmock.h>

#include "bcm/error.h"
#include "router/Router.h"
#include "tests/router/Network.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class RouterTest : public Network {};

TEST_F(RouterTest, AHostWithoutAnAddressYetIsReachedByTheCpuAndThenByOneRequest) {
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")})});
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1 waiting");
  EXPECT_THAT(Rows("egresses"), ElementsAre(HasSubstr("to_cpu=true")));
  EXPECT_EQ(Requests(), 1UL);
  Learn("192.0.2.1");
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1");
  EXPECT_THAT(Rows("egresses"), ElementsAre(testing::AllOf(HasSubstr("02:00:00:00:00:01"), HasSubstr("port=eth1"))));
  EXPECT_EQ(Requests(), 1UL);
  Learn("192.0.2.1");
  EXPECT_EQ(Requests(), 0UL);
  Learn("192.0.2.1", kSecond);
  EXPECT_THAT(Rows("egresses"), ElementsAre(HasSubstr("02:00:00:00:00:02")));
  EXPECT_EQ(Requests(), 1UL);
}

TEST_F(RouterTest, ATunnelWithoutANeighboursAddressDrops) {
  Tell({Route("198.51.100.0/24", {To("192.0.2.1", 2, Kind::kPush, {17, 500})})});
  EXPECT_EQ(WayOf("198.51.100.9"), "push 17/500 192.0.2.1 waiting");
  EXPECT_THAT(Rows("egresses"), ElementsAre(HasSubstr("drop=true")));
  Learn("192.0.2.1");
  EXPECT_EQ(WayOf("198.51.100.9"), "push 17/500 192.0.2.1");
  EXPECT_THAT(Rows("egresses"), ElementsAre(HasSubstr("drop=false")));
}

TEST_F(RouterTest, LabelsAreToldOutermostFirstAndProgrammedInnermostFirst) {
  Learn("192.0.2.1");
  Tell({Route("198.51.100.0/24", {To("192.0.2.1", 2, Kind::kPush, {17, 500})})});
  ASSERT_THAT(Rows("initiators"), SizeIs(1));
  const std::string row = Rows("initiators")[0];
  EXPECT_LT(row.find("500"), row.find("17")) << row;
}

TEST_F(RouterTest, OneEncapsulationIsSharedCountedAndDestroyedWithItsLastUser) {
  Learn("192.0.2.1");
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")}), Route("198.51.101.0/24", {To("192.0.2.1")}),
        NextHop(7, {To("192.0.2.1")}), RouteBy("198.51.102.0/24", 7), Label(100, {To("192.0.2.1")})});
  EXPECT_EQ(Requests(), 1UL);
  EXPECT_THAT(NextHops(), ElementsAre(HasSubstr("users=4 state=ready")));
  Tell({NoRoute("198.51.100.0/24"), NoRoute("198.51.101.0/24"), NoRoute("198.51.102.0/24")});
  EXPECT_EQ(Requests(), 0UL);
  EXPECT_THAT(NextHops(), ElementsAre(HasSubstr("users=1 ")));
  Tell({NoLabel(100)});
  EXPECT_EQ(Requests(), 1UL);
  EXPECT_THAT(NextHops(), IsEmpty());
  EXPECT_EQ(Destinations(), 2UL);  // of the interfaces
}

TEST_F(RouterTest, WhatIsToldAgainChangesNothing) {
  const std::vector<router::Told> all = {NextHop(7, {To("192.0.2.1")}),
                                         NextHop(8, {To("192.0.2.2")}),
                                         Group(9, {7}),
                                         RouteBy("198.51.100.0/24", 9),
                                         Route("198.51.101.0/24", {To("192.0.2.9", 3)}),
                                         Label(100, {To("192.0.2.1", 2, Kind::kSwap, {200})}),
                                         Label(101, {{Kind::kPopVrf, 1, {}, {}}})};
  Tell(all);
  const auto routes = Rows("routes"), labels = Rows("labels");
  Requests();
  router_.Begin();
  Tell(all);
  router_.Sweep();
  EXPECT_EQ(Requests(), 0UL);
  EXPECT_EQ(Rows("routes"), routes);
  EXPECT_EQ(Rows("labels"), labels);
}

TEST_F(RouterTest, WhatIsNotToldAgainIsSwept) {
  Tell({NextHop(7, {To("192.0.2.1")}), RouteBy("198.51.100.0/24", 7), Route("198.51.101.0/24", {To("192.0.2.2")}),
        Label(100, {To("192.0.2.1")})});
  router_.Begin();
  Tell({Route("198.51.101.0/24", {To("192.0.2.2")})});
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1 waiting");
  router_.Sweep();
  EXPECT_EQ(WayOf("198.51.100.9"), "none");
  EXPECT_THAT(Rows("labels"), IsEmpty());
  EXPECT_THAT(NextHops(), ElementsAre(HasSubstr("192.0.2.2")));
}

TEST_F(RouterTest, ARouteThatIsTakenAwayAndToldAgainInOneBreathStaysOnTheCard) {
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")})});
  Requests();
  Tell({NoRoute("198.51.100.0/24"), Route("198.51.100.0/24", {To("192.0.2.1")})});
  EXPECT_EQ(Requests(), 0UL);
  Tell({NoRoute("198.51.100.0/24"), Route("198.51.100.0/24", {To("192.0.2.2")})});
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.2 waiting");
  EXPECT_EQ(Requests(), 2UL);
}

TEST_F(RouterTest, AGroupMayComeBeforeItsMembersAndARouteBeforeItsNextHop) {
  Tell({RouteBy("198.51.100.0/24", 9)});
  EXPECT_EQ(WayOf("198.51.100.9"), "processor");
  EXPECT_THAT(Unresolved(), ElementsAre(HasSubstr("next hop 9 has not been told")));
  Tell({Group(9, {7})});
  EXPECT_THAT(Unresolved(), ElementsAre(HasSubstr("next hop 7 has not been told")));
  Tell({NextHop(7, {To("192.0.2.1")})});
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1 waiting");
  EXPECT_THAT(Unresolved(), IsEmpty());
  EXPECT_THAT(NextHops(), SizeIs(1)) << "nothing goes to the CPU any more";
  EXPECT_THAT(said_, IsEmpty()) << "what comes a little later is nothing to be told of";
  Tell({NextHop(7, {To("192.0.2.2", 3)})});
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.2 waiting");
  Tell({NoNextHop(7)});
  EXPECT_EQ(WayOf("198.51.100.9"), "processor");
  Tell({NoRoute("198.51.100.0/24"), NoNextHop(9)});
  EXPECT_EQ(Destinations(), 2UL);
}

TEST_F(RouterTest, AGroupInItselfEnds) {
  Tell({Group(9, {8}), Group(8, {9}), Group(7, {7}), RouteBy("198.51.100.0/24", 9), RouteBy("198.51.101.0/24", 7)});
  EXPECT_THAT(Unresolved(), ElementsAre(HasSubstr("in itself"), HasSubstr("in itself")));
  Tell({NoNextHop(9), NoNextHop(7), NoRoute("198.51.100.0/24"), NoRoute("198.51.101.0/24"), NoNextHop(8)});
  EXPECT_EQ(Destinations(), 2UL);
}

TEST_F(RouterTest, WhatTheChipCannotDoIsSaidOnceListedAndLeftToTheCpu) {
  const router::Ways three = {To("192.0.2.1", 2, Kind::kPush, {1001, 1002, 1003})};
  const router::Ways two_paths = {To("192.0.2.1"), To("192.0.2.2", 3)};
  Tell({Route("198.51.100.0/24", three), Route("198.51.101.0/24", three), Route("198.51.102.0/24", two_paths),
        Label(100, {To("192.0.2.1", 2, Kind::kSwap, {7, 8, 9})})});
  EXPECT_EQ(WayOf("198.51.100.9"), "processor");
  EXPECT_EQ(WayOf("198.51.102.9"), "processor");
  EXPECT_THAT(Rows("labels"), IsEmpty()) << "the CPU takes no packets under labels";
  EXPECT_THAT(Unresolved(),
              ElementsAre(HasSubstr("route 198.51.100.0/24: table=254 reason=\"3 labels; the chip puts on 2\""),
                          HasSubstr("route 198.51.101.0/24"), HasSubstr("2 equal paths; the chip takes one"),
                          HasSubstr("label 100: table=0 reason=\"3 labels")));
  EXPECT_THAT(said_, ElementsAre(HasSubstr("push 1001/1002/1003 to 192.0.2.1 on interface 2: 3 labels"),
                                 HasSubstr("2 equal paths"), HasSubstr("swap 7/8/9")));
  EXPECT_EQ(Requests(), 1UL) << "the CPU's";
  Tell({NoRoute("198.51.100.0/24"), NoRoute("198.51.101.0/24"), NoRoute("198.51.102.0/24"), NoLabel(100)});
  EXPECT_EQ(Destinations(), 2UL);
}

TEST_F(RouterTest, EqualPathsThatAreTheSameAreOne) {
  Tell({NextHop(1, {To("192.0.2.1")}), NextHop(2, {To("192.0.2.1")}), Group(3, {1, 2}), RouteBy("198.51.100.0/24", 3)});
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1 waiting");
}

TEST_F(RouterTest, NullLabelsAreWhatTheyAre) {
  Learn("192.0.2.1");
  Tell({Label(100, {To("192.0.2.1", 2, Kind::kSwap, {0})}), Label(101, {To("192.0.2.1")}),
        Label(102, {To("192.0.2.1", 2, Kind::kSwap, {17, 0})}),
        Route("198.51.100.0/24", {To("192.0.2.1", 2, Kind::kPush, {17, 0})})});
  EXPECT_THAT(Rows("labels"), SizeIs(3));
  EXPECT_THAT(Unresolved(), ElementsAre(HasSubstr("the chip does not push a null label")));
  EXPECT_THAT(NextHops(), ElementsAre(HasSubstr("way=push labels=17/0 "), HasSubstr("way=swap labels=0 "),
                                      HasSubstr("way=deliver labels=none"), HasSubstr("way=swap labels=17/0 "),
                                      HasSubstr("way=processor")));
}

TEST_F(RouterTest, BlackholesDropAndWhatIsUnreachableIsTheProcessors) {
  Tell({Route("198.51.100.0/24", {{Kind::kDrop, 0, {}, {}}}), Route("198.51.101.0/24", {{Kind::kProcessor, 0, {}, {}}}),
        Route("198.51.102.0/24", {{Kind::kUnknown, 0, {}, {}}})});
  EXPECT_EQ(WayOf("198.51.100.9"), "drop");
  EXPECT_EQ(WayOf("198.51.101.9"), "processor");
  EXPECT_EQ(WayOf("198.51.102.9"), "processor");
  EXPECT_THAT(Unresolved(), ElementsAre(HasSubstr("the chip has no such way")));
}

TEST_F(RouterTest, AHostOnAnInterfacesNetworkGetsARouteWhenItIsKnown) {
  Learn("192.0.2.5");
  EXPECT_EQ(Requests(), 0UL) << "nobody asks for it";
  Tell({Route("192.0.2.0/24", {On(2)})});
  EXPECT_EQ(WayOf("192.0.2.9"), "deliver");
  EXPECT_THAT(Rows("egresses"), Contains(HasSubstr("to_cpu=true")));
  EXPECT_EQ(WayOf("192.0.2.5"), "deliver 192.0.2.5");
  Learn("192.0.2.6", kSecond);
  EXPECT_EQ(WayOf("192.0.2.6"), "deliver 192.0.2.6");
  Learn("198.51.100.1");
  Learn("192.0.2.7", kSecond, 3);
  EXPECT_EQ(WayOf("192.0.2.7"), "deliver") << "that is another interface's network";
  EXPECT_THAT(softcard::Texts(router_.NeighbourRows()),
              ElementsAre(HasSubstr("neighbour 192.0.2.5: interface=2 mac=02:00:00:00:00:01"), HasSubstr("192.0.2.6"),
                          HasSubstr("198.51.100.1: interface=2 mac=02:00:00:00:00:01 destination=0"),
                          HasSubstr("192.0.2.7: interface=3")));

  Tell({Route("192.0.2.5/32", {{Kind::kDrop, 0, {}, {}}})});
  EXPECT_EQ(WayOf("192.0.2.5"), "drop") << "what is told stands above what is learnt";
  Tell({NoRoute("192.0.2.5/32")});
  EXPECT_EQ(WayOf("192.0.2.5"), "deliver 192.0.2.5");
  Tell({NoRoute("192.0.2.0/24")});
  EXPECT_THAT(Rows("routes"), IsEmpty());
  EXPECT_EQ(Destinations(), 2UL);
}

TEST_F(RouterTest, LinkLocalNeighboursAreNextHopsAndNoDestinations) {
  Learn("fe80::1");
  Tell({Route("fe80::/64", {On(2)}), Route("2001:db8:b::/48", {To("fe80::1")})});
  EXPECT_EQ(WayOf("fe80::1"), "deliver");
  EXPECT_EQ(WayOf("2001:db8:b::9"), "deliver fe80::1");
}

TEST_F(RouterTest, AnInterfaceThatComesGoesOrChangesTakesItsRoutesAlong) {
  Learn("203.0.113.1", kFirst, 9);
  Tell({Route("198.51.100.0/24", {To("203.0.113.1", 9)}), Route("203.0.113.0/24", {On(9)})});
  EXPECT_EQ(WayOf("198.51.100.9"), "processor");
  EXPECT_THAT(Unresolved(),
              ElementsAre(HasSubstr("no statement says what interface 9 is on the card"), HasSubstr("9")));
  EXPECT_EQ(Set(9, "eth3", "vlan300"), 0);
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 203.0.113.1");
  EXPECT_THAT(Unresolved(), IsEmpty());
  Requests();
  EXPECT_EQ(Set(9, "eth3", "vlan300"), 0);
  EXPECT_EQ(Requests(), 0UL);
  EXPECT_EQ(Set(9, "eth4", "vlan300"), 0);
  EXPECT_THAT(Rows("egresses"), Contains(HasSubstr("port=eth4")));
  EXPECT_THAT(Rows("egresses"), Not(Contains(HasSubstr("port=eth3"))));
  EXPECT_EQ(Set(9, "eth4", "vlan5000"), -1) << "no VLAN";
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 203.0.113.1");
  EXPECT_EQ(router_.RemoveInterface(9), 0);
  EXPECT_EQ(router_.RemoveInterface(9), BCM_E_NOT_FOUND);
  EXPECT_EQ(WayOf("198.51.100.9"), "processor");
  EXPECT_THAT(router_.NeighbourRows(), IsEmpty());
  EXPECT_EQ(Destinations(), 3UL) << "two interfaces and the CPU";
}

TEST_F(RouterTest, AnInterfaceMovesToAnotherVlanOrVrfAndBack) {
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")}), Label(100, {To("192.0.2.1", 2, Kind::kSwap, {200})})});
  Learn("192.0.2.1");
  EXPECT_EQ(Set(2, "eth1", "vlan112"), 0);
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1 waiting") << "who has it there is not known";
  Learn("192.0.2.1");
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1");
  EXPECT_THAT(Rows("egresses"), testing::Each(HasSubstr("vlan=112")));
  EXPECT_THAT(Rows("associations"), ElementsAre(HasSubstr("association 112"), HasSubstr("association 200")));
  ASSERT_EQ(HalL3MplsEncapsulationInterface::GetInstance()->InstallVrf(7), 0);
  EXPECT_EQ(router_.SetInterface(2, {softcard::LimId("eth1"), softcard::LimId("vlan112"), 7, 1500, {2}}), 0);
  EXPECT_THAT(Rows("associations"), ElementsAre("association 112: vrf=7", "association 200: vrf=0"));
  EXPECT_EQ(Set(2, "eth1", "vlan100"), 0);
  EXPECT_THAT(Rows("associations"), ElementsAre("association 100: vrf=0", "association 200: vrf=0"));
  EXPECT_EQ(Destinations(), 4UL);
}

TEST_F(RouterTest, AnInterfaceThatCannotMoveStays) {
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")})});
  Learn("192.0.2.1");
  EXPECT_LT(Set(2, "eth1", "vlan5000"), 0);
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1");
  EXPECT_THAT(Rows("associations"), ElementsAre(HasSubstr("association 100"), HasSubstr("association 200")));
}

TEST_F(RouterTest, WhatTheProcessorHasIsNobodyElses) {
  const router::Neighbour own{2, Address("192.0.2.254")};
  const router::Mac mac{0, 0, 0x5E, 0, 1, 1};
  Tell({Route("192.0.2.0/24", {On(2)})});
  Learn("192.0.2.254");
  EXPECT_EQ(WayOf("192.0.2.254"), "deliver 192.0.2.254") << "it has not said so yet";
  router_.LearnOwn(own, kFirst);
  EXPECT_EQ(WayOf("192.0.2.254"), "deliver 192.0.2.254") << "it is not the interface's MAC";
  router_.LearnOwn(own, mac);
  EXPECT_EQ(WayOf("192.0.2.254"), "deliver") << "the network, and so the CPU";
  EXPECT_THAT(said_, IsEmpty());
  Learn("192.0.2.254");
  Learn("192.0.2.254", kSecond);
  EXPECT_EQ(WayOf("192.0.2.254"), "deliver");
  EXPECT_THAT(said_,
              ElementsAre("192.0.2.254 is the route processor's on interface 2, and 02:00:00:00:00:01 says that it "
                          "has it: not believed"));
  EXPECT_EQ(router_.RemoveInterface(2), 0);
  EXPECT_EQ(Set(2, "eth1", "vlan100"), 0);
  Learn("192.0.2.254");
  EXPECT_EQ(WayOf("192.0.2.254"), "deliver 192.0.2.254");
}

TEST_F(RouterTest, WhatAnnouncesNothingCountsForANextHopThatIsWaitedFor) {
  const auto suppose = [this](const router::Mac& mac) { router_.Suppose({2, Address("192.0.2.1")}, mac); };
  suppose(kFirst);
  EXPECT_THAT(router_.NeighbourRows(), IsEmpty()) << "nobody waits";
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")})});
  suppose(kFirst);
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1");
  suppose(kSecond);
  EXPECT_THAT(Rows("egresses"), ElementsAre(HasSubstr("02:00:00:00:00:01"))) << "an announcement says more";
}

TEST_F(RouterTest, WhatIsTakenAwayByHandComesBackWhenItIsToldAgain) {
  const std::vector<router::Told> all = {Route("198.51.100.0/24", {To("192.0.2.1")}),
                                         Route("198.51.0.0/16", {To("192.0.2.2")}), Label(100, {To("192.0.2.1")})};
  Tell(all);
  const auto routes = Rows("routes"), labels = Rows("labels");
  softcard::Tables& tables = card_.tables();
  ASSERT_EQ(tables.routes.Delete(0, ToPrefix("198.51.100.0/24")), 0);
  ASSERT_EQ(tables.routes.Set(0, ToPrefix("198.51.0.0/16"), 9), 0);
  ASSERT_EQ(tables.labels.Delete(100), 0);
  Requests();
  Tell(all);
  EXPECT_EQ(Rows("routes"), routes);
  EXPECT_EQ(Rows("labels"), labels);
  EXPECT_EQ(Requests(), 0UL);
}

TEST_F(RouterTest, TablesAreVrfsOnceADeviceIsSaidToBeTheirs) {
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")}, 10), Label(5000, {{Kind::kPopVrf, 6, {}, {}}}),
        Label(5001, {{Kind::kPopVrf, 1, {}, {}}})});
  EXPECT_EQ(WayOf("198.51.100.9", 3), "none");
  EXPECT_THAT(Unresolved(), ElementsAre(HasSubstr("whose table 10 is"), HasSubstr("whose interface 6 is")));
  EXPECT_THAT(said_, SizeIs(2));
  router_.SetVrfDevice(6, 3, 10);
  EXPECT_EQ(WayOf("198.51.100.9", 3), "deliver 192.0.2.1 waiting");
  EXPECT_THAT(Rows("labels"), ElementsAre("label 5000: action=pop-vrf to=3", "label 5001: action=pop-vrf to=0"));
  router_.SetVrfDevice(6, 4, 10);
  EXPECT_EQ(WayOf("198.51.100.9", 3), "none");
  EXPECT_EQ(WayOf("198.51.100.9", 4), "deliver 192.0.2.1 waiting");
  Tell({NoRoute("198.51.100.0/24", 10), NoLabel(5000), NoLabel(5001), NoLabel(5002)});
  EXPECT_THAT(Rows("routes"), IsEmpty());
  EXPECT_THAT(Rows("labels"), IsEmpty());
}

TEST_F(RouterTest, AHostGoesAlongWhenItsTableBecomesAnotherVrfs) {
  router_.SetVrfDevice(6, 3, 10);
  Tell({Route("192.0.2.0/24", {On(2)}, 10)});
  Learn("192.0.2.5");
  EXPECT_EQ(WayOf("192.0.2.5", 3), "deliver 192.0.2.5");
  router_.SetVrfDevice(6, 4, 10);
  EXPECT_EQ(WayOf("192.0.2.5", 3), "none");
  EXPECT_EQ(WayOf("192.0.2.5", 4), "deliver 192.0.2.5");
}

TEST_F(RouterTest, WhatTheCardRefusesIsAskedForAgainWhenSomethingHelps) {
  card_.faults().FailEvery("EgressManager::CreateEgress", BCM_E_RESOURCE);
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")})});
  EXPECT_EQ(WayOf("198.51.100.9"), "none") << "not even the CPU";
  EXPECT_THAT(Unresolved(), ElementsAre(HasSubstr("the card refused: install-host")));
  EXPECT_THAT(said_, ElementsAre(HasSubstr("the card refused: install-host")));
  card_.faults().Clear();
  Requests();
  router_.Settle();
  EXPECT_EQ(Requests(), 0UL) << "nothing is known to help";
  router_.MayHelp();
  router_.Settle();
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1 waiting");
  EXPECT_THAT(Unresolved(), IsEmpty());
}

TEST_F(RouterTest, AReplaceThatIsRefusedLeavesNothingHalfDone) {
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")})});
  card_.faults().FailNth("EgressManager::UpdateEgress", 1, BCM_E_FAIL);
  Learn("192.0.2.1");
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1") << "destroyed and made anew";
  EXPECT_THAT(said_, ElementsAre(HasSubstr("the card refused: replace-host")));
  EXPECT_THAT(NextHops(), SizeIs(1));
  EXPECT_EQ(card_.RowCount("egresses"), 1UL);
}

TEST_F(RouterTest, WhatCannotBeDestroyedIsTriedAgain) {
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")})});
  card_.faults().FailNth("EgressManager::DeleteEgress", 1, BCM_E_BUSY);
  Tell({NoRoute("198.51.100.0/24")});
  EXPECT_THAT(NextHops(), ElementsAre(HasSubstr("users=0")));
  Tell({});
  EXPECT_THAT(NextHops(), IsEmpty());
  EXPECT_EQ(card_.RowCount("egresses"), 0UL);
}

softcard::CardDescription Small() {
  softcard::CardDescription description;
  description.routes = 3;
  description.labels = 1;
  description.egresses = 2;
  return description;
}

class SmallCard : public Network {
 protected:
  SmallCard() : Network(Small()) {}
};

TEST_F(SmallCard, AFullRouteTableTakesTheOthersWhenThereIsRoom) {
  const router::Ways way = {To("192.0.2.1")};
  Tell({Route("10.0.0.0/24", way), Route("10.0.1.0/24", way), Route("10.0.2.0/24", way), Route("10.0.3.0/24", way),
        Route("10.0.4.0/24", way)});
  EXPECT_THAT(Unresolved(),
              ElementsAre("unresolved route 10.0.3.0/24: table=254 reason=\"the card's route table is full\"",
                          HasSubstr("10.0.4.0/24")));
  EXPECT_THAT(said_, ElementsAre(HasSubstr("the card's route table is full")));
  Tell({NoRoute("10.0.4.0/24"), NoRoute("10.0.0.0/24")});
  EXPECT_THAT(Unresolved(), IsEmpty());
  EXPECT_EQ(WayOf("10.0.3.9"), "deliver 192.0.2.1 waiting");
  EXPECT_THAT(Rows("routes"), SizeIs(3));
}

TEST_F(SmallCard, AFullLabelTableTakesAnotherWhenThereIsRoom) {
  Tell({Label(100, {To("192.0.2.1")}), Label(101, {To("192.0.2.1")}), Label(3, {To("192.0.2.1")})});
  EXPECT_THAT(Unresolved(), ElementsAre(HasSubstr("label 3: table=0 reason=\"the card takes no such label\""),
                                        HasSubstr("label 101: table=0 reason=\"the card's label table is full\"")));
  EXPECT_THAT(said_, ElementsAre("label 101: the card's label table is full", "label 3: the card takes no such label"));
  Tell({Label(102, {To("192.0.2.1")})});
  EXPECT_THAT(said_, SizeIs(2));
  Tell({NoLabel(102)});
  Tell({NoLabel(100)});
  EXPECT_THAT(Rows("labels"), ElementsAre(HasSubstr("label 101")));
}

TEST_F(SmallCard, AFullEgressTableTakesTheNextWhenOneGoes) {
  Tell({Route("10.0.0.0/24", {To("192.0.2.1")}), Route("10.0.1.0/24", {To("192.0.2.2")}),
        Label(100, {To("192.0.2.3")})});
  EXPECT_THAT(Unresolved(), ElementsAre(HasSubstr("label 100: table=0 reason=\"the card refused")));
  Tell({NoRoute("10.0.0.0/24")});
  EXPECT_THAT(Unresolved(), IsEmpty());
}

TEST_F(SmallCard, AHostWithoutRoomIsListed) {
  Tell({Route("192.0.2.0/24", {On(2)}), Route("10.0.0.0/24", {On(2)}), Route("10.0.1.0/24", {On(2)})});
  Learn("192.0.2.1");
  EXPECT_THAT(Unresolved(),
              ElementsAre(HasSubstr("host 192.0.2.1: table=254 reason=\"the card's route table is full\"")));
  Tell({NoRoute("10.0.0.0/24")});
  Tell({});
  EXPECT_EQ(WayOf("192.0.2.1"), "deliver 192.0.2.1");
}

TEST_F(RouterTest, AFloodOfNeighboursForgetsThoseThatNothingGoesTo) {
  Learn("192.0.2.1");
  Tell({Route("198.51.100.0/24", {To("192.0.2.1")})});
  softcard::IpAddress address = Address("10.0.0.0");
  for (unsigned i = 0; i <= router::Router::kMostNeighbours; ++i) {
    address.bytes[1] = static_cast<unsigned char>(i >> 16);
    address.bytes[2] = static_cast<unsigned char>(i >> 8);
    address.bytes[3] = static_cast<unsigned char>(i);
    router_.Learn({2, address}, kSecond);
  }
  EXPECT_LE(router_.NeighbourRows().size(), router::Router::kMostNeighbours);
  EXPECT_EQ(WayOf("198.51.100.9"), "deliver 192.0.2.1");
}

TEST_F(RouterTest, AFloodOfFlapsLeavesNoMoreThanIsThere) {
  softcard::IpAddress gateway = Address("192.0.2.0");
  for (unsigned i = 1; i <= 2000; ++i) {
    gateway.bytes[3] = static_cast<unsigned char>(1 + i % 250);
    router::Way way = To("192.0.2.0");
    way.gateway = gateway;
    Tell({Route("198.51.100.0/24", {way}), NextHop(i, {way}), RouteBy("198.51.101.0/24", i), NoNextHop(i - 1)});
    EXPECT_EQ(Destinations(), 3UL);
  }
  EXPECT_THAT(NextHops(), ElementsAre(HasSubstr("users=2 ")));
  EXPECT_EQ(card_.RowCount("egresses"), 1UL);
}

TEST_F(RouterTest, InterfacesAreFoundByPortAndVlan) {
  EXPECT_EQ(router_.FindInterface(softcard::LimId("eth1"), softcard::LimId("vlan100")), 2U);
  EXPECT_EQ(router_.FindInterface(softcard::LimId("eth1"), softcard::LimId("vlan200")), std::nullopt);
}

}  // namespace
