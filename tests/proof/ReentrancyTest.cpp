#include <gtest/gtest.h>

#include <algorithm>

#include "tests/model/RequestReader.h"
#include "tests/model/Subject.h"

using model::ClientKind;
using model::Record;
using model::Request;
using Lines = std::vector<std::string>;

namespace {

Request Client(const std::string& name, ClientKind kind, const Lines& calls = {}) {
  Request request{};
  request.operation = model::Operation::kRegister;
  request.client = name;
  request.kind = kind;
  for (const auto& call : calls) request.calls.push_back(model::ReadRequest(call));
  return request;
}

/// A pushed tunnel, destination 20, on destination 10. What happens is compared with the model throughout.
class ACallback : public testing::Test {
 protected:
  ACallback() {
    for (const char* line : {"install-vrf 1", "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01",
                             "install-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=100,200 caps=4"}) {
      subject_.Run(model::ReadRequest(line));
    }
  }

  Lines Replace() {
    return subject_.Run(model::ReadRequest("replace-mpls 20 vlan=10 lim=eth2 mac=02:00:00:00:00:01 labels=300 caps=4"));
  }
  static long Count(const Lines& lines, const std::string& line) {
    return std::count(lines.begin(), lines.end(), line);
  }

  const Record record_{2, 100001};  ///< what the tunnel's install recorded: interface and egress object
  model::Subject subject_;
};

}  // namespace

TEST_F(ACallback, MayDestroyItsOwnDestinationWhichThenStaysAway) {
  subject_.Run(Client("a", ClientKind::kCalls, {"destroy-mpls 20"}));
  EXPECT_EQ(Replace().back(), "returns 0");
  EXPECT_EQ(subject_.registry().count(20), 0u);
  EXPECT_EQ(softcard::Texts(softcard::Card::Get().Rows("egresses")), Lines());
}

TEST_F(ACallback, MayDestroyTheBaseOfItsDestination) {
  subject_.Run(Client("a", ClientKind::kCalls, {"destroy-vlan 10"}));
  EXPECT_EQ(Replace().back(), "returns 0");
  EXPECT_EQ(subject_.registry().count(10), 0u);
  EXPECT_EQ(subject_.registry().at(20), record_);
}

TEST_F(ACallback, ThatDestroysAndInstallsItsDestinationHasTheLastWord) {
  subject_.Run(Client("a", ClientKind::kCalls,
                      {"destroy-mpls 20", "install-mpls 20 vlan=10 lim=eth3 mac=02:00:00:00:00:02 labels=1,2 caps=4"}));
  EXPECT_EQ(Replace().back(), "returns 0");
  EXPECT_EQ(subject_.registry().at(20), (Record{3, 100002}));
}

TEST_F(ACallback, ThatMovesItsDestinationOutOfTheTunnelHasTheLastWord) {
  subject_.Run(
      Client("a", ClientKind::kCalls, {"replace-mpls 20 vlan=10 lim=eth3 mac=02:00:00:00:00:02 labels=16 caps=2"}));
  EXPECT_EQ(Replace().back(), "returns 0");
  EXPECT_EQ(subject_.registry().at(20), (Record{1, 100002}));
}

TEST_F(ACallback, KeepsItsStateFromOneReplaceToTheNextUntilItIsReplaced) {
  subject_.Run(Client("a", ClientKind::kRecords));
  EXPECT_EQ(Count(Replace(), "client a is told 20, 2, call 1"), 1);
  EXPECT_EQ(Count(Replace(), "client a is told 20, 2, call 2"), 1);
  subject_.Run(Client("a", ClientKind::kRecords));
  EXPECT_EQ(Count(Replace(), "client a is told 20, 2, call 1"), 1);
}

TEST_F(ACallback, MayReplaceItsOwnDestination) {
  subject_.Run(Client("a", ClientKind::kCalls,
                      {"replace-mpls 20 vlan=10 lim=eth3 mac=02:00:00:00:00:02 labels=500,600 caps=4"}));
  const auto lines = Replace();
  EXPECT_EQ(lines.back(), "returns 0");
  EXPECT_EQ(Count(lines, "client a is told 20, 2, call 1"), 1);
  EXPECT_EQ(Count(lines, "client a is told 20, 3, call 2"), 1);
}

TEST_F(ACallback, MayInstallOtherDestinations) {
  subject_.Run(Client("a", ClientKind::kCalls,
                      {"install-host 30 vlan=10 lim=eth4 mac=02:00:00:00:00:04",
                       "install-mpls 21 vlan=10 lim=eth5 mac=02:00:00:00:00:05 caps=3"}));
  EXPECT_EQ(Replace().back(), "returns 0");
  EXPECT_EQ(subject_.registry().count(30), 1u);
  EXPECT_EQ(subject_.registry().count(21), 1u);
}

TEST_F(ACallback, RegistersClientsThatAreToldFromTheNextReplaceOn) {
  subject_.Run(Client("b", ClientKind::kCalls, {"client a notify", "client c notify"}));
  const auto first = Replace(), second = Replace();
  EXPECT_EQ(Count(first, "client a is told 20, 2, call 1"), 0);
  EXPECT_EQ(Count(first, "client c is told 20, 2, call 1"), 0);
  EXPECT_EQ(Count(second, "client a is told 20, 2, call 1"), 1);
  EXPECT_EQ(Count(second, "client c is told 20, 2, call 1"), 1);
}

TEST_F(ACallback, MayRegisterItsOwnNameAnewAndRunsToItsEnd) {
  subject_.Run(Client("a", ClientKind::kCalls, {"client a empty", "destroy-mpls 20"}));
  EXPECT_EQ(Count(Replace(), "client a is told 20, 2, call 1"), 1);
  EXPECT_EQ(subject_.registry().count(20), 0u);
}

TEST_F(ACallback, MaySilenceALaterClientFromTheNextReplaceOn) {
  subject_.Run(Client("b", ClientKind::kRecords));
  subject_.Run(Client("a", ClientKind::kCalls, {"client b empty"}));
  EXPECT_EQ(Count(Replace(), "client b is told 20, 2, call 1"), 1);
  EXPECT_EQ(Count(Replace(), "client b is told 20, 2, call 1"), 0);
}

TEST_F(ACallback, ThatThrowsEndsTheReplaceBeforeLaterClientsAndBeforeTheRecordIsWritten) {
  subject_.Run(Client("a", ClientKind::kRecords));
  subject_.Run(Client("b", ClientKind::kThrows));
  subject_.Run(Client("c", ClientKind::kRecords));
  // The chip gives the interface another id, which the record does not learn.
  Request replace = model::ReadRequest("replace-mpls 20 vlan=10 lim=eth2 mac=02:00:00:00:00:01 labels=300 caps=4");
  replace.faults = {{"IntfManager::UpdateIntf", 1, 1}};
  const auto lines = subject_.Run(replace);
  EXPECT_EQ(lines.back(), "throws client b");
  EXPECT_EQ(Count(lines, "client a is told 20, 2, call 1"), 1);
  EXPECT_EQ(Count(lines, "client c is told 20, 2, call 1"), 0);
  EXPECT_EQ(subject_.registry().at(20), record_);
}

TEST_F(ACallback, PassesOnWhatItsOwnRequestsThrow) {
  subject_.Run(Client("a", ClientKind::kCalls, {"install-host 30 vlan=10 lim=absent:eth99 mac=02:00:00:00:00:04"}));
  EXPECT_EQ(Replace().back(), "throws HAL ID not found");
  EXPECT_EQ(subject_.registry().at(20), record_);
}
