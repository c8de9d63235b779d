#include "scenario/PacketWay.h"

#include <numeric>

#include "softcard/packets/Forwarding.h"

namespace scenario {
namespace {

using softcard::Bytes;

/// A header from 192.0.2.1 to 198.51.100.1, and zeros.
Bytes Ipv4Packet(const RoutedPacket& routed) {
  constexpr unsigned kUdp = 17;
  unsigned words[] = {
      0x4500 | routed.tos, routed.size, 0, 0, routed.ttl << 8 | kUdp, 0, 0xC000, 0x0201, 0xC633, 0x6401};
  unsigned sum = std::accumulate(std::begin(words), std::end(words), 0U);
  while (sum > 0xFFFF) sum = (sum & 0xFFFF) + (sum >> 16);
  words[5] = ~sum & 0xFFFF;
  Bytes packet;
  for (const unsigned word : words) {
    packet.push_back(static_cast<unsigned char>(word >> 8));
    packet.push_back(static_cast<unsigned char>(word));
  }
  packet.resize(routed.size);
  return packet;
}

/// Appends bytes in hexadecimal, and a blank before them.
void Append(std::string& text, const Bytes& bytes, std::size_t begin, std::size_t end) {
  constexpr char kDigits[] = "0123456789abcdef";
  text += ' ';
  for (std::size_t i = begin; i < end; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0xF];
  }
}

std::string FrameText(const Bytes& frame) {
  constexpr std::size_t kHeaderParts[] = {0, 6, 12, 16, 18};  // destination, source, tag, type
  std::string text = "frame";
  for (std::size_t i = 1; i < std::size(kHeaderParts); ++i) Append(text, frame, kHeaderParts[i - 1], kHeaderParts[i]);
  std::size_t at = kHeaderParts[4];
  bool label = (frame[16] << 8 | frame[17]) == softcard::kEtherTypeMpls;
  for (; label; at += 4) {
    Append(text, frame, at, at + 4);
    const bool bottom = (frame[at + 2] & 1) != 0;
    label = !bottom;
  }
  Append(text, frame, at, frame.size());
  return text;
}

}  // namespace

std::vector<std::string> PacketWay(const softcard::Card& card, const RoutedPacket& packet) {
  const auto& records = card.common().destination_id_correlators;
  const auto record = records.find(static_cast<int>(packet.id));
  if (record == records.end()) return {"dropped: destination " + std::to_string(packet.id) + " is not installed"};
  const int egress_id = record->second.egress_id;
  if (egress_id == 0) {
    return {"dropped: destination " + std::to_string(packet.id) + " is a VLAN, not a way to a next hop"};
  }
  softcard::Outcome outcome = softcard::Forward(card.tables(), egress_id, softcard::Packet::Ip(Ipv4Packet(packet)));
  if (outcome.fate == softcard::Outcome::Fate::kSent) outcome.trace.push_back(FrameText(outcome.frame));
  return std::move(outcome.trace);
}

}  // namespace scenario
