#ifndef SCENARIO_SUGGESTION_H
#define SCENARIO_SUGGESTION_H

#include <string>
#include <string_view>
#include <vector>

namespace scenario {

/// `; did you mean "install-vlan"?` for the candidate that is nearest to `word`, or, when none is near,
/// `; it is one of a, b, c`.
std::string Suggest(std::string_view word, const std::vector<std::string>& candidates);

/// With characters that would control a terminal as \xNN, but for tabs.
std::string Printable(std::string_view text);

/// Printable in quotes; of a text that nobody would read to its end the beginning and its size.
std::string Quoted(std::string_view text);

}  // namespace scenario

#endif
