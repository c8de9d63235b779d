#ifndef CONSOLE_JSON_H
#define CONSOLE_JSON_H

#include <string>

#include "diagnosis/Audit.h"
#include "scenario/Step.h"

/// Parts of the JSON forms that several subcommands write.
namespace console {

/// "[", what `write` makes of each element, "]".
template <typename Elements, typename Write>
std::string JsonList(const Elements& elements, Write write) {
  std::string list = "[";
  for (const auto& element : elements) list += (list.size() > 1 ? ", " : "") + write(element);
  return list + ']';
}

/// {"object": "intf 2", "problem": ..., "cause": ..., "packet": ..., "remedy": ...}
std::string JsonOf(const diagnosis::Finding& finding);
/// The counters of loops: {"I": 1}.
std::string JsonOf(const scenario::Counters& rounds);

}  // namespace console

#endif
