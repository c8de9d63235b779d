#include <string>
#include <utility>

#include "scenario/PacketFields.h"
#include "scenario/PacketStory.h"
#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

constexpr std::uint64_t kBetweenPackets = 1000;  // nanoseconds

Trace Told(Run& run, PacketStory& story, Forwarded packet) {
  run.clock += kBetweenPackets;
  packet.time = run.clock;
  if (packet.way.fate != softcard::Way::Fate::kDropped) packet.out_port = run.card.tables().ports.Name(packet.way.port);
  Trace trace;
  trace.lines = std::move(story.lines());
  trace.packet = std::move(packet);
  return trace;
}

/// A frame from the wire.
Trace Inject(Run& run, limid_t limid, const softcard::Bytes& frame) {
  softcard::Card& card = run.card;
  const int port = ToPort(limid, card);
  PacketStory story(run);
  Forwarded packet;
  packet.in = frame;
  packet.way =
      softcard::Inject(card.tables(), card.common().destination_id_correlators, port, frame, &packet.out, &story);
  if (card.tables().ports.IsEthernet(port)) packet.in_port = card.tables().ports.Name(port);
  card.counters().Injected(port, packet.way, frame.size(), packet.out.size());
  return Told(run, story, std::move(packet));
}

/// A packet that has been routed to a destination.
Trace Send(Run& run, unsigned id, const CarriedPacket& sent) {
  softcard::Card& card = run.card;
  PacketStory story(run);
  Forwarded packet;
  packet.in = sent.bytes;
  packet.way = softcard::Send(card.tables(), card.common().destination_id_correlators, id, sent.carried, sent.bytes,
                              &packet.out, &story);
  card.counters().Sent(packet.way, sent.bytes.size(), packet.out.size());
  return Told(run, story, std::move(packet));
}

}  // namespace

void AddPackets(Language& language) {
  language.Add("inject", std::string("PORT [hex=HEX] [dmac=MAC] [smac=MAC] [vlan=N] ") + kPacketFields,
               "A frame comes in on a port: its whole way and what leaves", Kind::kPacket,
               [](const Fields& fields, const Surroundings& around) {
                 return [port = ToLimId(fields.words()[0], around.card), frame = ToFrame(fields)](Run& run) {
                   return Inject(run, port, frame);
                 };
               });
  language.Add("send", std::string("ID ") + kPacketFields,
               "Sends a packet that is routed to a destination: its way and what leaves", Kind::kPacket,
               [](const Fields& fields, const Surroundings&) {
                 return [id = ToUnsigned(fields.words()[0], "id"), packet = ToPacket(fields)](Run& run) {
                   return Send(run, id, packet);
                 };
               });
}

}  // namespace scenario
