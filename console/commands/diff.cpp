#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "calls/Json.h"
#include "console/Json.h"
#include "console/TextPrinter.h"
#include "console/commands/Commands.h"
#include "diagnosis/State.h"
#include "diagnosis/StateDifference.h"
#include "scenario/Suggestion.h"

namespace console {
namespace {

using Groups = std::vector<diagnosis::DestinationChanges>;

/// How many rows there are of each kind.
struct DiffTally {
  unsigned long added = 0;
  unsigned long removed = 0;
  unsigned long changed = 0;
};

DiffTally Count(const Groups& groups) {
  DiffTally tally;
  for (const diagnosis::DestinationChanges& group : groups) {
    for (const auto& [took, put] : group.rows) ++(took && put ? tally.changed : took ? tally.removed : tally.added);
  }
  return tally;
}

void PrintRow(char mark, const std::optional<softcard::Row>& row) {
  if (row) std::cout << "  " << mark << ' ' << scenario::Printable(softcard::Text(*row)) << '\n';
}

void PrintText(const Groups& groups) {
  for (const diagnosis::DestinationChanges& group : groups) {
    std::cout << (group.destination ? "destination " + std::to_string(*group.destination) : "no destination's")
              << ":\n";
    for (const auto& [took, put] : group.rows) {
      PrintRow('-', took);
      PrintRow('+', put);
    }
  }
  const DiffTally tally = Count(groups);
  std::cout << (groups.empty() ? "no difference"
                               : Counted(tally.added, "row") + " added, " + std::to_string(tally.removed) +
                                     " removed, " + std::to_string(tally.changed) + " changed")
            << '\n';
}

std::string ChangeJson(const diagnosis::RowChange& change) {
  const auto& [took, put] = change;
  return "{\"table\": " + calls::JsonString((took ? *took : *put).table->name) +
         (took ? ", \"before\": " + softcard::Json(*took) : "") + (put ? ", \"after\": " + softcard::Json(*put) : "") +
         '}';
}

/// As docs/diff-1.schema.json describes it.
void PrintJson(const std::string& before, const std::string& after, const Groups& groups) {
  const DiffTally tally = Count(groups);
  std::cout << "{\"version\": 1, \"before\": " << calls::JsonString(before)
            << ", \"after\": " << calls::JsonString(after) << ", \"destinations\": "
            << JsonList(
                   groups,
                   [](const diagnosis::DestinationChanges& group) {
                     return "{\"destination\": " + (group.destination ? std::to_string(*group.destination) : "null") +
                            ", \"rows\": " + JsonList(group.rows, ChangeJson) + '}';
                   })
            << ", \"added\": " << tally.added << ", \"removed\": " << tally.removed
            << ", \"changed\": " << tally.changed << "}\n";
}

ExitStatus Diff(const std::string& before, const std::string& after, bool json) {
  const diagnosis::Rows old_rows = diagnosis::ReadState(before);
  const Groups groups = diagnosis::ByDestination(old_rows, diagnosis::ReadState(after));
  if (json) {
    PrintJson(before, after, groups);
  } else {
    PrintText(groups);
  }
  return Flushed(groups.empty() ? kAllHold : kSomeFailed);
}

}  // namespace

void AddDiff(CLI::App& app, Console& console) {
  CLI::App* const diff = app.add_subcommand("diff", "Tells how two saved states of a card differ");
  const auto before = std::make_shared<std::string>();
  const auto after = std::make_shared<std::string>();
  diff->add_option("BEFORE", *before, "A file that the statement save wrote")->required()->type_name("");
  diff->add_option("AFTER", *after, "Another one")->required()->type_name("");
  const auto json = std::make_shared<bool>(false);
  diff->add_flag("--json", *json, "Print a JSON object, for programs");
  diff->callback([&console, before, after, json] { console.status = Diff(*before, *after, *json); });
}

}  // namespace console
