#include "recorder/Format.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <ctime>

namespace recorder {
namespace {

constexpr std::size_t kTimeColumns = 8;

bool IsEscaped(char c) { return c == '\\' || static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

/// What stands in a line as it is, up to the first character that does not; `*text` loses it.
std::string_view TakePlain(std::string_view* text) {
  const auto end = static_cast<std::size_t>(
      std::find_if(text->begin(), text->end(), [](char c) { return IsEscaped(c); }) - text->begin());
  const std::string_view plain = text->substr(0, end);
  text->remove_prefix(end);
  return plain;
}

void AppendEscape(std::string* to, char c) {
  constexpr char kDigits[] = "0123456789abcdef";
  *to += '\\';
  if (c == '\\') {
    *to += '\\';
  } else if (c == '\n') {
    *to += 'n';
  } else {
    const auto byte = static_cast<unsigned char>(c);
    *to += 'x';
    *to += kDigits[byte >> 4];
    *to += kDigits[byte & 0xF];
  }
}

/// The character behind a backslash, which `*text` loses.
std::optional<char> TakeEscaped(std::string_view* text) {
  if (text->empty()) return std::nullopt;
  const char c = text->front();
  text->remove_prefix(1);
  if (c == '\\') return '\\';
  if (c == 'n') return '\n';
  if (c != 'x' || text->size() < 2) return std::nullopt;
  unsigned byte = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + 2, byte, 16);
  if (error != std::errc() || end != text->data() + 2) return std::nullopt;
  text->remove_prefix(2);
  return static_cast<char>(byte);
}

bool IsBigEndian() {
  const std::uint16_t one = 1;
  return *reinterpret_cast<const unsigned char*>(&one) == 0;
}

}  // namespace

Header HeaderOfThisMachine(std::string module_version) {
  Header header;
  header.module_version = std::move(module_version);
  header.word_bits = static_cast<int>(sizeof(void*) * 8);
  header.big_endian = IsBigEndian();
  return header;
}

std::string Text(const Header& header) {
  return "card recording " + std::to_string(kFormatVersion) + "\nmodule " + header.module_version + "\nmachine " +
         std::to_string(header.word_bits) + "-bit " + (header.big_endian ? "big" : "little") + "-endian\nunit " +
         std::to_string(header.unit) + "\nbegun " + header.begun + "\n\n";
}

std::string TimeText(std::int64_t microseconds_since_1970) {
  constexpr std::int64_t kSecond = 1000000;
  const auto seconds = static_cast<std::time_t>(microseconds_since_1970 / kSecond);
  std::tm time{};
  gmtime_r(&seconds, &time);
  char date[32];
  char fraction[32];
  std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &time);
  std::snprintf(fraction, sizeof fraction, ".%06dZ", static_cast<int>(microseconds_since_1970 % kSecond));
  return std::string(date) + fraction;
}

void AppendEscaped(std::string* to, std::string_view text) {
  for (to->append(TakePlain(&text)); !text.empty(); to->append(TakePlain(&text))) {
    AppendEscape(to, text.front());
    text.remove_prefix(1);
  }
}

void AppendLine(std::string* to, std::uint64_t microseconds, unsigned indentation, std::string_view text) {
  char digits[20];
  const char* const end = std::to_chars(digits, digits + sizeof digits, microseconds).ptr;
  const auto length = static_cast<std::size_t>(end - digits);
  if (length < kTimeColumns) to->append(kTimeColumns - length, ' ');
  to->append(digits, length);
  to->append(1 + indentation, ' ');
  AppendEscaped(to, text);
  *to += '\n';
}

std::optional<Line> ReadLine(std::string_view line) {
  Line result{};
  const std::size_t number = line.find_first_not_of(' ');
  if (number == std::string_view::npos) return std::nullopt;
  const auto [end, error] = std::from_chars(line.data() + number, line.data() + line.size(), result.microseconds);
  if (error != std::errc() || end == line.data() + line.size() || *end != ' ') return std::nullopt;
  line.remove_prefix(static_cast<std::size_t>(end - line.data()) + 1);
  const std::size_t text = line.find_first_not_of(' ');
  if (text == std::string_view::npos) return std::nullopt;
  result.indentation = static_cast<unsigned>(text);
  line.remove_prefix(text);
  result.text.reserve(line.size());
  for (result.text += TakePlain(&line); !line.empty(); result.text += TakePlain(&line)) {
    if (line.front() != '\\') return std::nullopt;
    line.remove_prefix(1);
    const auto escaped = TakeEscaped(&line);
    if (!escaped) return std::nullopt;
    result.text += *escaped;
  }
  return result;
}

}  // namespace recorder
