#include "console/ChangesPrinter.h"

#include <ostream>

#include "scenario/Suggestion.h"

namespace console {
namespace {

void PrintRows(std::ostream& out, const char* mark, const char* colour, const diagnosis::Rows& rows) {
  for (const softcard::Row& row : rows) {
    out << "  " << colour << mark << scenario::Printable(softcard::Text(row)) << (*colour == '\0' ? "" : "\033[0m")
        << '\n';
  }
}

}  // namespace

diagnosis::RequestChanges ChangesPrinter(const softcard::Card& card, std::ostream& out, bool colour) {
  return {card, [&out, colour](const scenario::Step&, const diagnosis::Changes& changes) {
            PrintRows(out, "- ", colour ? "\033[31m" : "", changes.took);
            PrintRows(out, "+ ", colour ? "\033[32m" : "", changes.put);
          }};
}

}  // namespace console
