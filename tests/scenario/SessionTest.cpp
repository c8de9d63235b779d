#include <gtest/gtest.h>

#include <stdexcept>

#include "scenario/Session.h"
#include "tests/scenario/Observed.h"

namespace scenario {
namespace {

/// Keeps what a session tells.
class Kept : public Observer {
 public:
  void Took(const Step& step) override {
    steps.push_back({step.line, step.rounds, step.Text(), step.kind, step.content});
    files.push_back(step.file);
  }
  void Ended(const std::string&, const Tally&) override { FAIL() << "a session has no end"; }

  std::vector<KeptStep> steps;
  std::vector<std::string> files;
};

class SessionTest : public testing::Test {
 protected:
  // The module starts once in a process; what that looks like is the sessions' matter.
  static void SetUpTestSuite() { const Observed start(""); }

  Answer Do(const std::string& text, std::size_t most_statements = kMostStatements) {
    kept_.steps.clear();
    return session_.Do({"live", text}, kept_, {}, most_statements);
  }

  softcard::Card& card_ = softcard::Card::Get();
  Session session_{TheLanguage(), card_, {}};
  Kept kept_;
};

TEST_F(SessionTest, StartsTheModuleBeforeTheFirstLineAndNeverAgain) {
  EXPECT_FALSE(Do("install-vrf 1\n").unusable());
  ASSERT_EQ(kept_.steps.size(), 2U);
  EXPECT_EQ(kept_.steps[0].kind, Kind::kStart);
  EXPECT_EQ(kept_.steps[0].line, 0U);
  EXPECT_EQ(kept_.steps[1].trace().result.Text(), "0");
  Do("install-vrf 2\n");
  ASSERT_EQ(kept_.steps.size(), 1U);
  EXPECT_EQ(card_.RowCount("vrfs"), 2U);
  EXPECT_EQ(session_.tally().requests, 2U);
}

TEST_F(SessionTest, AnUnusableTextChangesNothingAndSaysWhyAsAFileWould) {
  Do("install-vrf 1\n");
  const Answer answer = Do("install-vrf 2\ninstal-vrf 3\n");
  ASSERT_TRUE(answer.unusable());
  EXPECT_EQ(answer.Why(),
            "live:2:1: error: unknown request \"instal-vrf\"; did you mean \"install-vrf\"?\n"
            "  instal-vrf 3\n  ^\n");
  EXPECT_TRUE(kept_.steps.empty());
  EXPECT_EQ(card_.RowCount("vrfs"), 1U);
}

TEST_F(SessionTest, LinesKnowWhatWasDoneBeforeThem) {
  EXPECT_TRUE(Do("expect result 0\n").unusable()) << "no request came yet";
  EXPECT_FALSE(Do("install-vrf 1\n").unusable());
  const Answer answer = Do("expect result -7\n");
  EXPECT_FALSE(answer.unusable());
  EXPECT_EQ(answer.failed, 1U);
  const Checked& checked = std::get<Checked>(kept_.steps.at(0).content);
  EXPECT_EQ(checked.request, "install-vrf 1");
  EXPECT_EQ(*checked.failure, (Failure{"expected: -7", "found:    0"}));
  EXPECT_EQ(Do("show vrfs\n").failed, 0U);
  EXPECT_EQ(Do("expect result 0\nexpect call IngressManager::CreateIngress\n").failed, 0U);
  EXPECT_EQ(session_.tally().failed, 1U);
}

TEST_F(SessionTest, AClientOfARefusedTextIsNoneAndOthersStay) {
  EXPECT_TRUE(Do("client a notify\nclient b nonsense\n").unusable());
  EXPECT_TRUE(Do("install-vrf 1\nexpect no notification a\n").unusable());
  EXPECT_FALSE(Do("client c notify\n").unusable());
  EXPECT_FALSE(Do("install-vrf 1\nexpect no notification c\n").unusable());
}

TEST_F(SessionTest, OnlyTheFirstLineDescribesTheCard) {
  EXPECT_FALSE(Do("card ports=3\n").unusable());
  EXPECT_FALSE(Do("start\n").unusable()) << "as a file may say after its card";
  EXPECT_EQ(card_.RowCount("ports"), 4U) << "the CPU's is one";
  EXPECT_EQ(Do("card ports=4\n").complaints.at(0).message, "\"card\" comes once, before everything else");
  EXPECT_TRUE(Do("start\n").unusable());
  EXPECT_FALSE(Do("attach eth3 1\n").unusable());
  EXPECT_TRUE(Do("attach eth4 1\n").unusable());
}

TEST_F(SessionTest, NoLineDescribesACardThatHasBegun) {
  session_.Begin(kept_);
  ASSERT_EQ(kept_.steps.size(), 1U);
  EXPECT_EQ(kept_.steps[0].kind, Kind::kStart);
  session_.Begin(kept_);
  EXPECT_EQ(kept_.steps.size(), 1U);
  EXPECT_TRUE(Do("card ports=3\n").unusable());
  EXPECT_FALSE(Do("install-vrf 1\n").unusable());
  EXPECT_EQ(kept_.steps.size(), 1U);
}

TEST_F(SessionTest, EmptyLinesBeginNothing) {
  EXPECT_FALSE(Do("\n# a comment\n").unusable());
  EXPECT_TRUE(kept_.steps.empty());
  EXPECT_FALSE(Do("card ports=3\n").unusable());
}

TEST_F(SessionTest, LoopsAreBounded) {
  EXPECT_EQ(Do("for I in 1..11\ninstall-vrf $I\nend\n", 10).complaints.at(0).message,
            "the scenario has more than 10 lines with the rounds of its loops");
  EXPECT_FALSE(Do("for I in 1..10\ninstall-vrf $I\nend\n", 10).unusable());
  EXPECT_FALSE(Do("for I in 11..20\ninstall-vrf $I\nend\n", 10).unusable()) << "each text for itself";
  EXPECT_EQ(card_.RowCount("vrfs"), 20U);
}

TEST_F(SessionTest, WhatAStatementCannotWriteIsItsError) {
  Language language;
  AddStandard(language);
  language.Add("write", "", "Cannot", Kind::kShow, [](const Fields&, const Surroundings&) {
    return [](scenario::Run&) -> Content { throw std::runtime_error("cannot write x: no room"); };
  });
  Session session(language, card_, {});
  const Answer answer = session.Do({"live", "install-vrf 1\nwrite\ninstall-vrf 2\n"}, kept_);
  EXPECT_TRUE(answer.unusable());
  EXPECT_EQ(answer.Why(), "error: cannot write x: no room\n");
  EXPECT_EQ(card_.RowCount("vrfs"), 1U);
  EXPECT_FALSE(session.Do({"live", "expect result 0\n"}, kept_).unusable()) << "the session goes on";
}

TEST_F(SessionTest, WatchersAreToldFromTheBeginning) {
  Kept watcher;
  Session session(TheLanguage(), card_, {}, {&watcher});
  session.Do({"live", "install-vrf 1\n"}, kept_);
  EXPECT_EQ(watcher.steps.size(), 2U);
  session.Do({"other", "install-vrf 2\n"}, kept_);
  EXPECT_EQ(watcher.steps.size(), 3U);
  EXPECT_EQ(watcher.files, (std::vector<std::string>{"live", "live", "other"}));
}

TEST_F(SessionTest, ManyTextsAfterALastRequestLeaveItKnown) {
  Do("install-vrf 1\n");
  for (int i = 0; i < 5; ++i) EXPECT_FALSE(Do("show vrfs\n").unusable());
  EXPECT_FALSE(Do("fail fm_init result=-1\n").unusable());
  Do("expect result 1\n");
  EXPECT_EQ(std::get<Checked>(kept_.steps.at(0).content).request, "install-vrf 1");
}

TEST(CollectorTest, ALineIsAWholeUnlessItBeginsALoopOrABlock) {
  Collector lines(TheLanguage(), "live");
  EXPECT_TRUE(lines.Add("install-vrf 1"));
  EXPECT_EQ(lines.Take().whole, "install-vrf 1\n");
  EXPECT_TRUE(lines.empty());
  EXPECT_FALSE(lines.Add("for I in 1..2"));
  EXPECT_FALSE(lines.Add("  for J in 1..2  # inner"));
  EXPECT_FALSE(lines.Add("install-vrf $I"));
  EXPECT_FALSE(lines.Add("expect table vrfs"));
  EXPECT_FALSE(lines.Add("for this is a row"));
  EXPECT_FALSE(lines.Add("end"));
  EXPECT_FALSE(lines.Add("end"));
  EXPECT_FALSE(lines.empty());
  EXPECT_TRUE(lines.Add("end"));
  const SourceText text = lines.Take();
  EXPECT_EQ(text.file, "live");
  EXPECT_EQ(text.first_line, 2U);
  EXPECT_TRUE(lines.Add("show vrfs"));
  EXPECT_EQ(lines.Take().first_line, 10U);
}

TEST(CollectorTest, WhatCannotBeReadIsAWholeThatSaysWhy) {
  Collector lines(TheLanguage(), "live");
  for (const char* line : {"", "# comment", "for \"", "nonsense", "end", "expect", "expect nonsense"}) {
    EXPECT_TRUE(lines.Add(line)) << line;
    lines.Take();
  }
}

TEST(CollectorTest, ComplaintsNumberTheLinesAsTheyCame) {
  Collector lines(TheLanguage(), "live");
  lines.Add("");
  lines.Take();
  lines.Add("for I in 1..2");
  lines.Add("nonsense $I");
  lines.Add("end");
  Session session(TheLanguage(), softcard::Card::Get(), {});
  Kept kept;
  EXPECT_EQ(session.Do(lines.Take(), kept).complaints.at(0).line, 3U);
}

TEST(CollectorTest, KeepsNoMoreThanItSays) {
  Collector lines(TheLanguage(), "live");
  lines.Add("for I in 1..2");
  EXPECT_THROW(lines.Add(std::string(Collector::kMost, 'x')), std::runtime_error);
  EXPECT_TRUE(lines.empty());
  EXPECT_TRUE(lines.Add("install-vrf 1"));
  EXPECT_EQ(lines.Take().first_line, 3U);
}

}  // namespace
}  // namespace scenario
