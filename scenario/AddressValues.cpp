// Addresses, prefixes, ports and bytes.
#include <string>

#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

using softcard::IpAddress;

/// Nothing for what is no hexadecimal digit.
std::optional<unsigned> Digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return std::nullopt;
}

}  // namespace

int ToPort(limid_t limid, const softcard::Card& card) {
  const HalBcmCommon& common = card.common();
  for (const auto* table : {&common.port_table, &common.lag_table}) {
    if (const auto found = table->find(limid); found != table->end()) return found->second;
  }
  const auto index = static_cast<int>(softcard::LimIdIndex(limid));
  return card.tables().ports.Exists(index) ? -1 : index;
}

IpAddress ToIpAddress(const Token& word) {
  if (const auto address = softcard::ReadIpAddress(std::string(word.text))) return *address;
  throw SyntaxError{word.offset, Quoted(word.text) + " is no IP address; one looks like 192.0.2.1 or like 2001:db8::1"};
}

softcard::Prefix ToPrefix(const Token& word) {
  const std::size_t slash = word.text.find('/');
  const IpAddress address = ToIpAddress({word.text.substr(0, slash), word.offset});
  if (slash == std::string_view::npos) return {address, address.bits()};
  const auto length =
      static_cast<unsigned>(ToNumber(Behind(word, slash + 1), "length of this prefix", 0, address.bits()));
  const softcard::Prefix prefix{address, length};
  if (!prefix.IsValid()) {
    throw SyntaxError{word.offset, Quoted(word.text) + " has bits behind its length; the prefix is " +
                                       softcard::Text(softcard::Prefix::Around(address, length))};
  }
  return prefix;
}

softcard::Bytes ToBytes(const Token& word) {
  softcard::Bytes bytes;
  std::optional<unsigned> upper;
  for (std::size_t i = 0; i < word.text.size(); ++i) {
    if (word.text[i] == ' ' && !upper) continue;
    const std::optional<unsigned> digit = Digit(word.text[i]);
    if (!digit) {
      throw SyntaxError{word.offset + i,
                        Quoted(word.text.substr(i, 1)) + " is no digit of bytes, which look like 00005e000101"};
    }
    if (upper) bytes.push_back(static_cast<unsigned char>(*upper << 4 | *digit));
    upper = upper ? std::nullopt : digit;
  }
  if (upper) throw SyntaxError{word.offset, "half a byte is left over: two digits are a byte"};
  return bytes;
}

}  // namespace scenario
