#include "scenario/Session.h"

#include <stdexcept>
#include <utility>

#include "scenario/Suggestion.h"

namespace scenario {

bool Collector::Add(std::string_view line) {
  if (kept_.size() + line.size() + 1 > kMost) {
    kept_ = {};
    loops_ = 0;
    in_block_ = false;
    first_line_ = ++lines_ + 1;
    throw std::runtime_error("more than " + std::to_string(kMost >> 20) + " MiB of lines without their \"end\"");
  }
  (kept_ += line) += '\n';
  ++lines_;
  if (!in_block_) {
    Open(line);
  } else if (Trim(line) == "end") {
    in_block_ = false;
  }
  return loops_ == 0 && !in_block_;
}

/// As a scenario's reader nests them; what it cannot split opens nothing, and it says why.
void Collector::Open(std::string_view line) try {
  Texts texts;
  const std::vector<Token> words = Tokenize(line, texts);
  if (words.empty()) return;
  const Statement* const statement = language_.Find(words[0].text);
  if (statement == nullptr) return;
  if (statement->kind == Kind::kLoop) ++loops_;
  if (statement->kind == Kind::kEnd && loops_ > 0) --loops_;
  in_block_ = language_.HasBlock(words);
} catch (const SyntaxError&) {
  return;
}

SourceText Collector::Take() {
  loops_ = 0;
  in_block_ = false;
  return {name_, std::exchange(kept_, {}), std::exchange(first_line_, lines_ + 1)};
}

std::string Answer::Why() const {
  std::string why;
  for (const Complaint& complaint : complaints) why += complaint.Text();
  if (more_complaints > 0) why += "and " + std::to_string(more_complaints) + " more errors\n";
  return error.empty() ? why : why + "error: " + Printable(error) + '\n';
}

Session::Session(const Language& language, softcard::Card& card, const Options& options, std::set<Observer*> watchers)
    : language_(language), card_(card), options_(options) {
  options_.endless = true;
  past_.watchers = std::move(watchers);
}

void Session::Begin(Observer& observer) {
  if (running_) return;
  past_.begun = true;
  auto nothing = std::make_unique<Scenario>();
  nothing->language = &language_;
  nothing->card = past_.card;
  nothing->watchers = past_.watchers;
  Do(std::move(nothing), observer);
}

Answer Session::Do(SourceText text, Observer& observer, const Counters& definitions, std::size_t most_statements) {
  ParsedScenario parsed = ParseScenario(language_, std::move(text), definitions, past_, most_statements);
  if (!parsed.complaints.empty()) return {std::move(parsed.complaints), parsed.more_complaints};
  if (!parsed.past.begun) return {};
  past_ = std::move(parsed.past);
  Answer answer;
  const unsigned long failed = tally().failed;
  try {
    Do(std::make_unique<Scenario>(std::move(parsed.scenario)), observer);
  } catch (const std::runtime_error& error) {
    answer.error = error.what();
  }
  answer.failed = tally().failed - failed;
  return answer;
}

void Session::Do(std::unique_ptr<Scenario> scenario, Observer& observer) {
  if (!runner_) runner_.emplace(card_, scenario->card, options_);
  if (runner_->request_line() != kept_line_) {
    kept_ = std::move(done_);
    kept_line_ = runner_->request_line();
  }
  done_ = std::move(scenario);
  const std::vector<SourceLine>& lines = done_->lines;
  const bool is_card = lines.size() == 1 && lines[0].kind == Kind::kCard;
  if (!running_ && !is_card) {
    running_ = past_.started = true;
    if (!done_->starts_itself) runner_->Start(*done_, observer);
  }
  runner_->Do(*done_, observer);
}

}  // namespace scenario
