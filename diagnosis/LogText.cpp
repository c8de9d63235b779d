#include "diagnosis/LogText.h"

#include <algorithm>

namespace diagnosis {
namespace {

constexpr char kNumber = '\1';
constexpr char kWords = '\2';

// The log is ASCII where it is the module's, whatever the locale says.
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

/// The length of the number that the text begins with: "200", "0x00002A"; 0: it begins with none. A sign is part of the
/// text: a refusal may be told from a success by it.
std::size_t NumberSize(std::string_view text) {
  std::size_t size = 0;
  if (text.substr(0, 2) == "0x") {
    size = 2;
    while (size < text.size() && IsHexDigit(text[size])) ++size;
    return size;
  }
  while (size < text.size() && IsDigit(text[size])) ++size;
  return size;
}

std::string_view FirstWord(std::string_view text) {
  std::size_t size = 0;
  while (size < text.size() && IsLetter(text[size])) ++size;
  return text.substr(0, size);
}

bool FitsFrom(std::string_view pattern, std::string_view line, LogValues& values) {
  while (!pattern.empty() && pattern[0] != kWords) {
    if (pattern[0] == kNumber) {
      const std::size_t size = NumberSize(line);
      if (size == 0) return false;
      values.emplace_back(line.substr(0, size));
      line.remove_prefix(size);
    } else {
      if (line.empty() || line[0] != pattern[0]) return false;
      line.remove_prefix(1);
    }
    pattern.remove_prefix(1);
  }
  if (pattern.empty()) return line.empty();
  pattern.remove_prefix(1);
  const std::size_t filled = values.size();
  // From the end: what follows the words is rarely among them.
  for (std::size_t size = line.size() + 1; size-- > 0;) {
    values.resize(filled);
    values.emplace_back(line.substr(0, size));
    if (FitsFrom(pattern, line.substr(size), values)) return true;
    if (pattern.empty()) return false;
  }
  return false;
}

}  // namespace

LogText::LogText(std::string_view line, const std::vector<std::string>& given) {
  for (std::size_t i = 0; i < line.size();) {
    const auto word = std::find_if(given.begin(), given.end(), [&](const std::string& one) {
      return !one.empty() && line.substr(i, one.size()) == one;
    });
    if (word != given.end()) {
      text_ += kWords;
      ++words_;
      i += word->size();
    } else if (const std::size_t size = NumberSize(line.substr(i)); size > 0) {
      text_ += kNumber;
      i += size;
    } else {
      text_ += line[i++];
    }
  }
}

bool LogText::Fits(std::string_view line, LogValues& values) const {
  values.clear();
  return FitsFrom(text_, line, values);
}

std::size_t LogTexts::Add(const LogText& text) {
  const auto known = numbers_.find(text.text());
  if (known != numbers_.end()) return known->second;
  const std::size_t number = texts_.size();
  const std::string& kept = texts_.emplace_back(text).text();
  numbers_.emplace(kept, number);
  auto& alike = by_first_word_[FirstWord(kept)];
  const auto after = [&](std::size_t one, std::size_t other) { return texts_[one].words() < texts_[other].words(); };
  alike.insert(std::upper_bound(alike.begin(), alike.end(), number, after), number);
  return number;
}

std::vector<LogTexts::Found> LogTexts::Find(std::string_view line) const {
  while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t')) line.remove_suffix(1);
  std::vector<Found> found;
  LogValues values;
  for (std::size_t i = 0; i < line.size() && found.empty();) {
    if (!IsLetter(line[i])) {
      ++i;
      continue;
    }
    const std::string_view word = FirstWord(line.substr(i));
    if (const auto alike = by_first_word_.find(word); alike != by_first_word_.end()) {
      for (const std::size_t number : alike->second) {
        if (texts_[number].Fits(line.substr(i), values)) found.push_back({number, values});
      }
    }
    i += word.size();
  }
  return found;
}

}  // namespace diagnosis
