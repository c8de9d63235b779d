#include "console/Captures.h"

#include "console/CaptureFiles.h"

namespace console {
namespace {

constexpr std::uint64_t kOnTheCard = 500;  // nanoseconds

}  // namespace

Captures::Captures(const std::string& directory) : files_(std::make_unique<CaptureFiles>(directory)) {}

Captures::~Captures() = default;

void Captures::Took(const scenario::Step& step) {
  const auto* const trace = std::get_if<scenario::Trace>(&step.content);
  if (trace == nullptr || !trace->packet) return;
  const scenario::Forwarded& packet = *trace->packet;
  if (!packet.in_port.empty()) files_->Write(packet.in_port, packet.time, packet.in);
  // What the CPU gets of a packet that was routed elsewhere has no Ethernet header.
  const bool is_frame = packet.way.fate == softcard::Way::Fate::kSent || !packet.in_port.empty();
  if (!packet.out_port.empty() && is_frame) files_->Write(packet.out_port, packet.time + kOnTheCard, packet.out);
}

}  // namespace console
