#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "diagnosis/Report.h"
#include "diagnosis/RowUsers.h"
#include "tests/scenario/Parsed.h"

namespace {

using Ids = std::set<unsigned>;
using Json = nlohmann::json;

/// At the end of a run of these lines on a card with a VLAN, a host and a tunnel that leaves through a LAG.
class TheReport : public testing::Test, private scenario::Observer {
 protected:
  void After(const std::string& lines, const std::function<void(scenario::Run&)>& look) {
    auto scenario = Usable(
        "install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
        "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09\n"
        "install-mpls 30 vlan=10 lim=lag1 mac=02:00:00:00:00:0a labels=100,200,300 caps=push\n" +
        lines);
    scenario.watchers.insert(&ledger_);
    scenario::Options options;
    options.afterwards = look;
    scenario::RunScenario(scenario, softcard::Card::Get(), options, *this);
  }

  /// Who uses the row of this name.
  Ids UsersOf(const std::string& name, const std::string& lines) {
    Ids ids;
    bool found = false;
    After(lines, [&](scenario::Run& run) {
      const diagnosis::RowUsers users(run.card, ledger_);
      for (const std::string& table : softcard::Card::TableNames()) {
        for (const softcard::Row& row : run.card.Rows(table)) {
          if (NameOf(row) != name) continue;
          ids = users.Of(row);
          found = true;
        }
      }
    });
    EXPECT_TRUE(found) << name;
    return ids;
  }

  Json Told(const std::string& lines) {
    Json json;
    After(lines, [&](scenario::Run& run) {
      json = Json::parse(ReportJson(run, TheLanguage(), ledger_, diagnosis::Audit(run.card, ledger_)));
    });
    return json;
  }

  diagnosis::Ledger ledger_;

 private:
  void Took(const scenario::Step&) override {}
  void Ended(const std::string&, const scenario::Tally&) override {}
};

}  // namespace

TEST_F(TheReport, GivesARowToTheDestinationsWhosePacketsGoThroughIt) {
  EXPECT_EQ(UsersOf("intf 1", ""), (Ids{10, 20}));
  EXPECT_EQ(UsersOf("egress 100001", ""), Ids{20});
  EXPECT_EQ(UsersOf("initiator 2", ""), Ids{30});
  EXPECT_EQ(UsersOf("port 1", ""), Ids{20});
  EXPECT_EQ(UsersOf("lag 1001", ""), Ids{30});
  EXPECT_EQ(UsersOf("members lag1", "lag lag1 eth5,eth6\n"), Ids{30});
  EXPECT_EQ(UsersOf("port 9", ""), Ids{});
}

TEST_F(TheReport, GivesWhatAVlanNeedsToItsDestination) {
  for (const char* row : {"station 100", "association 100", "protocol 100", "vrf 1"}) {
    EXPECT_EQ(UsersOf(row, ""), Ids{10});
  }
}

TEST_F(TheReport, GivesWhatLeadsToADestinationToIt) {
  EXPECT_EQ(UsersOf("route 198.51.100.0/24", "route 1 198.51.100.0/24 20\n"), Ids{20});
  EXPECT_EQ(UsersOf("label 77", "label 77 30\n"), Ids{30});
  EXPECT_EQ(UsersOf("label 77", "label 77 pop 1\n"), Ids{});
  EXPECT_EQ(UsersOf("attachment eth8", "attach eth8 30\n"), Ids{30});
  EXPECT_EQ(UsersOf("counter destination 20", "send 20\n"), Ids{20});
}

TEST_F(TheReport, GivesNoRowToADestinationThatIsNotInstalled) {
  EXPECT_EQ(UsersOf("route 198.51.100.0/24", "route 1 198.51.100.0/24 99\n"), Ids{});
}

TEST_F(TheReport, TellsOfEachTableItsColumnsItsSizeAndItsRows) {
  const Json tables = Told("")["tables"];
  EXPECT_EQ(tables.size(), softcard::Card::TableNames().size());
  const Json& intfs = tables[0];
  EXPECT_EQ(intfs["name"], "intfs");
  EXPECT_EQ(intfs["size"], 16384);
  EXPECT_EQ(intfs["columns"][0], Json::parse(R"({"name": "intf"})"));
  EXPECT_EQ(intfs["columns"][5], Json::parse(R"({"name": "flags", "hex": true})"));
  EXPECT_EQ(intfs["rows"][1], Json::parse(R"({"row": {"intf": 2, "vrf": 1, "vlan": 100, "mac": "00:00:5e:00:01:01",
    "mtu": 1500, "flags": 0, "tunnel": "mpls"}, "used_by": [30]})"));
}

TEST_F(TheReport, TellsOfEachDestinationWhatItsPacketsGoThrough) {
  const Json destinations = Told("")["destinations"];
  ASSERT_EQ(destinations.size(), 3U);
  EXPECT_EQ(destinations[0]["kind"], "VLAN");
  EXPECT_EQ(destinations[1]["kind"], "host");
  const Json& tunnel = destinations[2];
  EXPECT_EQ(tunnel["id"], 30);
  EXPECT_EQ(tunnel["kind"], "MPLS");
  EXPECT_EQ(tunnel["chain"][1], "at odds: labels asked for: 3; a push takes the first two");
  EXPECT_EQ(tunnel["chain"][5], "labels on the wire: 200 100");
  EXPECT_EQ(tunnel["packet"][5].get<std::string>().substr(0, 12), "| ethernet d");
}

TEST_F(TheReport, CountsNoPacketOfItsStories) {
  const Json tables = Told("send 20\n")["tables"];
  EXPECT_EQ(tables.back()["name"], "counters");
  EXPECT_EQ(tables.back()["rows"].size(), 2U);  // the destination's and its port's
}

TEST_F(TheReport, HasTheFindings) {
  const Json findings = Told("fail IntfManager::DeleteIntf result=BCM_E_BUSY\ndestroy-mpls 30\n")["findings"];
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0]["object"], "intf 2");
}
