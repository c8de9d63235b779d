#include <ostream>

#include "calls/Json.h"
#include "console/Json.h"
#include "console/SweepPrinters.h"

namespace console {
namespace {

using calls::JsonString;
using diagnosis::SweepOutcome;

std::string CallJson(const diagnosis::RefusedCall& call) {
  const calls::Kind kind = call.function->result_kind();
  const calls::Value result(std::int64_t{call.result});
  std::string json = "{\"number\": " + std::to_string(call.number) + ", \"call\": " + JsonString(call.function->name) +
                     ", \"result\": " + calls::Json(kind, result);
  if (kind == calls::Kind::kStatus && call.result < 0) {
    json += ", \"status\": " + JsonString(calls::StatusWords(call.result));
  }
  return json + '}';
}

/// ", "name": 0", or the text of what is no number; nothing when there is none.
std::string ResultJson(const char* name, const std::string& result) {
  if (result.empty()) return "";
  const bool number = result.find_first_not_of("-0123456789") == std::string::npos;
  return std::string(", \"") + name + "\": " + (number ? result : JsonString(result));
}

std::string OutcomeJson(const SweepOutcome& outcome) {
  return "{\"refused\": " + JsonList(outcome.refused, CallJson) + ResultJson("result", outcome.result) +
         ResultJson("again", outcome.again) + ResultJson("destroy", outcome.destroy) +
         ResultJson("crash", outcome.crash) + ", \"log\": " +
         JsonList(outcome.log, [](const calls::LogLine& line) { return calls::Json(calls::Event(line)); }) +
         ", \"findings\": " + JsonList(outcome.findings, [](const auto& finding) { return JsonOf(finding); }) + '}';
}

std::string BeginSweep(const char* what, const std::string& file) {
  return std::string("{\"version\": 1, \"sweep\": \"") + what + "\", \"file\": " + JsonString(file);
}

}  // namespace

void SweepJson::Swept(const diagnosis::SweptRequest& request) {
  out_ << BeginSweep("request", request.file) << ", \"line\": " << request.line
       << ", \"rounds\": " << JsonOf(request.rounds) << ", \"text\": " << JsonString(request.text)
       << ", \"unhindered\": " << OutcomeJson(request.unhindered)
       << ", \"refusals\": " << JsonList(request.refusals, OutcomeJson) << "}\n";
}

void SweepJson::Ended(const std::string& file, const SweepTally& tally) {
  out_ << BeginSweep("end", file) << ", \"requests\": " << tally.requests << ", \"refusals\": " << tally.refusals
       << ", \"leave\": " << tally.leave << ", \"fail_again\": " << tally.fail_again
       << ", \"cannot_be_destroyed\": " << tally.cannot_be_destroyed << ", \"crash\": " << tally.crash << "}\n";
}

}  // namespace console
