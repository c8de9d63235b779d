#ifndef RECORDER_SCENARIO_H
#define RECORDER_SCENARIO_H

#include <map>
#include <string>
#include <vector>

#include "calls/Value.h"
#include "recorder/Reader.h"

namespace recorder {

/// Writes the scenario that makes a recording's requests, with a fault for each call that was refused, and expects what
/// was recorded of them: calls, log lines, notifications and results. Ids of interfaces and egress objects, which are
/// the card's to choose, and their texts may be any.
class ScenarioWriter {
 public:
  /// `names` are the lim ids' in expected calls; they live as long as the writer.
  explicit ScenarioWriter(const calls::LimIdNames& names) : names_(names) {}

  void Begin(const Header& header);
  void Comment(const std::string& text);
  /// A line as it stands.
  void Line(const std::string& line) { text_ += line + '\n'; }
  /// `expects`: and what is recorded of it. Throws BadRecording for what no scenario can tell.
  void Write(const Entry& entry, bool expects = true);
  const std::string& text() const { return text_; }

 private:
  void Write(const Step& step, bool expects);
  void Write(const Standing& standing);
  void LetClientsBehave(const Step& step);
  void LetBehave(const Notification& notification, std::size_t line);
  void Register(const std::string& client, const std::string& behaviour, std::size_t line);
  void Plan(const Step& step);
  void Expect(const Step& step);

  const calls::LimIdNames& names_;
  std::string text_;
  std::map<std::string, std::string> behaviours_;  ///< of clients that are registered
  std::vector<std::string> object_texts_;          ///< that the platform gave in the request
};

}  // namespace recorder

#endif
