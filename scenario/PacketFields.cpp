#include "scenario/PacketFields.h"

#include <algorithm>
#include <optional>

#include "scenario/SyntaxError.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

using softcard::Bytes;
using softcard::Carried;
using softcard::IpAddress;
using Version = IpAddress::Version;

constexpr unsigned kMaxPacket = 65535;
constexpr unsigned kProtocol = 253;  // for experiments: nobody takes apart what lies behind
constexpr unsigned char kDefaultSource[] = {0x02, 0, 0, 0, 0, 0x01};

std::optional<unsigned> Number(const Fields& fields, const char* key, const char* what, unsigned low, unsigned high) {
  const Token* const word = fields.Find(key);
  if (word == nullptr) return std::nullopt;
  return static_cast<unsigned>(ToNumber(*word, what, low, high));
}

void Refuse(const Fields& fields, std::initializer_list<const char*> keys, const std::string& why) {
  for (const char* key : keys) {
    if (const Token* word = fields.Find(key)) throw SyntaxError{word->offset, why + ": leave " + key + "= out"};
  }
}

unsigned TtlOf(const Fields& fields) { return Number(fields, "ttl", "TTL", 0, 255).value_or(64); }
unsigned TosOf(const Fields& fields) { return Number(fields, "tos", "type of service", 0, 255).value_or(0); }

struct Addresses {
  IpAddress source, destination;
};

Addresses ReadAddresses(const Fields& fields) {
  const Token* const src = fields.Find("src");
  const Token* const dst = fields.Find("dst");
  const bool is_v6 = (src != nullptr && ToIpAddress(*src).version == Version::k6) ||
                     (dst != nullptr && ToIpAddress(*dst).version == Version::k6);
  const Addresses addresses = {ToIpAddress(src != nullptr ? *src : Token{is_v6 ? "2001:db8::1" : "192.0.2.1", 0}),
                               ToIpAddress(dst != nullptr ? *dst : Token{is_v6 ? "2001:db8:1::1" : "198.51.100.1", 0})};
  if (addresses.source.version != addresses.destination.version) {
    throw SyntaxError{dst->offset, "src= and dst= are addresses of different IP versions"};
  }
  return addresses;
}

Bytes IpPacket(const Fields& fields) {
  const Addresses addresses = ReadAddresses(fields);
  const Version version = addresses.source.version;
  const bool is_v4 = version == Version::k4;
  const std::size_t header = is_v4 ? softcard::kIpv4Bytes : softcard::kIpv6Bytes;
  const Token* const word = fields.Find("payload");
  const Bytes payload = word != nullptr ? ToBytes(*word) : Bytes();
  const std::size_t least = header + payload.size();
  if (least > kMaxPacket) throw SyntaxError{word->offset, "this payload fits into no packet"};
  const std::size_t size = Number(fields, "size", is_v4 ? "size of an IPv4 packet" : "size of an IPv6 packet",
                                  static_cast<unsigned>(least), kMaxPacket)
                               .value_or(static_cast<unsigned>(least));

  Bytes packet(size);
  unsigned char* const at = packet.data();
  const unsigned tos = TosOf(fields);
  if (is_v4) {
    softcard::Put16(at, 0x4500 | tos);
    softcard::Put16(at + 2, static_cast<unsigned>(size));
    softcard::Put16(at + 8, TtlOf(fields) << 8 | kProtocol);
  } else {
    softcard::Put32(at, 0x60000000 | tos << 20);
    softcard::Put16(at + 4, static_cast<unsigned>(size - header));
    softcard::Put16(at + 6, kProtocol << 8 | TtlOf(fields));
  }
  unsigned char* const to = at + (is_v4 ? softcard::kIpv4Addresses : softcard::kIpv6Addresses);
  std::copy_n(addresses.source.bytes.begin(), IpAddress::Bytes(version), to);
  std::copy_n(addresses.destination.bytes.begin(), IpAddress::Bytes(version), to + IpAddress::Bytes(version));
  if (is_v4) softcard::Put16(at + 10, softcard::InternetChecksum(at, header));
  std::copy(payload.begin(), payload.end(), at + header);
  return packet;
}

/// Without a bottom: that comes with what lies below.
std::vector<unsigned> ReadLabels(const Fields& fields) {
  std::vector<unsigned> labels;
  if (const Token* list = fields.Find("labels")) {
    for (const Token& label : Elements(*list)) {
      labels.push_back(static_cast<unsigned>(ToNumber(label, "label", 0, softcard::kLastLabel)));
    }
  }
  return labels;
}

/// Labels upon what lies below them.
Bytes Under(const std::vector<unsigned>& labels, const Fields& fields, const Bytes& below) {
  Bytes bytes(softcard::kLabelBytes * labels.size());
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const bool bottom = i + 1 == labels.size();
    softcard::PutEntry(&bytes[softcard::kLabelBytes * i], {labels[i], TosOf(fields) >> 5, bottom, TtlOf(fields)});
  }
  bytes.insert(bytes.end(), below.begin(), below.end());
  return bytes;
}

unsigned EtherTypeOf(const CarriedPacket& packet) {
  if (packet.carried == Carried::kLabels) return softcard::kEtherTypeMpls;
  return packet.bytes[0] >> 4 == 4 ? softcard::kEtherTypeIpv4 : softcard::kEtherTypeIpv6;
}

void AppendMac(const Token& word, Bytes* frame) {
  const auto mac = ToMac(word);
  if (!mac) throw SyntaxError{word.offset, "a frame has no null address"};
  frame->insert(frame->end(), mac->begin(), mac->end());
}

void Append16(unsigned value, Bytes* frame) {
  frame->resize(frame->size() + 2);
  softcard::Put16(&*frame->end() - 2, value);
}

}  // namespace

CarriedPacket ToPacket(const Fields& fields) {
  const std::vector<unsigned> labels = ReadLabels(fields);
  const Token* const frame = fields.Find("frame");
  if (frame != nullptr) {
    Refuse(fields, {"src", "dst", "size", "payload"}, "frame= is all that is carried");
    if (labels.empty()) Refuse(fields, {"ttl", "tos"}, "an Ethernet frame has none of its own");
  }
  const Bytes below = frame != nullptr ? ToBytes(*frame) : IpPacket(fields);
  if (!labels.empty()) return {Carried::kLabels, Under(labels, fields, below)};
  return {frame != nullptr ? Carried::kEthernet : Carried::kIp, below};
}

Bytes ToFrame(const Fields& fields) {
  if (const Token* hex = fields.Find("hex")) {
    Refuse(fields, {"dmac", "smac", "vlan", "src", "dst", "ttl", "tos", "size", "labels", "payload", "frame"},
           "hex= is the whole frame");
    return ToBytes(*hex);
  }
  const Token* const dmac = fields.Find("dmac");
  if (dmac == nullptr) {
    throw SyntaxError{fields.name().offset, "\"inject\" needs hex=HEX or dmac=MAC", fields.form().usage()};
  }
  const CarriedPacket packet = ToPacket(fields);
  if (packet.carried == Carried::kEthernet) {
    throw SyntaxError{fields.Find("frame")->offset, "frame= lies below labels; the frame that comes in is hex="};
  }
  Bytes frame;
  AppendMac(*dmac, &frame);
  if (const Token* smac = fields.Find("smac")) {
    AppendMac(*smac, &frame);
  } else {
    frame.insert(frame.end(), std::begin(kDefaultSource), std::end(kDefaultSource));
  }
  if (const auto vlan_id = Number(fields, "vlan", "VLAN of a frame", 0, 4095)) {
    Append16(softcard::kEtherTypeVlan, &frame);
    Append16(*vlan_id, &frame);
  }
  Append16(EtherTypeOf(packet), &frame);
  frame.insert(frame.end(), packet.bytes.begin(), packet.bytes.end());
  return frame;
}

}  // namespace scenario
