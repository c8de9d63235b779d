#include "serve/Conversation.h"

#include <sstream>
#include <stdexcept>
#include <utility>

#include "scenario/Completion.h"
#include "scenario/Tokens.h"

namespace serve {
namespace {

constexpr std::string_view kComplete = "complete ";

}  // namespace

Conversation::Conversation(scenario::Session& session, const scenario::Language& language, const Formats& formats,
                           const std::string& name)
    : session_(session),
      language_(language),
      formats_(formats),
      format_(formats.at("text").get()),
      lines_(language, name) {}

std::string Conversation::Answer(std::string_view line) try {
  if (const auto chosen = formats_.find(scenario::Trim(line)); lines_.empty() && chosen != formats_.end()) {
    format_ = chosen->second.get();
    return format_->Last(Ending::kDone);
  }
  if (line.substr(0, kComplete.size()) == kComplete) return Complete(line.substr(kComplete.size()));
  return lines_.Add(line) ? Do(lines_.Take()) : format_->Last(Ending::kMore);
} catch (const std::runtime_error& error) {
  return Refusal(error.what());
}

std::string Conversation::Refusal(const std::string& reason) const {
  scenario::Answer answer;
  answer.error = reason;
  return format_->Refusal(answer) + format_->Last(Ending::kUnusable);
}

std::string Conversation::Do(scenario::SourceText text) {
  std::ostringstream out;
  const auto steps = format_->Steps(out);
  const scenario::Answer answer = session_.Do(std::move(text), *steps, {}, kMostStatements);
  if (answer.unusable()) out << format_->Refusal(answer);
  out << format_->Last(answer.unusable() ? Ending::kUnusable : answer.failed == 0 ? Ending::kDone : Ending::kFailed);
  return out.str();
}

std::string Conversation::Complete(std::string_view line) const {
  std::string words;
  for (const std::string& word : scenario::Completions(language_, session_.card(), line)) words += word + '\n';
  return words + format_->Last(Ending::kDone);
}

}  // namespace serve
