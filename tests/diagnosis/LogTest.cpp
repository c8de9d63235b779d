#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "diagnosis/LogDiagnosis.h"
#include "diagnosis/Operations.h"
#include "diagnosis/Refusals.h"

using diagnosis::LogCause;
using diagnosis::LogKnowledge;
using diagnosis::LogRequest;
using diagnosis::LogText;
using diagnosis::LogTexts;
using diagnosis::LogValues;
using Lines = std::vector<std::string>;

namespace {

/// Made once: it takes a second.
class TheKnowledge {
 public:
  static TheKnowledge& Get() {
    static TheKnowledge knowledge;
    return knowledge;
  }

  scenario::Language language;
  std::optional<LogKnowledge> knowledge;

 private:
  TheKnowledge() {
    AddStandard(language);
    knowledge.emplace(language, softcard::Card::Get());
  }
};

std::vector<LogRequest> Diagnosed(const Lines& lines) {
  std::vector<LogRequest> requests;
  diagnosis::LogDiagnosis diagnosis(*TheKnowledge::Get().knowledge,
                                    [&](const LogRequest& request) { requests.push_back(request); });
  for (const std::string& line : lines) diagnosis.Take(line);
  diagnosis.End();
  EXPECT_EQ(diagnosis.lines(), lines.size());
  return requests;
}

Lines LogOf(const diagnosis::Attempt& attempt) {
  Lines lines;
  for (const scenario::TraceLine& line : attempt.trace.lines) {
    if (line.kind() != scenario::TraceLine::Kind::kLog) continue;
    lines.push_back(std::get<calls::LogLine>(std::get<calls::Event>(line.what)).text);
  }
  return lines;
}

/// As another card and another program would have it: a prefix, other ids, other lines between.
Lines OnAnotherCard(const Lines& lines) {
  Lines others;
  for (std::string line : lines) {
    for (const auto& [from, to] :
         {std::pair<std::string, std::string>{"(10)", "(4711)"}, {"(30)", "(4713)"}, {"name=eth", "name=slot1/"}}) {
      for (std::size_t at = line.find(from); at != std::string::npos; at = line.find(from, at + to.size())) {
        line.replace(at, from.size(), to);
      }
    }
    others.push_back("Nov 21 08:15:03 card-7 hald[812]: <7> " + line + "\r");
    others.emplace_back("Nov 21 08:15:03 card-7 linkd[99]: Installing nothing, Error 7");
  }
  return others;
}

bool Names(const LogRequest& request, const std::string& call, const std::string& result) {
  return std::any_of(request.causes.begin(), request.causes.end(), [&](const LogCause& cause) {
    return cause.call == call && (cause.result == result || cause.result == "the status");
  });
}

const Lines kPush = {
    "Installing outgoing encapsulation for mpls destination id(2041)",
    "Couldn't find DestinationIdCorrelator with destination id(2041)",
    "Converting lim id(name=slot2/port3, type=0x01, value=0x0001F3) to port",
    "Installing tunnel outgoing encapsulation for MPLS Capability(Push)",
    "FillMplsLabels - MPLS Capability(Push), labels size is 1",
    "Tunnel Label 0 is 0",
    "Error setting tunnel initiator (intf id(77), rv=-6)",
    "Can't install MPLS Capability(Push) encapsulation with destination id(2041)",
};

Lines Part(const Lines& lines, std::size_t from, std::size_t to) { return {lines.begin() + from, lines.begin() + to}; }

}  // namespace

TEST(ALogText, FitsTheSameWithOtherNumbersAndOtherGivenWords) {
  const LogText text("Converting lim id(name=eth2, type=0x01, value=0x000002) to port", {"eth2"});
  LogValues values;
  EXPECT_TRUE(text.Fits("Converting lim id(name=a, type=b, type=0x02, value=0x0000FF) to port", values));
  EXPECT_EQ(values, (LogValues{"a, type=b", "0x02", "0x0000FF"}));
  EXPECT_TRUE(text.Fits("Converting lim id(name=, type=0x02, value=0x0000FF) to port", values));
  EXPECT_FALSE(text.Fits("Converting lim id(name=eth2, type=0x02, value=0x0000FF) to port.", values));
  EXPECT_FALSE(text.Fits("Converting lim id(name=eth2, type=none, value=0x0000FF) to port", values));
  EXPECT_FALSE(text.Fits("Converting lim id(name=eth2", values));
}

TEST(ALogText, TellsANegativeNumberFromOneThatIsNot) {
  LogValues values;
  EXPECT_TRUE(LogText("rv=-11", {}).Fits("rv=-6", values));
  EXPECT_FALSE(LogText("rv=-11", {}).Fits("rv=6", values));
}

TEST(LogTextsOfAModule, AreFoundBehindAnyPrefixThoseWithTheFewestOpenWordsFirst) {
  LogTexts texts;
  const std::size_t open = texts.Add(LogText("Destroying intf 2", {"intf 2"}));
  const std::size_t closed = texts.Add(LogText("Destroying id(2)", {}));
  EXPECT_EQ(texts.Add(LogText("Destroying id(7)", {})), closed);
  const auto found = texts.Find("<7> hald: Destroying id(9) \r");
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].number, closed);
  EXPECT_EQ(found[0].values, LogValues{"9"});
  EXPECT_EQ(found[1].number, open);
  EXPECT_TRUE(texts.Find("hald: destroying id(9)").empty());
  EXPECT_TRUE(texts.Find("").empty());
}

TEST(ADiagnosis, RecognisesEveryRefusalOfEveryOperationThatLogs) {
  TheKnowledge& the = TheKnowledge::Get();
  int recognised = 0, ambiguous = 0;
  for (const diagnosis::Operation& operation : diagnosis::Operations()) {
    const auto refusals = diagnosis::RefuseEachCall(the.language, softcard::Card::Get(), operation.situation);
    const Lines usual = LogOf(refusals.unhindered);
    if (usual.empty()) continue;  // VRFs
    const auto unhindered = Diagnosed(OnAnotherCard(usual));
    ASSERT_EQ(unhindered.size(), 1U) << operation.title;
    EXPECT_TRUE(unhindered[0].MayHaveSucceeded()) << operation.title;
    for (const auto& refusal : refusals.refused) {
      const auto requests = Diagnosed(OnAnotherCard(LogOf(refusal.attempt)));
      ASSERT_EQ(requests.size(), 1U) << operation.title << ", " << refusal.call.function->name;
      EXPECT_TRUE(Names(requests[0], refusal.call.function->name, refusal.attempt.trace.result.Text()))
          << operation.title << ", " << refusal.call.function->name;
      ++recognised;
      if (requests[0].causes.size() > 1) ++ambiguous;
    }
  }
  EXPECT_GT(recognised, 150);
  EXPECT_GT(ambiguous, 10);
}

TEST(ADiagnosis, ReadsTheStatusAndTheIdsFromTheLog) {
  const auto requests = Diagnosed(kPush);
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0].id, "2041");
  EXPECT_EQ(requests[0].first_line, 1U);
  EXPECT_EQ(requests[0].last_line, 8U);
  EXPECT_FALSE(requests[0].begins_before || requests[0].may_go_on);
  ASSERT_EQ(requests[0].causes.size(), 1U);
  const LogCause& cause = requests[0].causes[0];
  EXPECT_EQ(cause.request, "install-mpls");
  EXPECT_EQ(cause.call, "bcm_mpls_tunnel_initiator_set");
  EXPECT_EQ(cause.status, "-6 (Table full)");
  EXPECT_EQ(cause.result, "-1");
  EXPECT_TRUE(cause.left.empty());
}

TEST(ADiagnosis, TellsWhatIsLeftWithTheLogsOwnIdsAndTheRequestThatCleansUp) {
  const auto requests = Diagnosed({"Installing outgoing encapsulation for VLAN destination id(12)",
                                   "Error on installing vlan outgoing encapsulation of vlan id(312)"});
  ASSERT_EQ(requests.size(), 1U);
  ASSERT_EQ(requests[0].causes.size(), 1U);
  const LogCause& cause = requests[0].causes[0];
  EXPECT_EQ(cause.call, "IntfManager::CreateIntf");
  EXPECT_EQ(cause.status, "negative");
  ASSERT_EQ(cause.left.size(), 1U);
  EXPECT_EQ(cause.left[0].object, "protocol 312");
  EXPECT_EQ(cause.left[0].remedy, "install-vlan with lim=vlan312, then destroy-vlan");
}

TEST(ADiagnosis, PutsAQuestionMarkForAnIdThatTheLogDoesNotTell) {
  const auto requests = Diagnosed({"Installing outgoing encapsulation for VLAN destination id(12)"});
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_TRUE(requests[0].MayHaveSucceeded());
  EXPECT_TRUE(Names(requests[0], "MyStationManager::InsertMyStationVlanEntry", "-1"));
  EXPECT_TRUE(Names(requests[0], "IngressManager::AssociateVlanToVrf", "-1"));
  const auto& causes = requests[0].causes;
  EXPECT_TRUE(std::any_of(causes.begin(), causes.end(), [](const LogCause& cause) {
    return cause.call == "MyStationManager::InsertMyStationVlanEntry" && cause.status == "negative" &&
           cause.left.size() == 1 && cause.left[0].object == "protocol ?";
  }));
}

TEST(ADiagnosis, TellsWhatAnUnavailableInitiatorDoesFromAnyOtherRefusal) {
  const Lines replace = {"Updating outgoing encapsulation for mpls destination id(30)", "Mpls Intf Object: a",
                         "Vlan Intf Object: b", "Converting lim id(name=c, type=0x01, value=0x000001) to port",
                         "Updating tunnel outgoing encapsulation for MPLS Capability(Forward)."};
  Lines silent = replace, loud = replace;
  silent.emplace_back("Can't update MPLS Capability(Forward) encapsulation with destination id(30)");
  loud.emplace_back("Error clearing tunnel initiator (intf id(7), rv=-10)");
  loud.push_back(silent.back());
  EXPECT_EQ(Diagnosed(loud).at(0).causes.at(0).status, "-10 (Busy)");
  const auto causes = Diagnosed(silent).at(0).causes;
  EXPECT_TRUE(std::any_of(causes.begin(), causes.end(), [](const LogCause& cause) {
    return cause.call == "bcm_mpls_tunnel_initiator_clear" && cause.status == "-16 (Unavailable)";
  }));
}

TEST(ADiagnosis, SaysThatARequestWasTurnedDownWithoutARefusal) {
  const auto requests = Diagnosed({"Destroying outgoing encapsulation for mpls destination id(5)",
                                   "Couldn't find DestinationIdCorrelator with destination id(5)"});
  ASSERT_EQ(requests.at(0).causes.size(), 1U);
  EXPECT_EQ(requests[0].causes[0].call, "");
  EXPECT_EQ(requests[0].causes[0].result, "-1");
  EXPECT_EQ(requests[0].causes[0].titles[0], "destroy-mpls of what is not installed");
  EXPECT_FALSE(requests[0].MayHaveSucceeded());
}

TEST(ADiagnosis, KeepsTheBaseThatIsMissingApartFromTheDestination) {
  const auto requests = Diagnosed({kPush[0], kPush[1], "Couldn't find DestinationIdCorrelator with destination id(8)"});
  ASSERT_EQ(requests.size(), 1U);
  ASSERT_FALSE(requests[0].causes.empty());
  EXPECT_EQ(requests[0].causes[0].titles[0], "install-mpls on a base that is not installed");
}

TEST(ADiagnosis, SaysWhenNoSingleRefusalWritesTheLines) {
  Lines lines = kPush;
  lines.insert(lines.end() - 1, "Error clearing tunnel initiator (intf id(77), rv=-4)");
  lines.emplace_back("Destroying outgoing encapsulation for host destination id(5)");
  const auto requests = Diagnosed(lines);
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_TRUE(requests[0].causes.empty());
  EXPECT_EQ(requests[0].last_line, 9U);
  EXPECT_FALSE(requests[1].causes.empty());
}

TEST(ADiagnosis, FollowsClientsThatMakeRequestsOfTheirOwn) {
  const auto requests =
      Diagnosed({"Updating outgoing encapsulation for mpls destination id(30)", "Mpls Intf Object: a",
                 "Vlan Intf Object: b", "Converting lim id(name=c, type=0x01, value=0x000001) to port",
                 "Updating tunnel outgoing encapsulation for MPLS Capability(Push).",
                 "FillMplsLabels - MPLS Capability(Push), labels size is 1", "Tunnel Label 0 is 0",
                 "Calling callback for client statistics.", "Calling callback for client mirror.",
                 "Destroying outgoing encapsulation for host destination id(20)", "Calling callback for client last."});
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_EQ(requests[0].last_line, 9U);
  for (const LogRequest& request : requests) EXPECT_TRUE(request.MayHaveSucceeded()) << request.first_line;
}

TEST(ADiagnosis, RecognisesARequestWhoseBeginningIsCutOff) {
  const auto requests = Diagnosed(Part(kPush, 5, 8));
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_TRUE(requests[0].begins_before);
  EXPECT_EQ(requests[0].id, "2041");
  ASSERT_FALSE(requests[0].causes.empty());
  for (const LogCause& cause : requests[0].causes) {
    EXPECT_EQ(cause.call, "bcm_mpls_tunnel_initiator_set");
    EXPECT_EQ(cause.status, "-6 (Table full)");
  }
  Lines followed = Part(kPush, 6, 8);
  followed.insert(followed.end(), kPush.begin(), kPush.end());
  EXPECT_EQ(Diagnosed(followed).size(), 2U);
}

TEST(ADiagnosis, ToldWhatMayFollowWhereTheLogIsCutOff) {
  const auto requests = Diagnosed(Part(kPush, 0, 7));
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_TRUE(requests[0].may_go_on);
  ASSERT_FALSE(requests[0].causes.empty());
  EXPECT_EQ(requests[0].causes[0].call, "bcm_mpls_tunnel_initiator_set");
  const auto middle = Diagnosed(Part(kPush, 3, 6));
  ASSERT_EQ(middle.size(), 1U);
  EXPECT_TRUE(middle[0].begins_before && middle[0].may_go_on);
  EXPECT_TRUE(Names(middle[0], "bcm_mpls_tunnel_initiator_set", "-1"));
  EXPECT_TRUE(Names(middle[0], "EgressManager::CreateEgress", "-1"));
}

TEST(ADiagnosis, CountsLinesOfTheModuleThatBelongToNoRequest) {
  diagnosis::LogDiagnosis diagnosis(*TheKnowledge::Get().knowledge, [](const LogRequest&) { FAIL(); });
  for (int i = 0; i < 1000; ++i) diagnosis.Take("Tunnel Label 0 is 7");
  diagnosis.End();
  EXPECT_EQ(diagnosis.module_lines(), 1000U);
  EXPECT_EQ(diagnosis.stray_lines(), 1000U);
}

TEST(ADiagnosis, TellsNothingOfALogThatIsEmptyOrOfOthers) {
  EXPECT_TRUE(Diagnosed({}).empty());
  EXPECT_TRUE(Diagnosed({"", "\xff \x1b[31m", std::string(60000, 'x'), "Installing", "Error "}).empty());
}
