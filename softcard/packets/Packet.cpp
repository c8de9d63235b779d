#include "softcard/packets/Packet.h"

namespace softcard {

namespace {

// Where the fields lie in their headers.
constexpr std::size_t kIpv4Ttl = 8;  // with the protocol behind it, a word of the checksum
constexpr std::size_t kIpv4Protocol = 9;
constexpr std::size_t kIpv4Checksum = 10;
constexpr std::size_t kIpv6HopLimit = 7;
constexpr std::size_t kLabelTtl = 3;

/// FNV-1a, which reads bytes and so is the same on every host. What the last bytes have changed is mixed into its upper
/// bits at the end.
class Hash {
 public:
  Hash& Add(const unsigned char* at, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) AddByte(at[i]);
    return *this;
  }
  Hash& AddByte(unsigned byte) {
    value_ = (value_ ^ byte) * 16777619U;
    return *this;
  }
  uint32_t value() const { return (value_ ^ value_ >> 15) * 0x2C1B3C6DU; }

 private:
  uint32_t value_ = 2166136261U;
};

}  // namespace

std::optional<Packet> ParseIpv4(View bytes) {
  if (bytes.size < kIpv4Bytes || bytes.data[0] >> 4 != 4) return std::nullopt;
  const std::size_t header = std::size_t{4} * (bytes.data[0] & 0xF);
  const std::size_t total = Get16(bytes.data + 2);
  if (header < kIpv4Bytes || header > total || total > bytes.size) return std::nullopt;
  if (InternetChecksum(bytes.data, header) != 0) return std::nullopt;
  return Packet{Packet::Kind::kIpv4, {bytes.data, total}, bytes.data[kIpv4Ttl], unsigned{bytes.data[1]} >> 5};
}

std::optional<Packet> ParseIpv6(View bytes) {
  if (bytes.size < kIpv6Bytes || bytes.data[0] >> 4 != 6) return std::nullopt;
  const std::size_t total = kIpv6Bytes + Get16(bytes.data + 4);
  if (total > bytes.size) return std::nullopt;
  return Packet{Packet::Kind::kIpv6, {bytes.data, total}, bytes.data[kIpv6HopLimit], unsigned{bytes.data[0]} >> 1 & 7};
}

std::optional<Packet> ParseIp(View bytes) {
  return bytes.size > 0 && bytes.data[0] >> 4 == 6 ? ParseIpv6(bytes) : ParseIpv4(bytes);
}

std::optional<Packet> ParseLabelled(View bytes) {
  for (std::size_t at = 0; at + kLabelBytes <= bytes.size; at += kLabelBytes) {
    if (!GetEntry(bytes.data + at).bottom) continue;
    const StackEntry first = GetEntry(bytes.data);
    return Packet{Packet::Kind::kLabelled, bytes, first.ttl, first.exp};
  }
  return std::nullopt;
}

std::optional<Packet> ParseEthernet(View bytes) {
  if (bytes.size < kEthernetBytes) return std::nullopt;
  const bool tagged = Get16(bytes.data + 2 * kMacBytes) == kEtherTypeVlan;
  if (tagged && bytes.size < kEthernetBytes + kTagBytes) return std::nullopt;
  return Packet{Packet::Kind::kEthernet, bytes, 255, tagged ? unsigned{bytes.data[kEthernetBytes]} >> 5 : 0};
}

void SetTtl(Packet::Kind kind, unsigned ttl, unsigned char* header) {
  const auto byte = static_cast<unsigned char>(ttl);
  if (kind == Packet::Kind::kLabelled) header[kLabelTtl] = byte;
  if (kind == Packet::Kind::kIpv6) header[kIpv6HopLimit] = byte;
  if (kind == Packet::Kind::kIpv4) {
    // Only the changed word's part of the sum changes: HC' = ~(~HC + ~m + m').
    if (header[kIpv4Ttl] == byte) return;
    const unsigned before = Get16(header + kIpv4Ttl);
    header[kIpv4Ttl] = byte;
    unsigned sum = (~Get16(header + kIpv4Checksum) & 0xFFFF) + (~before & 0xFFFF) + Get16(header + kIpv4Ttl);
    sum = (sum & 0xFFFF) + (sum >> 16);
    sum = (sum & 0xFFFF) + (sum >> 16);
    Put16(header + kIpv4Checksum, ~sum);
  }
}

uint32_t FlowHash(const Packet& packet) {
  const unsigned char* const bytes = packet.bytes.data;
  Hash hash;
  switch (packet.kind) {
    case Packet::Kind::kIpv4: hash.Add(bytes + kIpv4Addresses, 8).AddByte(bytes[kIpv4Protocol]); break;
    case Packet::Kind::kIpv6: hash.Add(bytes + kIpv6Addresses, 32).AddByte(bytes[1] & 0xFU).Add(bytes + 2, 2); break;
    case Packet::Kind::kEthernet: hash.Add(bytes, 2 * kMacBytes); break;
    case Packet::Kind::kLabelled:
      for (const unsigned char* entry = bytes;; entry += kLabelBytes) {
        hash.Add(entry, 2).AddByte(entry[2] & 0xF0U);
        if (GetEntry(entry).bottom) break;
      }
      break;
    case Packet::Kind::kOpaque: break;
  }
  return hash.value();
}

}  // namespace softcard
