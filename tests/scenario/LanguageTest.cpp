#include <gtest/gtest.h>

#include "tests/scenario/Observed.h"

namespace scenario {
namespace {

TEST(FormTest, KnowsItsPartsAndTheirKindsOfValue) {
  const Form form("install-host", "ID vlan=ID [actions=ACTION,...] TABLE...");
  EXPECT_EQ(form.usage(), "install-host ID vlan=ID [actions=ACTION,...] TABLE...");
  ASSERT_EQ(form.parts().size(), 4u);
  EXPECT_EQ(form.parts()[0].value, "ID");
  EXPECT_EQ(form.parts()[1].key, "vlan");
  EXPECT_EQ(form.parts()[2].text, "actions=ACTION,...");
  EXPECT_EQ(form.parts()[2].value, "ACTION");
  EXPECT_TRUE(form.parts()[2].optional);
  EXPECT_TRUE(form.parts()[3].repeated);
  EXPECT_EQ(form.parts()[3].value, "TABLE");
}

TEST(LanguageTest, EveryStatementSaysWhatItDoes) {
  for (const Statement& statement : TheLanguage().statements()) {
    EXPECT_FALSE(statement.help.empty()) << statement.form.usage();
  }
  for (const Expectation& expectation : TheLanguage().expectations()) {
    EXPECT_FALSE(expectation.help.empty()) << expectation.form.usage();
  }
}

TEST(LanguageTest, TakesStatementsAndExpectationsOfOtherRooms) {
  Language language;
  AddStandard(language);
  language.Add("count", "TABLE", "Says how many rows there are", Kind::kSay,
               [](const Fields& fields, const Surroundings&) {
                 return [table = std::string(fields.words()[0].text)](scenario::Run& run) {
                   return Said{std::to_string(run.card.RowCount(table))};
                 };
               });
  language.AddExpectation("odd", "TABLE", "An odd number of rows", Expectation::About::kCard, Expectation::kNegatable,
                          [](const Fields& fields, const Surroundings& around) {
                            return [table = std::string(fields.words()[0].text),
                                    negated = around.negated](const scenario::Run& run) -> std::optional<Failure> {
                              const bool odd = run.card.RowCount(table) % 2 == 1;
                              if (odd != negated) return std::nullopt;
                              return Failure{"odd"};
                            };
                          });
  const ParsedScenario parsed =
      ParseScenario(language, "other.scn", "install-vrf 1\ncount vrfs\nexpect odd vrfs\nexpect no odd vrfs\n");
  ASSERT_TRUE(parsed.complaints.empty()) << parsed.complaints[0].Text();
  const Observed observed(parsed.scenario);
  EXPECT_EQ(std::get<Said>(observed.At(2).content).text, "1");
  EXPECT_EQ(observed.tally.expectations, 2u);
  EXPECT_EQ(observed.tally.failed, 1u);
  EXPECT_EQ(ParseScenario(language, "other.scn", "cuont vrfs\n").complaints.at(0).message,
            "unknown request \"cuont\"; did you mean \"count\"?");
}

}  // namespace
}  // namespace scenario
