#include "scenario/PacketWay.h"
#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

RoutedPacket ReadRoutedPacket(const Fields& fields) {
  constexpr unsigned kHeader = 20;
  const auto number = [](const Token& word, const char* what, unsigned low, unsigned high) {
    return static_cast<unsigned>(ToNumber(word, what, low, high));
  };
  RoutedPacket packet;
  packet.id = ToUnsigned(fields.words()[0], "id");
  if (const Token* ttl = fields.Find("ttl")) packet.ttl = number(*ttl, "TTL", 0, 255);
  if (const Token* tos = fields.Find("tos")) packet.tos = number(*tos, "type of service", 0, 255);
  if (const Token* size = fields.Find("size")) packet.size = number(*size, "size of an IPv4 packet", kHeader, 65535);
  return packet;
}

}  // namespace

void AddPackets(Language& language) {
  language.Add("send", "ID [ttl=N] [tos=N] [size=BYTES]",
               "Sends an IPv4 packet that is routed to a destination: its way and its frame", Kind::kPacket,
               [](const Fields& fields, const Surroundings&) {
                 return [packet = ReadRoutedPacket(fields)](const Run& run) {
                   Trace trace;
                   for (std::string& step : PacketWay(run.card, packet)) {
                     trace.lines.push_back({PacketNote{std::move(step)}});
                   }
                   return trace;
                 };
               });
}

}  // namespace scenario
