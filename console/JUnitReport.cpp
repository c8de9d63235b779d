#include "console/JUnitReport.h"

#include "scenario/Suggestion.h"

namespace console {
namespace {

/// In an attribute or an element. XML has no place for control characters.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&': escaped += "&amp;"; break;
      case '<': escaped += "&lt;"; break;
      case '>': escaped += "&gt;"; break;
      case '"': escaped += "&quot;"; break;
      case '\n': escaped += "&#10;"; break;
      default: escaped += c;
    }
  }
  return escaped;
}

std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + Escaped(value) + '"';
}

std::string SuiteOf(const std::string& file, std::size_t tests, std::size_t failures, std::size_t errors,
                    const std::string& cases) {
  return "  <testsuite" + Attribute("name", scenario::Printable(file)) + Attribute("tests", std::to_string(tests)) +
         Attribute("failures", std::to_string(failures)) + Attribute("errors", std::to_string(errors)) + ">\n" + cases +
         "  </testsuite>\n";
}

std::string CaseOf(const std::string& file, const std::string& name, const std::string& content) {
  const std::string start = "    <testcase" + Attribute("classname", scenario::Printable(file)) +
                            Attribute("name", scenario::Printable(name));
  return start + (content.empty() ? "/>\n" : ">\n" + content + "    </testcase>\n");
}

}  // namespace

void JUnitReport::Took(const scenario::Step& step) {
  const auto* const checked = std::get_if<scenario::Checked>(&step.content);
  if (checked == nullptr) return;
  Case& its_case = cases_[{step.file, step.line}];
  if (its_case.source.empty()) its_case.source = step.source;
  if (!checked->failure || ++its_case.failures > 1) return;
  if (!step.rounds.empty()) its_case.first = "with " + scenario::RoundText(step.rounds) + '\n';
  if (checked->request_line > 0) {
    its_case.first +=
        "after line " + std::to_string(checked->request_line) + ": " + scenario::Printable(checked->request) + '\n';
  }
  for (const std::string& line : *checked->failure) its_case.first += scenario::Printable(line) + '\n';
}

std::string JUnitReport::Suite(const std::string& file) const {
  std::string cases;
  std::size_t failures = 0;
  for (const auto& [place, its_case] : cases_) {
    std::string content;
    if (its_case.failures > 0) {
      ++failures;
      const std::string times =
          its_case.failures == 1 ? "failed" : "failed " + std::to_string(its_case.failures) + " times";
      content = "      <failure" + Attribute("message", times) + '>' + Escaped(its_case.first) + "</failure>\n";
    }
    cases += CaseOf(place.first, "line " + std::to_string(place.second) + ": " + its_case.source, content);
  }
  if (cases.empty()) return SuiteOf(file, 1, 0, 0, CaseOf(file, "runs", ""));
  return SuiteOf(file, cases_.size(), failures, 0, cases);
}

std::string JUnitReport::ErrorSuite(const std::string& file, const std::string& reason) {
  return SuiteOf(file, 1, 0, 1, CaseOf(file, "runs", "      <error" + Attribute("message", reason) + "/>\n"));
}

std::string JUnitReport::Report(const std::string& suites) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n" + suites + "</testsuites>\n";
}

}  // namespace console
