#include "softcard/packets/StoryText.h"

#include "calls/Value.h"

namespace softcard {
namespace {

/// " dst=00:00:5e:00:01:01" and its like.
template <typename Value>
std::string Field(const char* name, const Value& value, calls::Kind kind = calls::Kind::kNumber) {
  return std::string(" ") + name + '=' + calls::Text(kind, calls::ToValue(value));
}

struct Printer {
  const Ports& ports;

  std::string operator()(const ArrivalStep& step) const {
    return "in through " + ports.Name(step.port) + ", " + std::to_string(step.bytes) + " bytes";
  }
  std::string operator()(const Row& row) const { return Text(row); }
  std::string operator()(const OddityStep& step) const { return "at odds: " + step.text; }
  std::string operator()(const ExpMapStep& step) const {
    return "exp-map " + std::to_string(step.map) + ":" + Field("priority", step.priority) + Field("exp", step.exp);
  }
  std::string operator()(const ExplicitNullStep& step) const {
    return "label " + std::to_string(step.label) + ": explicit null, popped; on in VRF " + std::to_string(step.vrf);
  }

  std::string operator()(const EthernetLayer& layer) const {
    return "| ethernet" + Field("dst", layer.destination, calls::Kind::kMac) +
           Field("src", layer.source, calls::Kind::kMac) + Field("type", layer.type, calls::Kind::kHex);
  }
  std::string operator()(const TagLayer& layer) const {
    return "| 802.1q" + Field("vlan", layer.vlan_id) + Field("type", layer.type, calls::Kind::kHex);
  }
  std::string operator()(const LabelLayer& layer) const {
    const StackEntry& entry = layer.entry;
    return "| mpls" + Field("label", entry.label) + Field("exp", entry.exp) + Field("s", entry.bottom ? 1 : 0) +
           Field("ttl", entry.ttl);
  }
  std::string operator()(const IpLayer& layer) const {
    const bool is_v4 = layer.source.version == IpAddress::Version::k4;
    return std::string(is_v4 ? "| ipv4" : "| ipv6") + Field("src", Text(layer.source), calls::Kind::kText) +
           Field("dst", Text(layer.destination), calls::Kind::kText) + Field("ttl", layer.ttl) +
           Field("tos", layer.tos, calls::Kind::kHex) + Field("size", std::to_string(layer.size), calls::Kind::kText);
  }
  std::string operator()(const PayloadLayer& layer) const {
    return "| payload" + Field("size", std::to_string(layer.bytes), calls::Kind::kText);
  }

  std::string operator()(const SentStep& step) const {
    return "sent through " + ports.Name(step.port) + ", " + std::to_string(step.frame.size) + " bytes";
  }
  std::string operator()(const ToCpuStep& step) const { return "to the CPU: " + step.reason; }
  std::string operator()(const DroppedStep& step) const {
    return std::string("dropped: ") + DropName(step.drop) + ": " + step.reason;
  }
};

}  // namespace

std::string StepText(const Step& step, const Ports& ports) { return std::visit(Printer{ports}, step); }

}  // namespace softcard
