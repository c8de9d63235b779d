#include "router/Told.h"

namespace router {
namespace {

/// FNV-1a, in steps of what is added.
class Mix {
 public:
  void Add(std::uint64_t value) { hash_ = (hash_ ^ value) * 1099511628211U; }
  void Add(const softcard::IpAddress& address) {
    for (const unsigned char byte : address.bytes) Add(byte);
  }
  void Add(const Way& way) {
    Add(static_cast<std::uint64_t>(way.kind) << 32 | way.ifindex);
    if (way.gateway) Add(*way.gateway);
    for (const unsigned label : way.labels) Add(label);
  }
  std::size_t value() const { return static_cast<std::size_t>(hash_ ^ hash_ >> 32); }

 private:
  std::uint64_t hash_ = 14695981039346656037U;
};

}  // namespace

bool operator==(const Way& one, const Way& other) {
  return one.kind == other.kind && one.ifindex == other.ifindex && one.gateway == other.gateway &&
         one.labels == other.labels;
}

std::size_t Hash::operator()(const Way& way) const {
  Mix mix;
  mix.Add(way);
  return mix.value();
}

std::size_t Hash::operator()(const Ways& ways) const {
  Mix mix;
  for (const Way& way : ways) mix.Add(way);
  return mix.value();
}

const char* Name(Way::Kind kind) {
  switch (kind) {
    case Way::Kind::kDeliver: return "deliver";
    case Way::Kind::kPush: return "push";
    case Way::Kind::kSwap: return "swap";
    case Way::Kind::kPopVrf: return "pop";
    case Way::Kind::kProcessor: return "processor";
    case Way::Kind::kDrop: return "drop";
    case Way::Kind::kUnknown: break;
  }
  return "unknown";
}

std::string Text(const Labels& labels) {
  std::string text;
  for (const unsigned label : labels) text += (text.empty() ? "" : "/") + std::to_string(label);
  return text;
}

std::string Text(const Way& way) {
  std::string text = Name(way.kind);
  if (!way.labels.empty()) text += ' ' + Text(way.labels);
  if (way.gateway) text += " to " + Text(*way.gateway);
  if (way.ifindex != 0) text += " on interface " + std::to_string(way.ifindex);
  return text;
}

std::string Text(const Ways& ways) {
  std::string text;
  for (const Way& way : ways) text += (text.empty() ? "" : ", ") + Text(way);
  return text;
}

}  // namespace router
