#ifndef CONSOLE_DEFINITIONS_H
#define CONSOLE_DEFINITIONS_H

#include <optional>
#include <string>
#include <vector>

#include "scenario/Substitution.h"

namespace CLI {
class App;
}

namespace console {

/// The option -D of a subcommand, which may be given several times, each time with one definition.
void AddDefinitions(CLI::App& subcommand, std::vector<std::string>& definitions);

/// "NAME=NUMBER" each. Nothing, and a message on standard error, when one is none.
std::optional<scenario::Counters> ReadDefinitions(const std::vector<std::string>& texts);

}  // namespace console

#endif
