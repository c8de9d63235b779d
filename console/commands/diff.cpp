#include <iostream>
#include <memory>
#include <string>

#include "console/TextPrinter.h"
#include "console/commands/Commands.h"
#include "diagnosis/State.h"
#include "diagnosis/StateDifference.h"
#include "scenario/Suggestion.h"

namespace console {
namespace {

void PrintRow(char mark, const std::optional<softcard::Row>& row) {
  if (row) std::cout << "  " << mark << ' ' << scenario::Printable(softcard::Text(*row)) << '\n';
}

ExitStatus Diff(const std::string& before, const std::string& after) {
  const diagnosis::Rows old_rows = diagnosis::ReadState(before);
  const auto groups = diagnosis::ByDestination(old_rows, diagnosis::ReadState(after));
  unsigned long added = 0, removed = 0, changed = 0;
  for (const diagnosis::DestinationChanges& group : groups) {
    std::cout << (group.destination ? "destination " + std::to_string(*group.destination) : "no destination's")
              << ":\n";
    for (const auto& [took, put] : group.rows) {
      ++(took && put ? changed : took ? removed : added);
      PrintRow('-', took);
      PrintRow('+', put);
    }
  }
  if (groups.empty()) {
    std::cout << "no difference\n";
    return kAllHold;
  }
  std::cout << Counted(added, "row") << " added, " << removed << " removed, " << changed << " changed\n";
  return kSomeFailed;
}

}  // namespace

void AddDiff(CLI::App& app, Console& console) {
  CLI::App* const diff = app.add_subcommand("diff", "Tells how two saved states of a card differ");
  const auto before = std::make_shared<std::string>();
  const auto after = std::make_shared<std::string>();
  diff->add_option("BEFORE", *before, "A file that the statement save wrote")->required()->type_name("");
  diff->add_option("AFTER", *after, "Another one")->required()->type_name("");
  diff->callback([&console, before, after] { console.status = Diff(*before, *after); });
}

}  // namespace console
