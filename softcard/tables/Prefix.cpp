#include "softcard/tables/Prefix.h"

#include <arpa/inet.h>

#include <algorithm>

namespace softcard {

IpAddress IpAddress::From(Version version, const unsigned char* bytes) {
  IpAddress address;
  address.version = version;
  std::copy_n(bytes, Bytes(version), address.bytes.begin());
  return address;
}

Prefix Prefix::Around(const IpAddress& address, unsigned length) {
  Prefix prefix{address, length};
  for (unsigned i = 0; i < prefix.address.bytes.size(); ++i) {
    const unsigned kept = length > 8 * i ? std::min(length - 8 * i, 8U) : 0;
    prefix.address.bytes[i] = static_cast<unsigned char>(address.bytes[i] & 0xFF00 >> kept);
  }
  return prefix;
}

bool Prefix::IsValid() const {
  return length <= address.bits() && Around(address, length).address.bytes == address.bytes;
}

std::optional<IpAddress> ReadIpAddress(const std::string& text) {
  IpAddress address;
  if (inet_pton(AF_INET, text.c_str(), address.bytes.data()) == 1) return address;
  address.version = IpAddress::Version::k6;
  if (inet_pton(AF_INET6, text.c_str(), address.bytes.data()) == 1) return address;
  return std::nullopt;
}

std::string Text(const IpAddress& address) {
  char text[INET6_ADDRSTRLEN];
  return inet_ntop(address.version == IpAddress::Version::k4 ? AF_INET : AF_INET6, address.bytes.data(), text,
                   sizeof text);
}

std::string Text(const Prefix& prefix) { return Text(prefix.address) + '/' + std::to_string(prefix.length); }

}  // namespace softcard
