#include <gtest/gtest.h>

#include <sstream>

#include "recorder/Scenario.h"

using namespace recorder;

namespace {

const std::string kBigEndianHeader =
    "card recording 1\nmodule 1.0.0\nmachine 32-bit big-endian\nunit 3\nbegun 2026-11-21T14:13:18.102030Z\n\n";

std::string Scenario(const std::string& lines) {
  std::istringstream in(kBigEndianHeader + lines);
  Reader reader(in);
  ScenarioWriter writer(calls::kLimIdWords);
  writer.Begin(reader.header());
  while (const auto entry = reader.Next()) writer.Write(*entry);
  const std::string begin = "# Recorded 2026-11-21T14:13:18.102030Z on a 32-bit big-endian machine.\n";
  EXPECT_EQ(writer.text().substr(0, begin.size()), begin);
  return writer.text().substr(begin.size());
}

void ExpectNoScenario(const std::string& lines, const std::string& begin) {
  try {
    Scenario(lines);
    ADD_FAILURE() << "a scenario was made of " << lines;
  } catch (const BadRecording& bad) {
    EXPECT_EQ(std::string(bad.what()).substr(0, begin.size()), begin);
  }
}

}  // namespace

TEST(AScenarioOfARecording, RefusesWhatWasRefusedAndExpectsTheRest) {
  EXPECT_EQ(Scenario("0 destroy-vlan 10\n"
                     "0     IntfManager::DeleteIntf(unit=0, intf=7) = 0\n"
                     "0     IntfManager::DeleteIntf(unit=0, intf=8) = -7 (No such entry)\n"
                     "0     IntfManager::GetIntfObject(intf=8) = false\n"
                     "0     EgressManager::DeleteEgress(egress=100001) = 0\n"
                     "0     IntfObject::ToString(deep=true) = intf 7\n"
                     "0     log 7: Destroying intf 7 for $5 * \\\\\n"
                     "0     log 7: two\\nlines\n"
                     "0     log 3: Error clearing tunnel initiator (intf id(7), rv=-7)\n"
                     "0     log 7: Intf changed, so updated it to 7.\n"
                     "0   => -7\n"
                     "0 ! paused\\nnow\n"
                     "0 init\n"
                     "0   => threw std::out_of_range: no \"HAL\"\n"),
            "fail IntfManager::DeleteIntf nth=2 result=-7\n"
            "fail IntfManager::GetIntfObject result=false\n"
            "destroy-vlan 10\n"
            "expect result -7\n"
            "expect trace\n"
            "  IntfManager::DeleteIntf(unit=0, intf=*) = 0\n"
            "  IntfManager::DeleteIntf(unit=0, intf=*) = -7 (no words without a platform)\n"
            "  IntfManager::GetIntfObject(intf=*) = false\n"
            "  EgressManager::DeleteEgress(egress=*) = 0\n"
            "  log 7: Destroying * for $$5 \\* \\\\\n"
            "  log 7: two*lines\n"
            "  log 3: Error clearing tunnel initiator (intf id(*), rv=-7)\n"
            "  log 7: Intf changed, so updated it to *.\n"
            "end\n"
            "# The recording says: paused\\nnow\n"
            "init\n"
            "expect throw \"std::out_of_range: no \\\"HAL\\\"\"\n"
            "expect trace\n"
            "end\n");
}

TEST(AScenarioOfARecording, RegistersAClientAnewWhenItDoesSomethingElse) {
  EXPECT_EQ(Scenario("0 has client a notify\n"
                     "0 init\n"
                     "0     client a is told id=20 port=1\n"
                     "0     client a calls install-vrf 2\n"
                     "0       fm_init() = -4 (Invalid parameter)\n"
                     "0     client a gets -4\n"
                     "0   => 0\n"
                     "0 init\n"
                     "0     client a is told id=20 port=1\n"
                     "0     client a threw std::runtime_error: no room\n"),
            "client a notify\n"
            "client a calls install-vrf 2\n"
            "fail fm_init result=-4\n"
            "init\n"
            "expect result 0\n"
            "expect trace\n"
            "  client a is told id=20 port=1\n"
            "  client a calls install-vrf 2\n"
            "  fm_init() = -4 (no words without a platform)\n"
            "  client a gets -4\n"
            "end\n"
            "client a throw \"no room\"\n"
            "init\n"
            "# The recording ends here.\n");
}

TEST(AScenarioOfARecording, IsRefusedForWhatNoScenarioCanTell) {
  ExpectNoScenario("0 has destination 20 intf=1 egress=2\n", "destination 20 was installed before");
  ExpectNoScenario("0 client \"a b\" notify\n", "line 7: a client whose name is no plain word");
  ExpectNoScenario(
      "0 client a notify\n0 init\n0     client a is told id=20 port=1\n0     client a calls client \"b\\nc\" empty\n"
      "0   => 0\n",
      "line 9: a client whose name is no plain word");
  ExpectNoScenario("0 init\n0     fm_init() threw std::bad_alloc: std::bad_alloc\n0   => 0\n",
                   "line 8: a platform call that threw");
  ExpectNoScenario(
      "0 client a notify\n0 init\n0     client a is told id=20 port=1\n0     client a threw 7Strange: no "
      "std::exception\n0   => 0\n",
      "line 9: how the client a threw");
}
