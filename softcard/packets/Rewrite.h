#ifndef SOFTCARD_PACKETS_REWRITE_H
#define SOFTCARD_PACKETS_REWRITE_H

#include <array>

#include "hal/IntfObject.h"
#include "softcard/Limits.h"
#include "softcard/packets/Packet.h"

namespace softcard {

class Story;

/// The labels that a packet gets, the innermost first: an egress object's own, then its interface's. None is the bottom
/// of the stack yet.
class PushedLabels {
 public:
  void Push(unsigned label, unsigned exp, unsigned ttl) { words_[count_++] = WordOf({label, exp, false, ttl}); }
  bool empty() const { return count_ == 0; }
  std::size_t size() const { return count_; }
  uint32_t operator[](std::size_t i) const { return words_[i]; }

 private:
  std::array<uint32_t, kMaxLabels + 1> words_;
  std::size_t count_ = 0;
};

/// What comes before the packet.
struct Headers {
  MacAddress destination;
  MacAddress source;
  unsigned vlan_id;
  PushedLabels labels;
};

/// Writes the frame, without its check sequence, in place of what the buffer held. The packet gets the TTL that it
/// says. The story is told each layer where it is written; null: nobody listens.
void WriteFrame(const Headers& headers, const Packet& packet, Bytes* frame, Story* story);

/// Tells what a packet is made of, from its outermost header on.
void TellLayers(const Packet& packet, Story* story);

}  // namespace softcard

#endif
