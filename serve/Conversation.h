#ifndef SERVE_CONVERSATION_H
#define SERVE_CONVERSATION_H

#include <string>
#include <string_view>

#include "scenario/Session.h"
#include "serve/Format.h"

namespace serve {

/// What a client says and gets, line by line. A line is a statement of the scenario language or a part of one; or the
/// name of a format, in which all answers are from then on; or "complete LINE", answered with what the last word of
/// LINE can be, each on a line of its own.
class Conversation {
 public:
  /// With the rounds of its loops; what comes at once must not keep others waiting.
  static constexpr std::size_t kMostStatements = 10'000;

  /// All of them outlive it. `name` stands in messages in the place of a file's.
  Conversation(scenario::Session& session, const scenario::Language& language, const Formats& formats,
               const std::string& name);

  /// The answer to a line without its end: whole lines, of which the last one says how it ended.
  std::string Answer(std::string_view line);
  /// What says that a client went too far, as the end of its conversation.
  std::string Refusal(const std::string& reason) const;

 private:
  std::string Do(scenario::SourceText text);
  std::string Complete(std::string_view line) const;

  scenario::Session& session_;
  const scenario::Language& language_;
  const Formats& formats_;
  const Format* format_;
  scenario::Collector lines_;
};

}  // namespace serve

#endif
