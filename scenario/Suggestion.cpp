#include "scenario/Suggestion.h"

#include <algorithm>
#include <cctype>
#include <numeric>

namespace scenario {
namespace {

/// Insertions, deletions, replacements and swaps of neighbours that lead from one word to the other; letters' case is
/// no difference.
std::size_t Distance(std::string_view from, std::string_view to) {
  const auto same = [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
  };
  std::vector<std::size_t> before;               // the row before the last
  std::vector<std::size_t> last(to.size() + 1);  // distances of the part of `from` so far to each beginning of `to`
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::vector<std::size_t> row(to.size() + 1, i + 1);
    for (std::size_t j = 0; j < to.size(); ++j) {
      row[j + 1] = std::min({last[j] + (same(from[i], to[j]) ? 0 : 1), last[j + 1] + 1, row[j] + 1});
      const bool swapped = i > 0 && j > 0 && same(from[i], to[j - 1]) && same(from[i - 1], to[j]);
      if (swapped) row[j + 1] = std::min(row[j + 1], before[j - 1] + 1);
    }
    before = std::move(last);
    last = std::move(row);
  }
  return last.back();
}

bool Near(std::string_view word, std::string_view candidate) {
  if (word.size() > 2 * candidate.size() + 1) return false;
  // "CreateIntf" for "IntfManager::CreateIntf": half the name was left out, not misspelled.
  if (word.size() >= 4 && candidate.find(word) != std::string_view::npos) return true;
  return Distance(word, candidate) <= std::max<std::size_t>(1, candidate.size() / 3);
}

}  // namespace

std::string Suggest(std::string_view word, const std::vector<std::string>& candidates) {
  constexpr std::size_t kLongest = 200;  // of a misspelled name
  word = word.substr(0, kLongest);
  const auto nearest = std::min_element(candidates.begin(), candidates.end(), [&](const auto& a, const auto& b) {
    return std::make_pair(!Near(word, a), Distance(word, a)) < std::make_pair(!Near(word, b), Distance(word, b));
  });
  if (nearest != candidates.end() && Near(word, *nearest)) return "; did you mean " + Quoted(*nearest) + "?";
  std::string all;
  for (const std::string& candidate : candidates) all += (all.empty() ? "; it is one of " : ", ") + candidate;
  return all;
}

std::string Printable(std::string_view text) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string printable;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    // In UTF-8 the controls beyond ASCII are 0xC2 and a byte below 0xA0.
    const bool after_c2 = i > 0 && text[i - 1] == '\xC2' && byte >= 0x80 && byte < 0xa0;
    if ((byte < 0x20 && byte != '\t') || byte == 0x7f || after_c2) {
      if (after_c2) printable.pop_back();
      printable += "\\x";
      printable += kDigits[byte >> 4];
      printable += kDigits[byte & 0xf];
    } else {
      printable += text[i];
    }
  }
  return printable;
}

std::string Quoted(std::string_view text) {
  constexpr std::size_t kMost = 300;
  if (text.size() <= kMost) return '"' + Printable(text) + '"';
  return '"' + Printable(text.substr(0, kMost)) + "...\" (" + std::to_string(text.size()) + " bytes)";
}

}  // namespace scenario
