#ifndef SERVE_FORMAT_H
#define SERVE_FORMAT_H

#include <iosfwd>
#include <map>
#include <memory>
#include <string>

#include "scenario/Session.h"

namespace serve {

/// How what a client asked ended; the numbers are the exit statuses of a command that asks.
enum class Ending {
  kDone = 0,
  kFailed = 1,    ///< an expectation does not hold
  kUnusable = 2,  ///< nothing was done, or not all of it
  kMore = 3,      ///< the lines have begun something that has no end yet
};

/// How a client's answers are written: for people, for programs.
class Format {
 public:
  virtual ~Format() = default;

  /// Writes steps to `out`, in whole lines.
  virtual std::unique_ptr<scenario::Observer> Steps(std::ostream& out) const = 0;
  /// Why nothing was done, or not all of it, in whole lines.
  virtual std::string Refusal(const scenario::Answer& answer) const = 0;
  /// The last line of an answer, with its end; no other line of it is the same.
  virtual std::string Last(Ending ending) const = 0;
};

/// By the word that a client chooses it with; "text" is one of them, and the one that a client has that chooses none.
using Formats = std::map<std::string, std::unique_ptr<Format>, std::less<>>;

}  // namespace serve

#endif
