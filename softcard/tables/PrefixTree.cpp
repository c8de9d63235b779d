#include "softcard/tables/PrefixTree.h"

#include <array>

namespace softcard {
namespace {

/// The bits of an address that are not behind us yet, at the top of the first word.
class Rest {
 public:
  Rest(IpAddress::Version version, const unsigned char* address)
      : high_(version == IpAddress::Version::k4 ? Word32(address) << 32 : Word64(address)),
        low_(version == IpAddress::Version::k4 ? 0 : Word64(address + 8)) {}
  explicit Rest(const IpAddress& address) : Rest(address.version, address.bytes.data()) {}

  unsigned step() const { return static_cast<unsigned>(high_ >> 58); }
  void Advance() {
    high_ = high_ << 6 | low_ >> 58;
    low_ <<= 6;
  }

 private:
  static uint64_t Word32(const unsigned char* at) {
    return uint64_t{at[0]} << 24 | uint64_t{at[1]} << 16 | uint64_t{at[2]} << 8 | at[3];
  }
  static uint64_t Word64(const unsigned char* at) { return Word32(at) << 32 | Word32(at + 4); }

  uint64_t high_;
  uint64_t low_;
};

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

constexpr unsigned kNearLevels = 3;

unsigned HighestBit(uint64_t bits) { return 63U - static_cast<unsigned>(__builtin_clzll(bits)); }

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
  Rest rest(version, address);
  const Node* found = nullptr;
  unsigned found_step = 0, found_depth = 0;
  const Node* node = &nodes_[kRoot];
  for (unsigned depth = 0;; ++depth) {
    // Without a jump that depends on it: what matches is not to be foreseen.
    const unsigned step = rest.step();
    const bool matches = ((node->prefixes[0] & kCovering[step / 2]) | (node->prefixes[1] >> step & 1)) != 0;
    found = matches ? node : found;
    found_step = matches ? step : found_step;
    found_depth = matches ? depth : found_depth;
    if (!node->HasChild(step)) break;
    node = &nodes_[node->first_child + node->ChildrenBelow(step)];
    rest.Advance();
  }
  if (!found) return {0, nullptr};
  const bool whole = found->HasPrefix(kSteps + found_step);
  const unsigned bit = whole ? kSteps + found_step : HighestBit(found->prefixes[0] & kCovering[found_step / 2]);
  return {kStep * found_depth + HighestBit(bit), &ValueOf(*found, bit)};
}

void PrefixTree::Prefetch(IpAddress::Version version, const unsigned char* address) const {
  Rest rest(version, address);
  const Node* node = &nodes_[kRoot];
  for (unsigned depth = 0; depth < kNearLevels && node->HasChild(rest.step()); ++depth, rest.Advance()) {
    node = &nodes_[node->first_child + node->ChildrenBelow(rest.step())];
  }
  __builtin_prefetch(node);
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
  if (node.HasPrefix(bit)) {
    (node.HasOnePrefix() ? node.first_value : values_[node.first_value + node.PrefixesBelow(bit)]) = value;
    return false;
  }
  const unsigned count = node.PrefixCount();
  if (count == 0) {
    node.first_value = value;
  } else {
    if (count == 1) node.first_value = values_.Insert(0, 0, 0, node.first_value);
    node.first_value = values_.Insert(node.first_value, count, node.PrefixesBelow(bit), value);
  }
  node.FlipPrefix(bit);
  return true;
}

const uint32_t* PrefixTree::Find(const Prefix& prefix) const {
  Rest rest(prefix.address);
  const Node* node = &nodes_[kRoot];
  for (unsigned depth = 0; depth < DepthOf(prefix.length); ++depth) {
    if (!node->HasChild(rest.step())) return nullptr;
    node = &nodes_[node->first_child + node->ChildrenBelow(rest.step())];
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
  std::array<Visited, 128 / kStep + 1> path{};  // from the root to the node that holds the prefix
  Rest rest(prefix.address);
  const unsigned deepest = DepthOf(prefix.length);
  path[0] = {kRoot, rest.step()};
  for (unsigned depth = 0; depth < deepest; ++depth) {
    const Node& node = nodes_[path[depth].index];
    const uint32_t child = node.first_child + node.ChildrenBelow(rest.step());
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
    if (node.HasChild(step)) Visit(node.first_child + node.ChildrenBelow(step), depth + 1, address, visit);
  }
  PutStep(address, depth, 0);
}

}  // namespace softcard
