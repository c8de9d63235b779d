#include "console/Json.h"

#include "calls/Json.h"

namespace console {

std::string JsonOf(const diagnosis::Finding& finding) {
  using calls::JsonString;
  return "{\"object\": " + JsonString(finding.object) + ", \"problem\": " + JsonString(finding.problem) +
         ", \"cause\": " + JsonString(finding.cause) + ", \"packet\": " + JsonString(finding.packet) +
         ", \"remedy\": " + JsonString(finding.remedy) + '}';
}

std::string JsonOf(const scenario::Counters& rounds) {
  std::string counters;
  for (const auto& [name, value] : rounds) {
    counters += (counters.empty() ? "" : ", ") + calls::JsonString(name) + ": " + std::to_string(value);
  }
  return '{' + counters + '}';
}

}  // namespace console
