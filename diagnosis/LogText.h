#ifndef DIAGNOSIS_LOG_TEXT_H
#define DIAGNOSIS_LOG_TEXT_H

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace diagnosis {

/// What the holes of a log line are filled with, in order.
using LogValues = std::vector<std::string>;

/// A text of the module's log with holes where the texts of two requests may differ: each number is one, and each word
/// that the platform or a client gave.
class LogText {
 public:
  LogText() = default;
  /// `given`: the words that are no part of the module's own text.
  LogText(std::string_view line, const std::vector<std::string>& given);

  /// Whether it is the whole of `line`, and what its holes are filled with.
  bool Fits(std::string_view line, LogValues& values) const;

  /// The same for the same text.
  const std::string& text() const { return text_; }
  /// How many holes there are for words: the fewer, the more a line that fits is this text's.
  std::size_t words() const { return words_; }

 private:
  std::string text_;
  std::size_t words_ = 0;
};

/// Log texts by number, found in the lines of any log.
class LogTexts {
 public:
  struct Found {
    std::size_t number;  ///< of the text
    LogValues values;
  };

  /// The number of this text, which is added when it is new.
  std::size_t Add(const LogText& text);
  const LogText& text(std::size_t number) const { return texts_[number]; }

  /// The texts that a line ends with, whatever stands before them; those with the fewest holes for words first.
  std::vector<Found> Find(std::string_view line) const;

 private:
  std::deque<LogText> texts_;
  std::unordered_map<std::string_view, std::size_t> numbers_;                     ///< by text
  std::unordered_map<std::string_view, std::vector<std::size_t>> by_first_word_;  ///< letters only
};

}  // namespace diagnosis

#endif
