#ifndef RECORDER_FORMAT_H
#define RECORDER_FORMAT_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// A recording's lines, as text. Reader.h makes requests of them.
///
///     card recording 1
///     module 1.0.0
///     machine 64-bit little-endian
///     unit 0
///     begun 2026-11-21T14:13:18.102030Z
///
///           0 start
///          14     fm_init() = 0
///         ...
///        1502 install-vrf 1
///           9     IngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = 0
///           2   => 0
///
/// Behind the header each line begins with its distance in microseconds from the line before, in eight columns or more,
/// and a blank. What follows is the transcript's own line. In it a backslash and a control character are written as
/// \\, \n and \xHH, so that a line is always a line.
namespace recorder {

constexpr int kFormatVersion = 1;

struct Header {
  std::string module_version;
  int word_bits = 0;  ///< 32 or 64
  bool big_endian = false;
  int unit = 0;       ///< of the chip when the recording began
  std::string begun;  ///< UTC
};

/// The machine that this is compiled for; `unit` and the time are the caller's.
Header HeaderOfThisMachine(std::string module_version);
/// All of its lines, the empty one behind it included.
std::string Text(const Header& header);

/// "2026-11-21T14:13:18.102030Z".
std::string TimeText(std::int64_t microseconds_since_1970);

/// Appends a text as a line holds it.
void AppendEscaped(std::string* to, std::string_view text);

/// Appends a line with its line feed.
void AppendLine(std::string* to, std::uint64_t microseconds, unsigned indentation, std::string_view text);

struct Line {
  std::uint64_t microseconds;
  unsigned indentation;
  std::string text;
};
/// Nothing for a line that is none of a recording's.
std::optional<Line> ReadLine(std::string_view line);

/// Columns before what happens during a request that `depth` clients' callbacks have led to; before the result of a
/// request that none has.
constexpr unsigned EventIndentation(unsigned depth) { return 4 + 2 * depth; }
constexpr unsigned kResultIndentation = 2;

}  // namespace recorder

#endif
