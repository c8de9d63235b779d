#ifndef RECORDER_PLAYER_H
#define RECORDER_PLAYER_H

#include <set>
#include <string>
#include <vector>

#include "hal/HalBcmCommon.h"
#include "recorder/Reader.h"

namespace recorder {

/// A request's transcript, a line each, indented as in a recording.
using Lines = std::vector<std::string>;

/// A platform that answers as recorded, and the caller that makes the recorded requests on it.
class Player {
 public:
  /// The one that this process's platform functions ask.
  static Player& Get();

  /// The driver's side: makes the request, with all that clients did meanwhile; what happened, line by line.
  Lines Play(const Step& step);
  /// What the recording holds of it.
  static Lines Recorded(const Step& step);
  void Apply(const Standing& standing);
  void Learn(const std::map<int, std::string>& words);

  /// The platform's side: the recorded call that answers this one; null when there is none. Throws what it threw.
  const calls::Call* Answer(calls::Call call);
  /// The same for an object's text, which a recorder does not see when the platform's library binds its own symbols:
  /// the text is then a stand-in, which the next log line that was recorded tells what to make of.
  std::string AnswerText(calls::Call call);
  void Log(calls::LogLine line);
  HalBcmCommon& common() { return common_; }

 private:
  /// A step that is being made.
  struct Frame {
    const Step* step;
    unsigned depth;
    std::size_t next_call = 0;  ///< among its items
    std::size_t next_notification = 0;
    std::size_t next_text = 0;  ///< a log line that holds an object's text
  };

  void Start();
  void Perform(const Step& step, unsigned depth, const std::string* client);
  void Register(const Registration& registration);
  void Notified(const std::string& client, int destination_id, unsigned port);
  bool Knows(const calls::Function& function) const;
  const calls::Call* Find(const calls::Call& call);
  void Add(unsigned indentation, const std::string& text);

  HalBcmCommon common_;
  std::set<std::string> clients_;
  std::vector<Frame> frames_;  ///< none: nobody watches
  Lines lines_;
  bool started_ = false;
};

}  // namespace recorder

#endif
