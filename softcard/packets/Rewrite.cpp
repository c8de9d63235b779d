#include "softcard/packets/Rewrite.h"

#include <algorithm>
#include <cstring>

#include "softcard/packets/Story.h"

namespace softcard {

namespace {

unsigned EtherType(const PushedLabels& labels, Packet::Kind kind) {
  if (!labels.empty() || kind == Packet::Kind::kLabelled) return kEtherTypeMpls;
  return kind == Packet::Kind::kIpv6 ? kEtherTypeIpv6 : kEtherTypeIpv4;
}

MacAddress GetMac(const unsigned char* at) {
  MacAddress mac;
  std::copy_n(at, mac.size(), mac.begin());
  return mac;
}

/// Gives the header's size.
std::size_t TellEthernet(const unsigned char* frame, Story* story) {
  const unsigned type = Get16(frame + 2 * kMacBytes);
  story->Tell(EthernetLayer{GetMac(frame), GetMac(frame + kMacBytes), type});
  if (type != kEtherTypeVlan) return kEthernetBytes;
  story->Tell(TagLayer{Get16(frame + kEthernetBytes) & kVlanBits, Get16(frame + kEthernetBytes + 2)});
  return kEthernetBytes + kTagBytes;
}

}  // namespace

void WriteFrame(const Headers& headers, const Packet& packet, Bytes* frame, Story* story) {
  constexpr std::size_t kHeaderBytes = kEthernetBytes + kTagBytes;
  const std::size_t count = headers.labels.size();
  frame->resize(kHeaderBytes + kLabelBytes * count + packet.bytes.size);
  unsigned char* at = frame->data();

  const bool told = __builtin_expect(story != nullptr, 0) != 0;

  std::memcpy(at, headers.destination.data(), kMacBytes);
  std::memcpy(at + kMacBytes, headers.source.data(), kMacBytes);
  at += 2 * kMacBytes;
  const unsigned type = EtherType(headers.labels, packet.kind);
  Put16(at, kEtherTypeVlan);
  Put16(at + 2, headers.vlan_id);
  Put16(at + 4, type);
  at += 6;
  if (told) {
    story->Tell(EthernetLayer{headers.destination, headers.source, kEtherTypeVlan});
    story->Tell(TagLayer{headers.vlan_id, type});
  }

  for (std::size_t i = count; i > 0; --i, at += kLabelBytes) {
    const bool is_bottom = i == 1 && packet.kind != Packet::Kind::kLabelled;
    const uint32_t entry = headers.labels[i - 1] | (is_bottom ? kBottomOfStack : 0);
    Put32(at, entry);
    if (told) story->Tell(LabelLayer{EntryOf(entry)});
  }

  if (packet.bytes.size > 0) std::memcpy(at, packet.bytes.data, packet.bytes.size);
  SetTtl(packet.kind, packet.ttl, at);
  if (told) TellLayers(packet, story);
}

void TellLayers(const Packet& packet, Story* story) {
  const unsigned char* const bytes = packet.bytes.data;
  std::size_t told = 0;
  switch (packet.kind) {
    case Packet::Kind::kIpv4:
    case Packet::Kind::kIpv6: {
      const bool is_v4 = packet.kind == Packet::Kind::kIpv4;
      const auto version = is_v4 ? IpAddress::Version::k4 : IpAddress::Version::k6;
      const unsigned char* const addresses = bytes + (is_v4 ? kIpv4Addresses : kIpv6Addresses);
      const unsigned char* const second = addresses + IpAddress::Bytes(version);
      const unsigned tos = is_v4 ? bytes[1] : Get16(bytes) >> 4 & 0xFF;
      story->Tell(IpLayer{IpAddress::From(version, addresses), IpAddress::From(version, second), packet.ttl, tos,
                          packet.bytes.size});
      return;
    }
    case Packet::Kind::kLabelled:
      for (bool bottom = false; !bottom; told += kLabelBytes) {
        StackEntry entry = GetEntry(bytes + told);
        if (told == 0) entry.ttl = packet.ttl;
        story->Tell(LabelLayer{entry});
        bottom = entry.bottom;
      }
      TellLayers({Packet::Kind::kOpaque, packet.bytes.From(told)}, story);
      return;
    case Packet::Kind::kOpaque:
      if (const auto ip = ParseIp(packet.bytes)) return TellLayers(*ip, story);
      break;
    case Packet::Kind::kEthernet: told = TellEthernet(bytes, story); break;
  }
  story->Tell(PayloadLayer{packet.bytes.size - told});
}

}  // namespace softcard
