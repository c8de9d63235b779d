#include "scenario/Chain.h"

#include <variant>

#include "scenario/PacketStory.h"

namespace scenario {
namespace {

/// Keeps of a packet's story what is the same for all packets of its destination.
class ChainStory : public softcard::Story {
 public:
  explicit ChainStory(const Run& run) : run_(run), rows_(run) {}

  void Tell(const softcard::Step& step) override {
    if (const auto* label = std::get_if<softcard::LabelLayer>(&step)) {
      labels_ += ' ' + std::to_string(label->entry.label);
    } else if (const auto* sent = std::get_if<softcard::SentStep>(&step)) {
      Note("labels on the wire:" + (labels_.empty() ? " none" : labels_));
      Note("out through " + (is_lag_ ? "one of its members" : run_.card.tables().ports.Name(sent->port)));
    } else if (std::get_if<softcard::Row>(&step) || std::get_if<softcard::OddityStep>(&step) ||
               std::get_if<softcard::ToCpuStep>(&step) || std::get_if<softcard::DroppedStep>(&step)) {
      const auto* const row = std::get_if<softcard::Row>(&step);
      if (row != nullptr && row->table == &softcard::LagTable::kDescription) is_lag_ = true;
      rows_.Tell(step);
    }
  }

  Lines lines() {
    Lines lines;
    for (const TraceLine& line : rows_.lines()) {
      if (line.kind() == TraceLine::Kind::kPacket) lines.push_back(line.Text());
    }
    return lines;
  }

 private:
  void Note(const std::string& text) { rows_.lines().push_back({PacketNote{text}}); }

  const Run& run_;
  PacketStory rows_;
  std::string labels_;
  bool is_lag_ = false;
};

}  // namespace

Lines Chain(const Run& run, unsigned destination) {
  // The least that can be sent: what drops it drops every packet.
  static const softcard::Bytes kLeast = {0x45, 0, 0, 20, 0, 0, 0, 0, 255, 253, 0xba, 0xed, 0, 0, 0, 0, 0, 0, 0, 0};
  softcard::Bytes frame;
  ChainStory story(run);
  softcard::Send(run.card.tables(), run.card.common().destination_id_correlators, destination, softcard::Carried::kIp,
                 kLeast, &frame, &story);
  return story.lines();
}

}  // namespace scenario
