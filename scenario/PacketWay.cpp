#include "scenario/PacketWay.h"

#include <algorithm>
#include <numeric>

#include "softcard/packets/StoryText.h"
#include "softcard/packets/Way.h"

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

/// The steps from the egress object on, and the frame in hexadecimal.
class StoryLines : public softcard::Story {
 public:
  explicit StoryLines(const softcard::Ports& ports) : ports_(ports) {}

  void Tell(const softcard::Step& step) override {
    using namespace softcard;
    if (const auto* label = std::get_if<LabelLayer>(&step)) {
      ++labels_;
      lines_.push_back("push label=" + std::to_string(label->entry.label) + " exp=" + std::to_string(label->entry.exp) +
                       " ttl=" + std::to_string(label->entry.ttl));
    } else if (const auto* dropped = std::get_if<DroppedStep>(&step)) {
      lines_.push_back("dropped: " + dropped->reason);
    } else if (const auto* sent = std::get_if<SentStep>(&step)) {
      lines_.push_back(StepText(step, ports_));
      lines_.push_back(FrameText(sent->frame));
    } else if (const auto* row = std::get_if<Row>(&step)) {
      const TableDescription* const told[] = {&EgressTable::kDescription, &IntfTable::kDescription,
                                              &InitiatorTable::kDescription};
      if (std::count(std::begin(told), std::end(told), row->table)) lines_.push_back(Text(*row));
    } else if (std::get_if<ToCpuStep>(&step)) {
      lines_.push_back(StepText(step, ports_));
    }
  }
  std::vector<std::string>& lines() { return lines_; }

 private:
  std::string FrameText(softcard::View view) const {
    const Bytes frame(view.data, view.data + view.size);
    const std::size_t parts[] = {0, 6, 12, 16, 18};  // destination, source, tag, type
    std::string text = "frame";
    for (std::size_t i = 1; i < std::size(parts); ++i) Append(text, frame, parts[i - 1], parts[i]);
    std::size_t at = 18;
    for (unsigned i = 0; i < labels_; ++i, at += 4) Append(text, frame, at, at + 4);
    Append(text, frame, at, frame.size());
    return text;
  }

  const softcard::Ports& ports_;
  std::vector<std::string> lines_;
  unsigned labels_ = 0;
};

}  // namespace

std::vector<std::string> PacketWay(const softcard::Card& card, const RoutedPacket& packet) {
  Bytes frame;
  StoryLines lines(card.tables().ports);
  softcard::Send(card.tables(), card.common().destination_id_correlators, packet.id, softcard::Carried::kIp,
                 Ipv4Packet(packet), &frame, &lines);
  return std::move(lines.lines());
}

}  // namespace scenario
