#include <gtest/gtest.h>

#include "calls/Json.h"

using calls::JsonString;

TEST(AJsonString, EscapesWhatMustNotStandInIt) {
  EXPECT_EQ(JsonString("a \"b\" \\ \n\t\x01\x7f"), "\"a \\\"b\\\" \\\\ \\u000a\\u0009\\u0001\\u007f\"");
}

TEST(AJsonString, KeepsUtf8) {
  EXPECT_EQ(JsonString("\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80"), "\"\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80\"");
}

TEST(AJsonString, ReplacesBytesThatAreNoUtf8) {
  const std::string replaced = "\xEF\xBF\xBD";
  EXPECT_EQ(JsonString("\xFF"), '"' + replaced + '"');
  EXPECT_EQ(JsonString("\xC3("), '"' + replaced + "(\"");                             // cut
  EXPECT_EQ(JsonString("\xC0\x80"), '"' + replaced + replaced + '"');                 // longer than needed
  EXPECT_EQ(JsonString("\xED\xA0\x80"), '"' + replaced + replaced + replaced + '"');  // half a pair
  EXPECT_EQ(JsonString("\xE2\x82"), '"' + replaced + replaced + '"');                 // ends within a character
}
