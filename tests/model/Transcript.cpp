#include <cstdlib>

#include "tests/model/Model.h"

namespace model {

std::string ReturnLine(int result) { return "returns " + std::to_string(result); }

std::string ThrowLine(const std::string& what) { return "throws " + what; }

std::string NotifiedLine(const std::string& client, int dest, unsigned port, int nth) {
  return "client " + client + " is told " + std::to_string(dest) + ", " + std::to_string(port) + ", call " +
         std::to_string(nth);
}

void Transcript::Expect(const std::string& line) {
  if (next_ >= lines_.size() || lines_[next_] != line) Differ(line);
  ++next_;
}

int Transcript::ResultOf(const std::string& call, Result result) {
  const std::string shown = result == Result::kNothing ? call : call + " = ";
  if (next_ >= lines_.size() || lines_[next_].compare(0, shown.size(), shown) != 0) Differ(call);
  const std::string value = lines_[next_].substr(shown.size());
  if (result == Result::kNothing) {
    if (!value.empty() && value.compare(0, 3, " = ") != 0) Differ(call);
  } else if (value != "true" && value != "false" && value.find_first_of("-0123456789") != 0) {
    Differ(call + " = (a result)");
  }
  ++next_;
  return value == "true" ? 1 : static_cast<int>(std::strtoll(value.c_str(), nullptr, 10));
}

void Transcript::ExpectEnd() const {
  if (next_ != lines_.size()) Differ("(nothing more)");
}

std::string Transcript::Text() const {
  std::string text;
  for (size_t i = 0; i < lines_.size(); ++i) text += (i == next_ ? "  --> " : "      ") + lines_[i] + '\n';
  return text;
}

void Transcript::Differ(const std::string& expected) const {
  throw Difference("expected: " + expected + "\nfound:    " + (next_ < lines_.size() ? lines_[next_] : "(nothing)") +
                   '\n' + Text());
}

}  // namespace model
