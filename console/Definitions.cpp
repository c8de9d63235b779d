#include "console/Definitions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <charconv>
#include <iostream>

#include "scenario/Suggestion.h"

namespace console {
namespace {

/// What $NAME can name.
bool IsName(const std::string& text) {
  const auto fits = [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; };
  return !text.empty() && std::isdigit(static_cast<unsigned char>(text[0])) == 0 &&
         std::all_of(text.begin(), text.end(), fits);
}

}  // namespace

void AddDefinitions(CLI::App& subcommand, std::vector<std::string>& definitions) {
  subcommand.add_option("-D,--define", definitions, "NAME=NUMBER: a name that $NAME and $(...) read")
      ->type_name("DEFINITION")
      ->expected(1)
      ->allow_extra_args(false)
      ->take_all();
}

std::optional<scenario::Counters> ReadDefinitions(const std::vector<std::string>& texts) {
  scenario::Counters definitions;
  for (const std::string& text : texts) {
    const std::size_t equals = std::min(text.find('='), text.size());
    const std::string name = text.substr(0, equals);
    const char* const end = text.data() + text.size();
    std::int64_t value = 0;
    const bool has_value = equals < text.size();
    const auto [stop, error] = std::from_chars(text.data() + equals + (has_value ? 1 : 0), end, value);
    const bool twice =
        std::any_of(definitions.begin(), definitions.end(), [&](const auto& d) { return d.first == name; });
    if (!IsName(name) || !has_value || stop != end || error != std::errc{} || twice) {
      std::cerr << "softcard: -D takes NAME=NUMBER, each name once; " << scenario::Quoted(text) << " does not fit\n";
      return std::nullopt;
    }
    definitions.emplace_back(name, value);
  }
  return definitions;
}

}  // namespace console
