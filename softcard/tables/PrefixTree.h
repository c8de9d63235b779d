#ifndef SOFTCARD_TABLES_PREFIX_TREE_H
#define SOFTCARD_TABLES_PREFIX_TREE_H

#include <cstdint>
#include <functional>
#include <vector>

#include "softcard/tables/BlockPool.h"
#include "softcard/tables/Prefix.h"

namespace softcard {

/// Numbers under prefixes of addresses of one version, found by the longest that matches.
///
/// A node stands for six bits of the address, its "step". Bit 2^l + p of its `prefixes` says that the prefix which goes
/// on for l bits, of value p, is there; bit n of its `children`, that there are longer ones behind the step n. Children
/// and numbers lie side by side in their order, so that counting the bits below gives the place. In a large tree, where
/// nearly every address has them, the first two steps are one look in a table, of copies of the nodes there. A copy of
/// the tree has everything of its own.
class PrefixTree {
 public:
  struct Match {
    unsigned length;        ///< of the prefix, in bits
    const uint32_t* value;  ///< null: no prefix matches
  };

  PrefixTree() { nodes_.Insert(0, 0, 0, Node()); }  // the root, at kRoot

  /// Whether the prefix is new here: one that is there gets the new value.
  bool Set(const Prefix& prefix, uint32_t value);
  /// Whether it was there.
  bool Delete(const Prefix& prefix);
  /// The value of this prefix itself; null when it is not there.
  const uint32_t* Find(const Prefix& prefix) const;
  bool Has(const Prefix& prefix) const { return Find(prefix) != nullptr; }
  bool empty() const { return nodes_[kRoot].IsEmpty(); }

  /// The longest prefix of an address of this version, in network byte order.
  Match Longest(IpAddress::Version version, const unsigned char* address) const;
  /// Has the memory fetched that Longest will wait for: the first levels of a large tree stay near the processor, the
  /// one below does not.
  void Prefetch(IpAddress::Version version, const unsigned char* address) const;

  /// Tells every prefix, in the order of the addresses, the shorter of two that begin alike first.
  using Visitor = std::function<void(const Prefix& prefix, uint32_t value)>;
  void ForEach(IpAddress::Version version, const Visitor& visit) const;

 private:
  static constexpr unsigned kStep = 6;
  static constexpr unsigned kSteps = 1U << kStep;
  static constexpr unsigned kMostNodes = 128 / kStep + 1;              ///< on a way down
  static constexpr std::size_t kJumps = std::size_t{kSteps} * kSteps;  ///< a tree with as many nodes is large

  class Rest;

  struct alignas(32) Node {
    uint64_t prefixes[2] = {0, 0};  ///< of the second word each bit is a whole step
    uint64_t children = 0;
    uint32_t first_value = 0;  ///< of one prefix alone the value itself
    uint32_t first_child = 0;

    bool IsEmpty() const { return (prefixes[0] | prefixes[1] | children) == 0; }
    bool HasChild(unsigned step) const { return (children >> step & 1) != 0; }
    unsigned ChildrenBelow(unsigned step) const { return Count(children & ((uint64_t{1} << step) - 1)); }
    uint32_t ChildAt(unsigned step) const { return first_child + ChildrenBelow(step); }
    bool HasPrefix(unsigned bit) const { return (prefixes[bit / 64] >> bit % 64 & 1) != 0; }
    void FlipPrefix(unsigned bit) { prefixes[bit / 64] ^= uint64_t{1} << bit % 64; }
    unsigned PrefixesBelow(unsigned bit) const {
      const unsigned below = Count(prefixes[bit / 64] & ((uint64_t{1} << bit % 64) - 1));
      return bit < 64 ? below : Count(prefixes[0]) + below;
    }
    unsigned PrefixCount() const { return Count(prefixes[0]) + Count(prefixes[1]); }
    bool HasOnePrefix() const {
      const auto one = [](uint64_t bits) { return (bits & (bits - 1)) == 0; };
      return prefixes[0] == 0 ? one(prefixes[1]) : prefixes[1] == 0 && one(prefixes[0]);
    }
  };
  static constexpr uint32_t kRoot = 0;

  /// How many bits are set; in arithmetic, for not every processor has an instruction for it.
  static unsigned Count(uint64_t bits) {
    bits -= bits >> 1 & 0x5555555555555555;
    bits = (bits & 0x3333333333333333) + (bits >> 2 & 0x3333333333333333);
    return static_cast<unsigned>(((bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0F) * 0x0101010101010101 >> 56);
  }

  /// The value of a prefix that the node has. One that is alone stands in the node: most are in a large table, and a
  /// look elsewhere takes as long as all the rest of a node.
  const uint32_t& ValueOf(const Node& node, unsigned bit) const {
    return node.HasOnePrefix() ? node.first_value : values_[node.first_value + node.PrefixesBelow(bit)];
  }

  /// The longest prefix of an address in the node `top`, at this depth, and those below it.
  Match LongestBelow(const Node& top, unsigned top_depth, Rest rest) const;

  /// Begins to keep copies of the nodes that two steps lead to.
  void MakeJumps();
  /// Copies the node that two steps lead to, which may have changed, come or gone.
  void WriteJump(unsigned two_steps);

  void Visit(uint32_t index, unsigned depth, IpAddress* address, const Visitor& visit) const;

  BlockPool<Node> nodes_;
  BlockPool<uint32_t> values_;
  std::vector<Node> jumps_;  ///< by the first two steps; empty while the tree is small
};

}  // namespace softcard

#endif
