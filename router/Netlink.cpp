#include "router/Netlink.h"

#include <libmnl/libmnl.h>
#include <linux/lwtunnel.h>
#include <linux/mpls.h>
#include <linux/mpls_iptunnel.h>
#include <linux/nexthop.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <optional>

namespace router {
namespace {

using softcard::IpAddress;
using softcard::Prefix;

constexpr unsigned kFamilyMpls = 28;   // AF_MPLS, of which not every C library knows
constexpr std::size_t kMostRead = 16;  // labels of a stack
constexpr std::size_t kLabelBytes = 4;

/// A message that lacks what it is about.
struct Malformed {};

/// The attributes behind a header by their numbers; of several with the same number the last.
class Attributes {
 public:
  Attributes(const void* data, std::size_t size) { Read(static_cast<const char*>(data), size); }
  explicit Attributes(const nlattr* nest) : Attributes(mnl_attr_get_payload(nest), mnl_attr_get_payload_len(nest)) {}

  const nlattr* operator[](unsigned type) const { return type < kMost ? attributes_[type] : nullptr; }

  std::optional<std::uint32_t> Number(unsigned type) const {
    const nlattr* const attribute = (*this)[type];
    if (attribute == nullptr) return std::nullopt;
    if (mnl_attr_get_payload_len(attribute) < sizeof(std::uint32_t)) throw Malformed();
    return mnl_attr_get_u32(attribute);
  }

 private:
  static constexpr unsigned kMost = 32;  // none of those that are read has a greater number

  void Read(const char* data, std::size_t size) {
    while (size > 0) {
      const auto* const attribute = reinterpret_cast<const nlattr*>(data);
      if (!mnl_attr_ok(attribute, static_cast<int>(size))) throw Malformed();
      const unsigned type = mnl_attr_get_type(attribute);
      if (type < kMost) attributes_[type] = attribute;
      const std::size_t taken = std::min<std::size_t>(MNL_ALIGN(attribute->nla_len), size);
      data += taken;
      size -= taken;
    }
  }

  const nlattr* attributes_[kMost] = {};
};

IpAddress ToAddress(unsigned family, const void* data, std::size_t size) {
  const auto version = family == AF_INET ? IpAddress::Version::k4 : IpAddress::Version::k6;
  if ((family != AF_INET && family != AF_INET6) || size < IpAddress::Bytes(version)) throw Malformed();
  return IpAddress::From(version, static_cast<const unsigned char*>(data));
}

IpAddress ToAddress(unsigned family, const nlattr* attribute) {
  return ToAddress(family, mnl_attr_get_payload(attribute), mnl_attr_get_payload_len(attribute));
}

/// Behind the family of an address lies the address, of four bytes with padding behind it.
IpAddress ToVia(const nlattr* attribute) {
  const std::size_t size = mnl_attr_get_payload_len(attribute);
  unsigned short family = 0;
  if (size < sizeof family) throw Malformed();
  const char* const data = static_cast<const char*>(mnl_attr_get_payload(attribute));
  std::memcpy(&family, data, sizeof family);
  return ToAddress(family, data + sizeof family, size - sizeof family);
}

/// One more than are ever pushed is enough to say that there are too many.
Labels ToLabels(const nlattr* attribute) {
  const std::size_t size = mnl_attr_get_payload_len(attribute);
  const auto* const data = static_cast<const unsigned char*>(mnl_attr_get_payload(attribute));
  Labels labels;
  for (std::size_t at = 0; at + kLabelBytes <= size && labels.size() < kMostRead; at += kLabelBytes) {
    labels.push_back(static_cast<unsigned>(data[at]) << 12 | static_cast<unsigned>(data[at + 1]) << 4 |
                     data[at + 2] >> 4);
    if ((data[at + 2] & 1) != 0) return labels;  // the bottom of the stack
  }
  if (labels.size() < kMostRead) throw Malformed();  // a stack without a bottom
  return labels;
}

/// How the parts of a way are numbered: the same things have other numbers in routes and in next-hop objects.
struct Numbers {
  unsigned gateway, via, oif, encap_type, encap;
};
constexpr Numbers kOfRoutes{RTA_GATEWAY, RTA_VIA, RTA_OIF, RTA_ENCAP_TYPE, RTA_ENCAP};
constexpr Numbers kOfNextHops{NHA_GATEWAY, 0, NHA_OIF, NHA_ENCAP_TYPE, NHA_ENCAP};

/// The way of IP packets. `ifindex`: where it is told beside the attributes.
Way ToIpWay(const Attributes& attributes, const Numbers& numbers, unsigned family, unsigned ifindex) {
  Way way;
  way.kind = Way::Kind::kDeliver;
  way.ifindex = attributes.Number(numbers.oif).value_or(ifindex);
  if (const nlattr* gateway = attributes[numbers.gateway]) way.gateway = ToAddress(family, gateway);
  if (const nlattr* via = attributes[numbers.via]; via != nullptr && numbers.via != 0) way.gateway = ToVia(via);
  const nlattr* const type = attributes[numbers.encap_type];
  if (type == nullptr) return way;
  if (mnl_attr_get_payload_len(type) < sizeof(std::uint16_t)) throw Malformed();
  const nlattr* const encap = attributes[numbers.encap];
  if (mnl_attr_get_u16(type) != LWTUNNEL_ENCAP_MPLS || encap == nullptr) {
    way.kind = Way::Kind::kUnknown;
    return way;
  }
  const nlattr* const labels = Attributes(encap)[MPLS_IPTUNNEL_DST];
  if (labels == nullptr) throw Malformed();
  way.labels = ToLabels(labels);
  way.kind = Way::Kind::kPush;
  return way;
}

/// The way of packets under a label.
Way ToLabelWay(const Attributes& attributes, unsigned ifindex) {
  Way way;
  way.ifindex = attributes.Number(RTA_OIF).value_or(ifindex);
  if (const nlattr* via = attributes[RTA_VIA]) way.gateway = ToVia(via);
  if (const nlattr* labels = attributes[RTA_NEWDST]) way.labels = ToLabels(labels);
  if (way.labels == Labels{kImplicitNull}) way.labels.clear();
  way.kind = !way.labels.empty() ? Way::Kind::kSwap : way.gateway ? Way::Kind::kDeliver : Way::Kind::kPopVrf;
  return way;
}

/// Several ways, each with a header of its own.
template <typename ToWay>
Ways ToWays(const nlattr* multipath, const ToWay& to_way) {
  Ways ways;
  const auto* data = static_cast<const char*>(mnl_attr_get_payload(multipath));
  std::size_t size = mnl_attr_get_payload_len(multipath);
  while (size > 0) {
    const auto* const hop = reinterpret_cast<const rtnexthop*>(data);
    if (size < sizeof *hop || hop->rtnh_len < sizeof *hop || hop->rtnh_len > size) throw Malformed();
    ways.push_back(
        to_way(Attributes(data + sizeof *hop, hop->rtnh_len - sizeof *hop), static_cast<unsigned>(hop->rtnh_ifindex)));
    const std::size_t taken = std::min<std::size_t>(RTNH_ALIGN(hop->rtnh_len), size);
    data += taken;
    size -= taken;
  }
  return ways;
}

Way OfKind(Way::Kind kind) {
  Way way;
  way.kind = kind;
  return way;
}

Ways ToIpWays(const rtmsg& header, const Attributes& attributes) {
  switch (header.rtm_type) {
    case RTN_UNICAST: break;
    case RTN_BLACKHOLE: return {OfKind(Way::Kind::kDrop)};
    // The route processor answers for these.
    case RTN_LOCAL:
    case RTN_UNREACHABLE:
    case RTN_PROHIBIT: return {OfKind(Way::Kind::kProcessor)};
    default: return {OfKind(Way::Kind::kUnknown)};
  }
  const auto to_way = [&](const Attributes& of_way, unsigned ifindex) {
    return ToIpWay(of_way, kOfRoutes, header.rtm_family, ifindex);
  };
  if (const nlattr* multipath = attributes[RTA_MULTIPATH]) return ToWays(multipath, to_way);
  return {to_way(attributes, 0)};
}

template <typename Header>
const Header& HeaderOf(const nlmsghdr* message) {
  if (mnl_nlmsg_get_payload_len(message) < sizeof(Header)) throw Malformed();
  return *static_cast<const Header*>(mnl_nlmsg_get_payload(message));
}

template <typename Header>
Attributes AttributesOf(const nlmsghdr* message) {
  constexpr std::size_t kHeaderBytes = MNL_ALIGN(sizeof(Header));
  const std::size_t size = mnl_nlmsg_get_payload_len(message);
  if (size <= kHeaderBytes) return {nullptr, 0};
  return {static_cast<const char*>(mnl_nlmsg_get_payload_offset(message, sizeof(Header))), size - kHeaderBytes};
}

LabelTold ToLabel(const rtmsg& header, const Attributes& attributes, bool gone) {
  const nlattr* const label = attributes[RTA_DST];
  constexpr unsigned kLabelBits = 20;
  if (label == nullptr || header.rtm_dst_len != kLabelBits || mnl_attr_get_payload_len(label) < kLabelBytes) {
    throw Malformed();
  }
  const auto* const bytes = static_cast<const unsigned char*>(mnl_attr_get_payload(label));
  LabelTold told;
  told.gone = gone;
  told.label = static_cast<unsigned>(bytes[0]) << 12 | static_cast<unsigned>(bytes[1]) << 4 | bytes[2] >> 4;
  if (gone) return told;
  if (const nlattr* multipath = attributes[RTA_MULTIPATH]) {
    told.ways = ToWays(multipath, ToLabelWay);
  } else {
    told.ways = {ToLabelWay(attributes, 0)};
  }
  return told;
}

RouteTold ToRoute(const rtmsg& header, const Attributes& attributes, bool gone) {
  RouteTold told;
  told.gone = gone;
  told.table = attributes.Number(RTA_TABLE).value_or(header.rtm_table);
  const nlattr* const address = attributes[RTA_DST];
  if (address == nullptr && header.rtm_dst_len != 0) throw Malformed();
  constexpr unsigned char kNone[16] = {};
  const IpAddress begin =
      address != nullptr ? ToAddress(header.rtm_family, address) : ToAddress(header.rtm_family, kNone, sizeof kNone);
  if (header.rtm_dst_len > begin.bits()) throw Malformed();
  told.prefix = Prefix::Around(begin, header.rtm_dst_len);
  if (gone) return told;
  told.next_hop = attributes.Number(RTA_NH_ID).value_or(0);
  if (told.next_hop == 0) told.ways = ToIpWays(header, attributes);
  return told;
}

NextHopTold ToNextHop(const nlmsghdr* message) {
  const auto& header = HeaderOf<nhmsg>(message);
  const Attributes attributes = AttributesOf<nhmsg>(message);
  NextHopTold told;
  told.gone = message->nlmsg_type == RTM_DELNEXTHOP;
  told.id = attributes.Number(NHA_ID).value_or(0);
  if (told.id == 0) throw Malformed();
  if (told.gone) return told;
  if (attributes[NHA_BLACKHOLE] != nullptr) {
    told.ways = {OfKind(Way::Kind::kDrop)};
  } else if (const nlattr* group = attributes[NHA_GROUP]) {
    const std::size_t size = mnl_attr_get_payload_len(group);
    const auto* const data = static_cast<const char*>(mnl_attr_get_payload(group));
    for (std::size_t at = 0; at + sizeof(nexthop_grp) <= size; at += sizeof(nexthop_grp)) {
      nexthop_grp member{};
      std::memcpy(&member, data + at, sizeof member);
      told.members.push_back(member.id);
    }
    if (told.members.empty()) throw Malformed();
  } else {
    told.ways = {ToIpWay(attributes, kOfNextHops, header.nh_family, 0)};
  }
  return told;
}

/// Nothing for what is no business of a card's.
std::optional<Told> Read(const nlmsghdr* message) {
  switch (message->nlmsg_type) {
    case RTM_NEWNEXTHOP:
    case RTM_DELNEXTHOP: return ToNextHop(message);
    case RTM_NEWROUTE:
    case RTM_DELROUTE: break;
    default: return std::nullopt;
  }
  const auto& header = HeaderOf<rtmsg>(message);
  const bool gone = message->nlmsg_type == RTM_DELROUTE;
  switch (header.rtm_family) {
    case AF_INET:
    case AF_INET6: break;
    case kFamilyMpls: return ToLabel(header, AttributesOf<rtmsg>(message), gone);
    default: return std::nullopt;
  }
  if (header.rtm_type == RTN_BROADCAST || header.rtm_type == RTN_ANYCAST || header.rtm_type == RTN_MULTICAST) {
    return std::nullopt;
  }
  return ToRoute(header, AttributesOf<rtmsg>(message), gone);
}

}  // namespace

void ReadMessages(const unsigned char* data, std::size_t size, std::vector<Told>* told, Unread* unread) {
  // Frames follow each other at any byte; numbers in messages are aligned.
  static_assert(alignof(nlmsghdr) <= alignof(std::uint32_t));
  thread_local std::vector<std::uint32_t> aligned;
  aligned.resize((size + sizeof(std::uint32_t) - 1) / sizeof(std::uint32_t));
  if (size > 0) std::memcpy(aligned.data(), data, size);
  const auto* const messages = reinterpret_cast<const char*>(aligned.data());
  std::size_t at = 0;
  while (at < size) {
    const auto* const message = reinterpret_cast<const nlmsghdr*>(messages + at);
    // libmnl would take a length of 2^31 and more for a negative one, which is never too long.
    if (size - at < sizeof *message || message->nlmsg_len < sizeof *message || message->nlmsg_len > size - at) {
      ++unread->malformed;
      return;
    }
    at += MNL_ALIGN(message->nlmsg_len);
    try {
      if (auto read = Read(message)) {
        told->push_back(std::move(*read));
      } else {
        ++unread->ignored;
      }
    } catch (const Malformed&) {
      ++unread->malformed;
    }
  }
}

}  // namespace router
