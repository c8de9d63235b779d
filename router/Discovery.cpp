#include "router/Discovery.h"

#include <algorithm>

namespace router {
namespace {

using softcard::Get16;
using softcard::IpAddress;
using softcard::View;

constexpr unsigned kEtherTypeArp = 0x0806;
constexpr std::size_t kArpBytes = 28;  // of Ethernet and IPv4
constexpr unsigned kIcmpv6 = 58;
constexpr unsigned kNearest = 255;  // the hop limit of what no router has sent on
enum : unsigned { kRouterSolicitation = 133, kRouterAdvertisement, kNeighbourSolicitation, kNeighbourAdvertisement };
constexpr std::size_t kIcmpv6Bytes = 8, kTargetBytes = 16;
enum : unsigned { kSourceOption = 1, kTargetOption = 2 };

Mac ToMac(const unsigned char* bytes) {
  Mac mac;
  std::copy_n(bytes, mac.size(), mac.begin());
  return mac;
}

bool IsOnes(const Mac& mac) { return (mac[0] & 1) == 0 && mac != Mac{}; }

bool IsOnes(const IpAddress& address) {
  const unsigned char first = address.bytes[0];
  const bool is_group = address.version == IpAddress::Version::k4 ? first >= 0xE0 : first == 0xFF;
  return !is_group && address.bytes != IpAddress().bytes;
}

std::optional<Announcement> Announced(unsigned vlan_id, const IpAddress& address, const Mac& mac) {
  if (!IsOnes(address) || !IsOnes(mac)) return std::nullopt;
  return Announcement{vlan_id, address, mac};
}

std::optional<Announcement> ReadArp(unsigned vlan_id, View arp) {
  constexpr unsigned char kEthernetAndIpv4[] = {0, 1, 8, 0, 6, 4};
  const std::size_t header = sizeof kEthernetAndIpv4;
  if (arp.size < kArpBytes || !std::equal(kEthernetAndIpv4, kEthernetAndIpv4 + header, arp.data)) return std::nullopt;
  const unsigned operation = Get16(arp.data + header);
  if (operation != 1 && operation != 2) return std::nullopt;
  const unsigned char* const sender = arp.data + header + 2;
  return Announced(vlan_id, IpAddress::From(IpAddress::Version::k4, sender + softcard::kMacBytes), ToMac(sender));
}

/// The Ethernet address in the option of this kind; nothing when there is none, or the options are at odds.
std::optional<Mac> FindOption(View options, unsigned kind) {
  while (options.size >= 2) {
    const std::size_t length = std::size_t{8} * options.data[1];
    if (length == 0 || length > options.size) return std::nullopt;
    if (options.data[0] == kind) return ToMac(options.data + 2);
    options = options.From(length);
  }
  return std::nullopt;
}

std::optional<Announcement> ReadDiscovery(unsigned vlan_id, View ip) {
  if (ip.size < softcard::kIpv6Bytes + kIcmpv6Bytes || ip.data[6] != kIcmpv6 || ip.data[7] != kNearest) {
    return std::nullopt;
  }
  const std::size_t length = Get16(ip.data + 4);
  if (length < kIcmpv6Bytes || length > ip.size - softcard::kIpv6Bytes) return std::nullopt;
  const View icmp{ip.data + softcard::kIpv6Bytes, length};
  const unsigned type = icmp.data[0];
  const unsigned char* address = ip.data + softcard::kIpv6Addresses;  // the sender's
  std::size_t options = kIcmpv6Bytes;
  switch (type) {
    case kRouterSolicitation: break;
    case kRouterAdvertisement: options += 8; break;
    case kNeighbourSolicitation: options += kTargetBytes; break;
    case kNeighbourAdvertisement:
      address = icmp.data + kIcmpv6Bytes;
      options += kTargetBytes;
      break;
    default: return std::nullopt;
  }
  if (icmp.size < options) return std::nullopt;
  const auto mac = FindOption(icmp.From(options), type == kNeighbourAdvertisement ? kTargetOption : kSourceOption);
  if (!mac) return std::nullopt;
  return Announced(vlan_id, IpAddress::From(IpAddress::Version::k6, address), *mac);
}

/// What a frame carries, without its tag.
struct Carried {
  unsigned vlan_id;
  unsigned type;
  View bytes;
};

std::optional<Carried> ReadFrame(View frame) {
  if (frame.size < softcard::kEthernetBytes) return std::nullopt;
  const std::size_t at = softcard::kEthernetBytes;
  const unsigned type = Get16(frame.data + at - 2);
  if (type != softcard::kEtherTypeVlan) return Carried{0, type, frame.From(at)};
  if (frame.size < at + softcard::kTagBytes) return std::nullopt;
  return Carried{Get16(frame.data + at) & softcard::kVlanBits, Get16(frame.data + at + 2),
                 frame.From(at + softcard::kTagBytes)};
}

struct IpAddresses {
  unsigned vlan_id;
  IpAddress source;
  IpAddress destination;
};

std::optional<IpAddresses> ReadIp(View frame) {
  const auto carried = ReadFrame(frame);
  if (!carried) return std::nullopt;
  const bool is_v4 = carried->type == softcard::kEtherTypeIpv4;
  if (!is_v4 && carried->type != softcard::kEtherTypeIpv6) return std::nullopt;
  const auto version = is_v4 ? IpAddress::Version::k4 : IpAddress::Version::k6;
  const std::size_t at = is_v4 ? softcard::kIpv4Addresses : softcard::kIpv6Addresses;
  const std::size_t size = IpAddress::Bytes(version);
  if (carried->bytes.size < at + 2 * size) return std::nullopt;
  const unsigned char* const addresses = carried->bytes.data + at;
  return IpAddresses{carried->vlan_id, IpAddress::From(version, addresses), IpAddress::From(version, addresses + size)};
}

/// 224.0.0.0/24, and what IPv6 calls of link-local scope.
bool IsLinksGroup(const IpAddress& address) {
  const auto& bytes = address.bytes;
  if (address.version == IpAddress::Version::k4) return bytes[0] == 224 && bytes[1] == 0 && bytes[2] == 0;
  return bytes[0] == 0xFF && (bytes[1] & 0xF) == 2;
}

}  // namespace

std::optional<Announcement> ReadAnnouncement(View frame) {
  const auto carried = ReadFrame(frame);
  if (!carried) return std::nullopt;
  if (carried->type == kEtherTypeArp) return ReadArp(carried->vlan_id, carried->bytes);
  if (carried->type == softcard::kEtherTypeIpv6) return ReadDiscovery(carried->vlan_id, carried->bytes);
  return std::nullopt;
}

std::optional<Announcement> ReadSender(View frame) {
  const auto ip = ReadIp(frame);
  if (!ip || !IsLinksGroup(ip->destination)) return std::nullopt;
  return Announced(ip->vlan_id, ip->source, ToMac(frame.data + softcard::kMacBytes));
}

std::optional<Announcement> ReadAddressee(View frame) {
  const auto ip = ReadIp(frame);
  if (!ip) return std::nullopt;
  return Announced(ip->vlan_id, ip->destination, ToMac(frame.data));
}

}  // namespace router
