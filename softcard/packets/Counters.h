#ifndef SOFTCARD_PACKETS_COUNTERS_H
#define SOFTCARD_PACKETS_COUNTERS_H

#include <array>
#include <cstdint>
#include <vector>

#include "softcard/packets/Way.h"
#include "softcard/tables/HashMap.h"

namespace softcard {

/// Packets and bytes of frames without their check sequence.
struct Count {
  uint64_t packets = 0;
  uint64_t bytes = 0;

  void Add(std::size_t size) { ++packets, bytes += size; }
};

/// What has come, left and been dropped. A destination counts what it sent out or gave to the CPU, as it left; a drop
/// counts the packet as it came; the CPU port counts what the CPU got.
class Counters {
 public:
  static const TableDescription kDescription;

  /// A frame of `in` bytes that came in on a port, and left as one of `out`.
  void Injected(int port, const Way& way, std::size_t in, std::size_t out);
  /// A packet that has been routed elsewhere.
  void Sent(const Way& way, std::size_t in, std::size_t out);

  Count destination(unsigned id) const;
  Count drop(Drop drop) const { return drops_[static_cast<std::size_t>(drop)]; }
  Count in(int port) const;
  Count out(int port) const;
  /// Those that are not zero, "counter destination 20: packets=1 bytes=42", by destination, port and drop.
  std::vector<Row> Rows(const Ports& ports) const;
  std::size_t row_count() const;

 private:
  struct PortCount {
    Count in, out;
  };

  PortCount& Port(int port);

  std::vector<PortCount> ports_;  ///< by port, as far as one saw a frame; one of a LAG with members is its member's
  HashMap<unsigned, Count> destinations_;
  std::array<Count, kDrops> drops_{};
};

}  // namespace softcard

#endif
