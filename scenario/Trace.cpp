#include "scenario/Trace.h"

#include "softcard/LimId.h"

namespace scenario {

TraceLine::Kind TraceLine::kind() const {
  if (std::holds_alternative<ClientNote>(what)) return Kind::kClient;
  if (const auto* packet = std::get_if<PacketNote>(&what)) return packet->is_frame ? Kind::kFrame : Kind::kPacket;
  const auto* const call = std::get_if<calls::Call>(&std::get<calls::Event>(what));
  if (call == nullptr) return Kind::kLog;
  return call->function->purpose == calls::Purpose::kCall ? Kind::kCall : Kind::kAccess;
}

std::string TraceLine::Text() const {
  if (const auto* client = std::get_if<ClientNote>(&what)) return client->text;
  if (const auto* packet = std::get_if<PacketNote>(&what)) return packet->text;
  return calls::Text(std::get<calls::Event>(what), softcard::kLimIdNames);
}

std::string Notification::Text() const {
  return "client " + client + " is told id=" + std::to_string(static_cast<unsigned>(destination)) +
         " port=" + std::to_string(port);
}

std::string RequestResult::Text() const {
  switch (kind) {
    case Kind::kNumber: return std::to_string(number);
    case Kind::kThrew: return "threw " + thrown;
    case Kind::kNone: break;
  }
  return "no result";
}

std::string RefusedCalls(const Trace& trace) {
  std::string text;
  for (const TraceLine& line : trace.lines) {
    const auto* const event = std::get_if<calls::Event>(&line.what);
    const auto* const call = event == nullptr ? nullptr : std::get_if<calls::Call>(event);
    if (call == nullptr || !calls::IsRefused(*event)) continue;
    if (!text.empty()) text += ", ";
    text += std::string(call->function->name) + " = " + calls::Text(call->function->result_kind(), call->result);
  }
  return text;
}

}  // namespace scenario
