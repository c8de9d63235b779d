#ifndef SCENARIO_COMPLETION_H
#define SCENARIO_COMPLETION_H

#include <string>
#include <string_view>
#include <vector>

#include "scenario/Language.h"
#include "softcard/Card.h"

namespace scenario {

/// What a line's last word can be, given those before it: names of statements, fields that are not there yet ("vlan="),
/// and values that the card has now, as its destinations' ids ("vlan=100"). In the order in which they are listed
/// elsewhere; none where anything may stand. Each begins with what is there of the word, after the last comma of a
/// list. A line that ends with a blank has a last word that is empty.
std::vector<std::string> Completions(const Language& language, const softcard::Card& card, std::string_view line);

}  // namespace scenario

#endif
