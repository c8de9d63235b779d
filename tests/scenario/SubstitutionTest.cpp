#include <gtest/gtest.h>

#include "scenario/Substitution.h"
#include "scenario/SyntaxError.h"

namespace scenario {
namespace {

std::string Substituted(const std::string& text, const Counters& counters = {{"I", 7}, {"J", 3}}) {
  std::string result;
  Substitute({text, 0}, counters, result);
  return result;
}

std::string Refusal(const std::string& text) {
  try {
    return "substituted: " + Substituted(text);
  } catch (const SyntaxError& error) {
    return std::to_string(error.offset) + ": " + error.message;
  }
}

TEST(Substitution, ReplacesCountersAndExpressions) {
  EXPECT_EQ(Substituted("eth$I"), "eth7");
  EXPECT_EQ(Substituted("$(I+1000),$(J*2)"), "1007,6");
  EXPECT_EQ(Substituted("$((I-1)/2%2)x"), "1x");
  EXPECT_EQ(Substituted("$(2+3*4-1)"), "13");
  EXPECT_EQ(Substituted("00:00:00:00:01:00+$I"), "00:00:00:00:01:00+7");
  EXPECT_EQ(Substituted("$(J-I)"), "-4");
}

TEST(Substitution, LeavesTheRestAsItIs) {
  EXPECT_EQ(Substituted("labels=[{flags=0x11}]"), "labels=[{flags=0x11}]");
  EXPECT_EQ(Substituted("$$I costs $$"), "$I costs $");
}

TEST(Substitution, RefusesWhatItCannotRead) {
  EXPECT_EQ(Refusal("a$K"), "2: no loop around this line counts \"K\", and no -D defines it; did you mean \"J\"?");
  EXPECT_EQ(Refusal("$"), "1: expected $COUNTER, $(...) or $$");
  EXPECT_EQ(Refusal("$(I"), "3: expected + - * / % or )");
  EXPECT_EQ(Refusal("$(I 1)"), "3: expected + - * / % or )");
  EXPECT_EQ(Refusal("$(I+)"), "4: expected a number or a loop's counter");
  EXPECT_EQ(Refusal("$(I/(J-3))"), "9: division by 0; a divisor is positive");
  EXPECT_EQ(Refusal("$(9223372036854775807+I)"), "23: the value does not fit into 64 bits");
  EXPECT_EQ(Refusal("$" + std::string(101, '(')), "102: more than 100 nested parentheses");
}

TEST(Substitution, WithoutALoopADollarSignHasToBeDoubled) {
  try {
    Substituted("$I", {});
    FAIL() << "nothing was thrown";
  } catch (const SyntaxError& error) {
    EXPECT_EQ(error.message, "no loop around this line counts \"I\", and no -D defines it; a dollar sign is $$");
  }
}

}  // namespace
}  // namespace scenario
