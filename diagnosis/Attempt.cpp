#include "diagnosis/Attempt.h"

#include <set>
#include <stdexcept>

namespace diagnosis {
namespace {

/// Keeps what the statement of the last line does, and the rows as they were before it.
class LastLine : public scenario::Observer {
 public:
  LastLine(const softcard::Card& card, std::size_t number) : card_(card), number_(number) {}

  void Took(const scenario::Step& step) override {
    const auto* const trace = std::get_if<scenario::Trace>(&step.content);
    if (step.line == number_ && trace != nullptr) {
      attempt.trace = *trace;
      attempt.after = AllRows(card_);
    } else if (step.line + 1 == number_) {
      attempt.before = AllRows(card_);
    }
  }
  void Ended(const std::string&, const scenario::Tally&) override {}

  Attempt attempt;

 private:
  const softcard::Card& card_;
  const std::size_t number_;
};

}  // namespace

Rows AllRows(const softcard::Card& card) {
  Rows rows;
  for (const softcard::TableDescription* table : softcard::Card::TableDescriptions()) {
    if (table->origin == softcard::Origin::kGiven) continue;
    const Rows more = card.Rows(table->name);
    rows.insert(rows.end(), more.begin(), more.end());
  }
  return rows;
}

Attempt Try(const scenario::Language& language, softcard::Card& card, const Situation& situation,
            scenario::Observer* watcher, const scenario::Options& options) {
  std::string text;
  for (const std::string& line : situation.before) text += line + '\n';
  auto parsed = scenario::ParseScenario(language, "situation", text + situation.request + '\n');
  for (const scenario::Complaint& complaint : parsed.complaints) throw std::invalid_argument(complaint.Text());
  if (watcher != nullptr) parsed.scenario.watchers.insert(watcher);
  // Otherwise the first attempt of a process would begin with more on the card than the others.
  scenario::Performer(card).Start();
  LastLine last(card, situation.before.size() + 1);
  scenario::RunScenario(parsed.scenario, card, options, last);
  return last.attempt;
}

Rows Without(const Rows& rows, const Rows& others) {
  std::set<std::string> texts;
  for (const softcard::Row& row : others) texts.insert(softcard::Text(row));
  Rows rest;
  for (const softcard::Row& row : rows) {
    if (texts.count(softcard::Text(row)) == 0) rest.push_back(row);
  }
  return rest;
}

}  // namespace diagnosis
