#include "softcard/tables/PrefixTree.h"

#include <array>

namespace softcard {

/// The bits of an address that are not behind us yet, at the top of the first word.
class PrefixTree::Rest {
 public:
  Rest(IpAddress::Version version, const unsigned char* address)
      : high_(version == IpAddress::Version::k4 ? Word32(address) << 32 : Word64(address)),
        low_(version == IpAddress::Version::k4 ? 0 : Word64(address + 8)) {}
  explicit Rest(const IpAddress& address) : Rest(address.version, address.bytes.data()) {}

  unsigned step() const { return static_cast<unsigned>(high_ >> 58); }
  unsigned two_steps() const { return static_cast<unsigned>(high_ >> 52); }
  Rest Behind(unsigned steps) const {
    Rest rest = *this;
    rest.high_ = high_ << 6 * steps | low_ >> (64 - 6 * steps);
    rest.low_ = low_ << 6 * steps;
    return rest;
  }
  void Advance() { *this = Behind(1); }

 private:
  static uint64_t Word32(const unsigned char* at) {
    return uint64_t{at[0]} << 24 | uint64_t{at[1]} << 16 | uint64_t{at[2]} << 8 | at[3];
  }
  static uint64_t Word64(const unsigned char* at) { return Word32(at) << 32 | Word32(at + 4); }

  uint64_t high_;
  uint64_t low_;
};

namespace {

/// How many nodes lie above the one that holds a prefix.
unsigned DepthOf(unsigned length) { return length == 0 ? 0 : (length - 1) / 6; }

/// The prefix's bit in its node, `step` being the address's there.
unsigned BitOf(unsigned length, unsigned step) {
  const unsigned rest = length - 6 * DepthOf(length);
  return 1U << rest | step >> (6 - rest);
}

/// By the first five bits of a step, the bits of the prefixes shorter than a step that it begins with.
constexpr std::array<uint64_t, 32> kCovering = [] {
  std::array<uint64_t, 32> covering{};
  for (unsigned five = 0; five < 32; ++five) {
    for (unsigned length = 0; length <= 5; ++length) {
      covering[five] |= uint64_t{1} << (1U << length | five >> (5 - length));
    }
  }
  return covering;
}();

unsigned HighestBit(uint64_t bits) { return 63U - static_cast<unsigned>(__builtin_clzll(bits)); }

/// Of the prefixes in a node the longest that a step begins with, or is; 0, which is no prefix's bit, for none.
unsigned LongestBit(const uint64_t* prefixes, unsigned step) {
  const unsigned covering = HighestBit((prefixes[0] & kCovering[step / 2]) | 1);
  return (prefixes[1] >> step & 1) != 0 ? 64 + step : covering;
}

/// Writes a step of an address; of the last one only the bits that there are.
void PutStep(IpAddress* address, unsigned depth, unsigned step) {
  for (unsigned i = 0; i < 6 && 6 * depth + i < 128; ++i) {
    unsigned char& byte = address->bytes[(6 * depth + i) / 8];
    const unsigned mask = 0x80U >> (6 * depth + i) % 8;
    byte = static_cast<unsigned char>(step >> (5 - i) & 1 ? byte | mask : byte & ~mask);
  }
}

}  // namespace

PrefixTree::Match PrefixTree::Longest(IpAddress::Version version, const unsigned char* address) const {
  const Rest rest(version, address);
  const Match match = jumps_.empty() ? Match{0, nullptr} : LongestBelow(jumps_[rest.two_steps()], 2, rest.Behind(2));
  return match.value ? match : LongestBelow(nodes_[kRoot], 0, rest);
}

PrefixTree::Match PrefixTree::LongestBelow(const Node& top, unsigned top_depth, Rest rest) const {
  struct Visited {
    const Node* node;
    unsigned step;
  };
  Visited path[kMostNodes];
  Visited* visited = path;
  for (const Node* node = &top;; ++visited, rest.Advance()) {
    const unsigned step = rest.step();
    *visited = {node, step};
    if (!node->HasChild(step)) break;
    node = &nodes_[node->ChildAt(step)];
  }
  // From the deepest one back: it is mostly the one that matches.
  for (;; --visited) {
    const unsigned bit = LongestBit(visited->node->prefixes, visited->step);
    if (bit != 0) {
      const unsigned depth = top_depth + static_cast<unsigned>(visited - path);
      return {kStep * depth + HighestBit(bit), &ValueOf(*visited->node, bit)};
    }
    if (visited == path) return {0, nullptr};
  }
}

void PrefixTree::Prefetch(IpAddress::Version version, const unsigned char* address) const {
  if (jumps_.empty()) return;
  const Rest rest(version, address);
  const Node& node = jumps_[rest.two_steps()];
  const unsigned step = rest.Behind(2).step();
  if (node.HasChild(step)) __builtin_prefetch(&nodes_[node.ChildAt(step)]);
}

void PrefixTree::MakeJumps() {
  jumps_.resize(kJumps);
  for (unsigned two_steps = 0; two_steps < jumps_.size(); ++two_steps) WriteJump(two_steps);
}

void PrefixTree::WriteJump(unsigned two_steps) {
  const auto child_of = [&](const Node& node, unsigned step) {
    return node.HasChild(step) ? nodes_[node.ChildAt(step)] : Node();
  };
  jumps_[two_steps] = child_of(child_of(nodes_[kRoot], two_steps / kSteps), two_steps % kSteps);
}

bool PrefixTree::Set(const Prefix& prefix, uint32_t value) {
  Rest rest(prefix.address);
  uint32_t index = kRoot;  // no pointer: nodes move as others come
  for (unsigned depth = 0; depth < DepthOf(prefix.length); ++depth) {
    const unsigned step = rest.step();
    const unsigned at = nodes_[index].ChildrenBelow(step);
    if (!nodes_[index].HasChild(step)) {
      const uint32_t first = nodes_.Insert(nodes_[index].first_child, Count(nodes_[index].children), at, Node());
      nodes_[index].first_child = first;
      nodes_[index].children |= uint64_t{1} << step;
    }
    index = nodes_[index].first_child + at;
    rest.Advance();
  }
  Node& node = nodes_[index];
  const unsigned bit = BitOf(prefix.length, rest.step());
  const bool is_new = !node.HasPrefix(bit);
  if (is_new) {
    const unsigned count = node.PrefixCount();
    if (count == 1) node.first_value = values_.Insert(0, 0, 0, node.first_value);
    if (count >= 1) node.first_value = values_.Insert(node.first_value, count, node.PrefixesBelow(bit), value);
    node.FlipPrefix(bit);
  }
  (node.HasOnePrefix() ? node.first_value : values_[node.first_value + node.PrefixesBelow(bit)]) = value;
  if (!jumps_.empty()) {
    WriteJump(Rest(prefix.address).two_steps());
  } else if (nodes_.size() >= kJumps) {
    MakeJumps();
  }
  return is_new;
}

const uint32_t* PrefixTree::Find(const Prefix& prefix) const {
  Rest rest(prefix.address);
  const Node* node = &nodes_[kRoot];
  for (unsigned depth = 0; depth < DepthOf(prefix.length); ++depth) {
    if (!node->HasChild(rest.step())) return nullptr;
    node = &nodes_[node->ChildAt(rest.step())];
    rest.Advance();
  }
  const unsigned bit = BitOf(prefix.length, rest.step());
  return node->HasPrefix(bit) ? &ValueOf(*node, bit) : nullptr;
}

bool PrefixTree::Delete(const Prefix& prefix) {
  if (!Has(prefix)) return false;
  struct Visited {
    uint32_t index;
    unsigned step;
  };
  std::array<Visited, kMostNodes> path{};  // from the root to the node that holds the prefix
  Rest rest(prefix.address);
  const unsigned deepest = DepthOf(prefix.length);
  path[0] = {kRoot, rest.step()};
  for (unsigned depth = 0; depth < deepest; ++depth) {
    const Node& node = nodes_[path[depth].index];
    const uint32_t child = node.ChildAt(rest.step());
    rest.Advance();
    path[depth + 1] = {child, rest.step()};
  }

  Node& holder = nodes_[path[deepest].index];
  const unsigned bit = BitOf(prefix.length, rest.step());
  const unsigned count = holder.PrefixCount();
  if (count > 1) holder.first_value = values_.Erase(holder.first_value, count, holder.PrefixesBelow(bit));
  if (count == 2) {
    const uint32_t last = values_[holder.first_value];
    values_.Erase(holder.first_value, 1, 0);
    holder.first_value = last;
  }
  holder.FlipPrefix(bit);

  for (unsigned depth = deepest; depth > 0 && nodes_[path[depth].index].IsEmpty(); --depth) {
    const Visited& above = path[depth - 1];
    const Node parent = nodes_[above.index];
    const uint32_t first = nodes_.Erase(parent.first_child, Count(parent.children), parent.ChildrenBelow(above.step));
    nodes_[above.index].first_child = first;
    nodes_[above.index].children ^= uint64_t{1} << above.step;
  }
  if (!jumps_.empty()) WriteJump(Rest(prefix.address).two_steps());
  return true;
}

void PrefixTree::ForEach(IpAddress::Version version, const Visitor& visit) const {
  IpAddress address;
  address.version = version;
  const Node& root = nodes_[kRoot];
  if (root.HasPrefix(1)) visit({address, 0}, ValueOf(root, 1));
  Visit(kRoot, 0, &address, visit);
}

void PrefixTree::Visit(uint32_t index, unsigned depth, IpAddress* address, const Visitor& visit) const {
  const Node& node = nodes_[index];
  for (unsigned step = 0; step < kSteps; ++step) {
    PutStep(address, depth, step);
    for (unsigned length = 1; length <= kStep; ++length) {
      const bool begins_here = step % (kSteps >> length) == 0;
      const unsigned bit = 1U << length | step >> (kStep - length);
      if (begins_here && node.HasPrefix(bit)) {
        visit({*address, kStep * depth + length}, ValueOf(node, bit));
      }
    }
    if (node.HasChild(step)) Visit(node.ChildAt(step), depth + 1, address, visit);
  }
  PutStep(address, depth, 0);
}

}  // namespace softcard
