#ifndef SOFTCARD_TABLES_PREFIX_H
#define SOFTCARD_TABLES_PREFIX_H

#include <array>
#include <optional>
#include <string>

namespace softcard {

/// An address of either version in network byte order, followed by zeros when it is short.
struct IpAddress {
  enum class Version { k4, k6 };

  Version version = Version::k4;
  std::array<unsigned char, 16> bytes{};

  static IpAddress From(Version version, const unsigned char* bytes);
  static constexpr unsigned Bytes(Version version) { return version == Version::k4 ? 4 : 16; }
  unsigned bits() const { return 8 * Bytes(version); }
};

inline bool operator==(const IpAddress& one, const IpAddress& other) {
  return one.version == other.version && one.bytes == other.bytes;
}

/// The addresses whose first `length` bits are those of `address`.
struct Prefix {
  IpAddress address;
  unsigned length = 0;

  /// The one of this length that an address lies in.
  static Prefix Around(const IpAddress& address, unsigned length);
  /// Not longer than an address, and nothing behind its length.
  bool IsValid() const;
  bool Contains(const IpAddress& other) const {
    return other.version == address.version && Around(other, length).address == address;
  }
};

inline bool operator==(const Prefix& one, const Prefix& other) {
  return one.length == other.length && one.address == other.address;
}

/// "192.0.2.1", "2001:db8::1"; nothing for what is no address.
std::optional<IpAddress> ReadIpAddress(const std::string& text);

std::string Text(const IpAddress& address);  ///< "192.0.2.1", "2001:db8::1"
std::string Text(const Prefix& prefix);      ///< "192.0.2.0/24"

}  // namespace softcard

#endif
