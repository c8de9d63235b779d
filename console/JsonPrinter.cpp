#include "console/JsonPrinter.h"

#include <ostream>
#include <string>
#include <variant>

#include "calls/Json.h"
#include "console/Json.h"
#include "softcard/LimId.h"

namespace console {
namespace {

using calls::JsonString;
using scenario::Step;
using scenario::Trace;
using scenario::TraceLine;

/// Each object begins so.
std::string Begin(const std::string& what, const std::string& file) {
  return "{\"version\": 1, \"step\": " + JsonString(what) + ", \"file\": " + JsonString(file);
}

std::string Begin(const std::string& what, const Step& step) {
  return Begin(what, step.file) + ", \"line\": " + std::to_string(step.line) + ", \"rounds\": " + JsonOf(step.rounds) +
         ", \"text\": " + JsonString(step.Text());
}

std::string LineJson(const TraceLine& line) {
  if (const auto* client = std::get_if<scenario::ClientNote>(&line.what)) {
    return "{\"client\": " + JsonString(client->text) + '}';
  }
  if (const auto* packet = std::get_if<scenario::PacketNote>(&line.what)) return JsonString(packet->text);
  return calls::Json(std::get<calls::Event>(line.what), softcard::kLimIdNames);
}

std::string NotificationJson(const scenario::Notification& told) {
  return "{\"client\": " + JsonString(told.client) +
         ", \"id\": " + std::to_string(static_cast<unsigned>(told.destination)) +
         ", \"port\": " + std::to_string(told.port) + '}';
}

std::string FrameJson(const softcard::Bytes& frame) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string digits;
  for (const unsigned char byte : frame) (digits += kDigits[byte >> 4]) += kDigits[byte & 0xF];
  return JsonString(digits);
}

std::string PacketJson(const scenario::Forwarded& packet) {
  using Fate = softcard::Way::Fate;
  const softcard::Way& way = packet.way;
  std::string json = ", \"time\": " + std::to_string(packet.time);
  if (!packet.in_port.empty()) json += ", \"in\": " + JsonString(packet.in_port);
  json += ", \"bytes\": " + FrameJson(packet.in);
  if (way.destination) json += ", \"destination\": " + std::to_string(*way.destination);
  if (way.fate == Fate::kDropped) return json + ", \"dropped\": " + JsonString(softcard::DropName(way.drop));
  return json + ", \"out\": " + JsonString(packet.out_port) + ", \"frame\": " + FrameJson(packet.out);
}

std::string Json(const Step& step, const Trace& trace) {
  using Result = scenario::RequestResult::Kind;
  if (trace.packet) {
    return Begin("packet", step) + ", \"way\": " + JsonList(trace.lines, LineJson) + PacketJson(*trace.packet);
  }
  const std::string result = trace.result.kind == Result::kNumber
                                 ? ", \"result\": " + std::to_string(trace.result.number)
                             : trace.result.kind == Result::kThrew ? ", \"threw\": " + JsonString(trace.result.thrown)
                                                                   : "";
  return Begin(step.line == 0 ? "start" : "request", step) + ", \"trace\": " + JsonList(trace.lines, LineJson) +
         ", \"notifications\": " + JsonList(trace.notifications, NotificationJson) + result;
}

std::string Json(const Step& step, const scenario::Shown& shown) {
  if (shown.tables.empty()) return "";
  return Begin("tables", step) + ", \"tables\": " + JsonList(shown.tables, [](const scenario::ShownTable& table) {
           return "{\"name\": " + JsonString(table.name) +
                  ", \"rows\": " + JsonList(table.rows, [](const softcard::Row& row) { return softcard::Json(row); }) +
                  '}';
         });
}

std::string Json(const Step& step, const scenario::ShownChain& chain) {
  return Begin("chain", step) + ", \"chain\": " + JsonList(chain.lines, JsonString);
}

std::string Json(const Step& step, const scenario::Checked& checked) {
  if (!checked.failure) return "";
  std::string json = Begin("failure", step) + ", \"why\": " + JsonList(*checked.failure, JsonString);
  if (checked.request_line > 0) {
    json += ", \"request\": {\"line\": " + std::to_string(checked.request_line) +
            ", \"text\": " + JsonString(checked.request) + '}';
  }
  return json;
}

/// Plans of faults and headings are for people.
template <typename Content>
std::string Json(const Step&, const Content&) {
  return "";
}

}  // namespace

void JsonPrinter::Took(const Step& step) {
  const std::string json = std::visit([&](const auto& content) { return Json(step, content); }, step.content);
  if (!json.empty()) out_ << json << "}\n";
}

void JsonPrinter::Ended(const std::string& file, const scenario::Tally& tally) {
  out_ << Begin("end", file) << ", \"requests\": " << tally.requests << ", \"expectations\": " << tally.expectations
       << ", \"failed\": " << tally.failed << "}\n";
}

}  // namespace console
