#include "scenario/PacketStory.h"

#include <string>
#include <variant>

#include "softcard/packets/StoryText.h"

namespace scenario {
namespace {

/// "frame 00005e000201 00005e000101 81000064 0800 4500...": a blank where each part ends.
std::string FrameText(softcard::View frame, const std::vector<std::size_t>& parts) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text = "frame ";
  auto part = parts.begin();
  for (std::size_t i = 0; i < frame.size; ++i) {
    if (part != parts.end() && *part == i) {
      text += ' ';
      ++part;
    }
    text += kDigits[frame.data[i] >> 4];
    text += kDigits[frame.data[i] & 0xF];
  }
  return text;
}

}  // namespace

void PacketStory::Tell(const softcard::Step& step) {
  lines_.push_back({PacketNote{softcard::StepText(step, run_.card.tables().ports)}});
  const std::size_t told = parts_.empty() ? 0 : parts_.back();
  const auto frame = [&](softcard::View bytes) { lines_.push_back({PacketNote{FrameText(bytes, parts_), true}}); };
  if (const auto* ethernet = std::get_if<softcard::EthernetLayer>(&step)) {
    parts_.push_back(told + softcard::kMacBytes);
    parts_.push_back(told + 2 * softcard::kMacBytes);
    // A tag is shown as one: its type and the VLAN.
    if (ethernet->type != softcard::kEtherTypeVlan) parts_.push_back(told + softcard::kEthernetBytes);
  } else if (std::get_if<softcard::TagLayer>(&step)) {
    parts_.push_back(told + softcard::kTagBytes);
    parts_.push_back(told + softcard::kTagBytes + 2);
  } else if (std::get_if<softcard::LabelLayer>(&step)) {
    parts_.push_back(told + softcard::kLabelBytes);
  } else if (const auto* row = std::get_if<softcard::Row>(&step)) {
    TellOf(*row);
  } else if (const auto* sent = std::get_if<softcard::SentStep>(&step)) {
    frame(sent->frame);
  } else if (const auto* to_cpu = std::get_if<softcard::ToCpuStep>(&step)) {
    frame(to_cpu->frame);
  }
}

/// The card cannot know what was asked of the module.
void PacketStory::TellOf(const softcard::Row& row) {
  if (row.table != &softcard::kDestinationDescription) return;
  const auto unused = run_.unused_labels.find(static_cast<unsigned>(std::get<std::int64_t>(row.key)));
  if (unused == run_.unused_labels.end()) return;
  const softcard::OddityStep oddity{unused->second};
  lines_.push_back({PacketNote{softcard::StepText(oddity, run_.card.tables().ports)}});
}

}  // namespace scenario
