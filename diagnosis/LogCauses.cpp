#include "diagnosis/LogCauses.h"

#include <algorithm>
#include <charconv>
#include <map>

#include "diagnosis/Sweep.h"

namespace diagnosis {
namespace {

/// From what was said in a run to what the log says at the same place.
using Renamed = std::map<std::string, std::string>;

constexpr char kUnknown[] = "?";

bool IsDigitOfId(char c) { return c >= '0' && c <= '9'; }

Renamed RenamedIn(const LoggedRun& run, const std::vector<LogValues>& lines, std::size_t from) {
  Renamed renamed;
  for (std::size_t i = 0; i < lines.size() && from + i < run.values.size(); ++i) {
    const LogValues& known = run.values[from + i];
    for (std::size_t hole = 0; hole < std::min(known.size(), lines[i].size()); ++hole) {
      const auto [place, is_new] = renamed.emplace(known[hole], lines[i][hole]);
      if (!is_new && place->second != lines[i][hole]) place->second = kUnknown;
    }
  }
  return renamed;
}

/// The text with the log's numbers in place of the run's.
std::string Rename(const std::string& text, const Renamed& renamed) {
  std::string result;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t end = i;
    while (end < text.size() && IsDigitOfId(text[end])) ++end;
    if (end == i) {
      result += text[i++];
      continue;
    }
    const auto known = renamed.find(text.substr(i, end - i));
    const std::string number = known == renamed.end() ? kUnknown : known->second;
    // Not even the sign of a status is known.
    if (number == kUnknown && !result.empty() && result.back() == '-') result.pop_back();
    result += number;
    i = end;
  }
  return result;
}

/// The status that the log shows; 0 when it shows none.
int ShownStatus(const LoggedRun& run, const std::vector<LogValues>& lines, std::size_t from) {
  if (!run.status_place || run.status_place->first < from || run.status_place->first - from >= lines.size()) return 0;
  const LogValues& values = lines[run.status_place->first - from];
  int status = 0;
  if (run.status_place->second < values.size()) {
    const std::string& digits = values[run.status_place->second];
    std::from_chars(digits.data(), digits.data() + digits.size(), status);
  }
  return -status;
}

std::string StatusText(int status) { return calls::Text(calls::Kind::kStatus, calls::Value(std::int64_t{status})); }

/// What is known of a status of which these were tried: "negative", "-16 (Unavailable)", "negative or positive".
std::string StatusText(const calls::Function& function, std::vector<int> tried) {
  if (function.result == calls::Result::kFound) return "not found";
  std::sort(tried.begin(), tried.end());
  std::vector<std::string> words;
  for (const int status : tried) {
    const bool plain = status == ResultsOfRefusal(function, false)[0];
    std::string word = plain ? "negative" : status > 0 ? "positive" : StatusText(status);
    const bool told =
        status < 0 && !plain && std::count(tried.begin(), tried.end(), ResultsOfRefusal(function, false)[0]) > 0;
    if (!told && std::find(words.begin(), words.end(), word) == words.end()) words.push_back(std::move(word));
  }
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " or ") + word;
  return text;
}

/// A cause, and the statuses that make it.
struct Possible {
  LogCause cause;
  const calls::Function* refused;
  int shown;  ///< the status that the log shows; 0: it shows none
  std::vector<int> tried;

  void TellStatus() {
    if (refused != nullptr) cause.status = shown < 0 ? StatusText(shown) : StatusText(*refused, tried);
  }
};

Possible PossibleOf(const LoggedRun& run, const std::vector<LogValues>& lines, std::size_t from) {
  LogCause cause{run.request, "", run.nth, "", run.result, run.harmless, {}, run.titles};
  if (run.refused != nullptr) cause.call = run.refused->name;
  const Renamed renamed = RenamedIn(run, lines, from);
  for (const Finding& finding : run.findings) {
    cause.left.push_back({Rename(finding.object, renamed), Rename(finding.problem, renamed), "", finding.packet,
                          Rename(finding.remedy, renamed)});
  }
  return {std::move(cause), run.refused, ShownStatus(run, lines, from), run.statuses};
}

bool AreAlike(const LogCause& one, const LogCause& other) {
  return one.request == other.request && one.call == other.call && one.nth == other.nth && one.result == other.result &&
         one.harmless == other.harmless &&
         std::equal(one.left.begin(), one.left.end(), other.left.begin(), other.left.end(),
                    [](const Finding& a, const Finding& b) {
                      return a.object == b.object && a.problem == b.problem && a.remedy == b.remedy;
                    });
}

}  // namespace

std::vector<LogCause> CausesOf(const std::vector<LoggedWay>& ways) {
  std::vector<Possible> possibles;
  for (const LoggedWay& way : ways) {
    Possible possible = PossibleOf(*way.run, *way.lines, way.from);
    const auto known = std::find_if(possibles.begin(), possibles.end(), [&](const Possible& one) {
      return one.shown == possible.shown && AreAlike(one.cause, possible.cause);
    });
    if (known == possibles.end()) {
      possibles.push_back(std::move(possible));
      continue;
    }
    known->tried.insert(known->tried.end(), possible.tried.begin(), possible.tried.end());
    for (std::string& title : possible.cause.titles) {
      auto& titles = known->cause.titles;
      if (std::find(titles.begin(), titles.end(), title) == titles.end()) titles.push_back(std::move(title));
    }
  }
  std::vector<LogCause> causes;
  for (Possible& possible : possibles) {
    possible.TellStatus();
    causes.push_back(std::move(possible.cause));
  }
  return causes;
}

}  // namespace diagnosis
