#ifndef SOFTCARD_PACKETS_FRAME_H
#define SOFTCARD_PACKETS_FRAME_H

#include <arpa/inet.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

/// What frames are made of. Numbers stand in them in network byte order, whatever the host's.
namespace softcard {

using Bytes = std::vector<unsigned char>;

/// Bytes that belong to somebody else.
struct View {
  View(const unsigned char* begin, std::size_t length) : data(begin), size(length) {}
  View(const Bytes& bytes) : data(bytes.data()), size(bytes.size()) {}  // NOLINT: bytes are looked at as they are

  View From(std::size_t offset) const { return {data + offset, size - offset}; }

  const unsigned char* data;
  std::size_t size;
};

constexpr std::size_t kMacBytes = 6;
constexpr std::size_t kEthernetBytes = 14;  ///< two addresses and the type
constexpr std::size_t kTagBytes = 4;
constexpr unsigned kVlanBits = 0xFFF;  ///< of a tag the VLAN
constexpr std::size_t kLabelBytes = 4;
constexpr std::size_t kIpv4Bytes = 20;  ///< without options
constexpr std::size_t kIpv6Bytes = 40;
constexpr std::size_t kIpv4Addresses = 12;  ///< where they begin, the source's first
constexpr std::size_t kIpv6Addresses = 8;

constexpr unsigned kEtherTypeIpv4 = 0x0800;
constexpr unsigned kEtherTypeVlan = 0x8100;
constexpr unsigned kEtherTypeIpv6 = 0x86DD;
constexpr unsigned kEtherTypeMpls = 0x8847;

inline unsigned Get16(const unsigned char* at) { return static_cast<unsigned>(at[0] << 8 | at[1]); }
inline uint32_t Get32(const unsigned char* at) { return uint32_t{Get16(at)} << 16 | Get16(at + 2); }
inline void Put16(unsigned char* at, unsigned value) {
  at[0] = static_cast<unsigned char>(value >> 8);
  at[1] = static_cast<unsigned char>(value);
}
inline void Put32(unsigned char* at, uint32_t value) {
  Put16(at, value >> 16);
  Put16(at + 2, value);
}

/// An entry of a label stack: 20 bits of label, 3 of EXP, the bottom-of-stack bit, 8 of TTL.
struct StackEntry {
  unsigned label;
  unsigned exp;
  bool bottom;
  unsigned ttl;
};

constexpr uint32_t kBottomOfStack = 0x100;

inline StackEntry EntryOf(uint32_t word) {
  return {word >> 12, word >> 9 & 7, (word & kBottomOfStack) != 0, word & 0xFF};
}
inline uint32_t WordOf(const StackEntry& entry) {
  return entry.label << 12 | entry.exp << 9 | (entry.bottom ? kBottomOfStack : 0) | entry.ttl;
}
inline StackEntry GetEntry(const unsigned char* at) { return EntryOf(Get32(at)); }
inline void PutEntry(unsigned char* at, const StackEntry& entry) { Put32(at, WordOf(entry)); }

/// The checksum of a header of 32-bit words: 0 when it holds its own and that is right. Words are added as the host
/// reads them: it only swaps the sum's bytes.
inline unsigned InternetChecksum(const unsigned char* header, std::size_t size) {
  uint64_t sum = 0;
  for (std::size_t i = 0; i < size; i += 4) {
    uint32_t word;
    std::memcpy(&word, header + i, sizeof word);
    sum += word;
  }
  sum = (sum & 0xFFFF) + (sum >> 16 & 0xFFFF) + (sum >> 32);
  sum = (sum & 0xFFFF) + (sum >> 16);
  sum = (sum & 0xFFFF) + (sum >> 16);
  return ntohs(static_cast<uint16_t>(~sum));
}

}  // namespace softcard

#endif
