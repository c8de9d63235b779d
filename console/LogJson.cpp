#include <ostream>

#include "calls/Json.h"
#include "console/Json.h"
#include "console/LogPrinters.h"

namespace console {
namespace {

using calls::JsonString;
using diagnosis::LogCause;

std::string LeftJson(const diagnosis::Finding& finding) {
  return "{\"object\": " + JsonString(finding.object) + ", \"problem\": " + JsonString(finding.problem) +
         ", \"packet\": " + JsonString(finding.packet) + ", \"remedy\": " + JsonString(finding.remedy) + '}';
}

std::string CauseJson(const LogCause& cause) {
  std::string json = "{\"request\": " + JsonString(cause.request);
  if (!cause.call.empty()) {
    json += ", \"refused\": {\"call\": " + JsonString(cause.call) + ", \"nth\": " + std::to_string(cause.nth) +
            ", \"status\": " + JsonString(cause.status) + '}';
  }
  return json + ", \"result\": " + JsonString(cause.result) + ", \"harmless\": " + (cause.harmless ? "true" : "false") +
         ", \"left\": " + JsonList(cause.left, LeftJson) + ", \"ways\": " + JsonList(cause.titles, JsonString) + '}';
}

std::string BeginDiagnosis(const char* what, const std::string& file) {
  return std::string("{\"version\": 1, \"diagnosis\": \"") + what + "\", \"file\": " + JsonString(file);
}

}  // namespace

void LogJson::Found(const diagnosis::LogRequest& request) {
  if (!all_ && request.MayHaveSucceeded()) return;
  const auto truth = [](bool value) { return value ? "true" : "false"; };
  out_ << BeginDiagnosis("request", file_) << ", \"first_line\": " << request.first_line
       << ", \"last_line\": " << request.last_line;
  if (!request.id.empty()) out_ << ", \"id\": " << request.id;
  out_ << ", \"begins_before\": " << truth(request.begins_before) << ", \"may_go_on\": " << truth(request.may_go_on)
       << ", \"causes\": " << JsonList(request.causes, CauseJson) << "}\n";
}

void LogJson::Ended(const LogTally& tally) {
  out_ << BeginDiagnosis("end", file_) << ", \"lines\": " << tally.lines << ", \"module_lines\": " << tally.module_lines
       << ", \"stray\": " << tally.stray << ", \"too_long\": " << tally.too_long << ", \"requests\": " << tally.requests
       << ", \"failed\": " << tally.failed << ", \"silent\": " << tally.silent
       << ", \"unexplained\": " << tally.unexplained << "}\n";
}

}  // namespace console
