#ifndef RECORDER_READER_H
#define RECORDER_READER_H

#include <cstddef>
#include <istream>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "calls/Event.h"
#include "recorder/Format.h"
#include "recorder/Request.h"

namespace recorder {

/// A recording that cannot be used: "line 12: what is wrong; what to do".
class BadRecording : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Registration {
  std::string client;
  bool empty;
};

/// What was on the card without having been seen to come: "has ...".
struct Standing {
  enum class Kind {
    kNothing,      ///< no destination and no client but those that follow
    kUnit,         ///< the chip's unit
    kDestination,  ///< an installed destination's record
    kClient,
    kLim,  ///< a lim id's entries in the tables of ports and of LAGs
  };
  Kind kind;
  int unit = 0;
  unsigned destination_id = 0;
  int intf = 0;
  int egress = 0;
  Registration client{};
  limid_t limid{};
  std::optional<int> port{};
  std::optional<int> lag{};
};

/// "! ...": what the recording lacks, in words.
struct Remark {
  std::string text;
};

struct Item;

/// A request, or the registration of a client, and what happened meanwhile.
struct Step {
  std::size_t line = 0;
  std::variant<Request, Registration> action;
  std::vector<Item> items{};
  std::string result{};   ///< "0", "threw std::out_of_range: HAL ID not found"; empty for what has none
  bool complete = false;  ///< false: the recording ends in it
};

/// What a client's callback was told and did.
struct Notification {
  std::string client;
  int destination_id = 0;
  unsigned port = 0;
  std::vector<std::variant<Step, Standing>> steps{};
  std::string thrown{};  ///< empty: it returned
};

struct Item {
  std::size_t line;
  std::variant<calls::Event, Notification> what;
};

using Entry = std::variant<Step, Standing, Remark>;

/// The texts of what is in a recording.
std::string Text(const Registration& registration);
std::string TellText(const Notification& notification);
std::string ActionText(const Step& step);
/// What a client does in its callback, what it gets for it, and what it throws.
std::string CallsText(const std::string& client, const Step& step);
std::string GetsText(const std::string& client, const std::string& result);
std::string ThrewText(const Notification& notification);

/// The client's next notification among the step's items from `*next` on, which is then behind it; null when there is
/// none.
const Notification* NextNotification(const Step& step, const std::string& client, std::size_t* next);

/// Reads a recording one outermost request at a time, so that its length does not matter.
class Reader {
 public:
  /// Reads the header. Throws BadRecording, as Next() does.
  explicit Reader(std::istream& in);

  const Header& header() const { return header_; }
  /// The words that the recorded platform has for the statuses that have come so far.
  const std::map<int, std::string>& words() const { return words_; }
  /// Nothing at the end.
  std::optional<Entry> Next();

 private:
  bool GetLine(std::string* text);
  void Advance();
  std::string TakeHeaderLine(const char* name);
  void ReadItems(Step* step, unsigned depth);
  Notification ReadNotification(unsigned depth);
  std::optional<Step> ReadCalled(std::string_view text, unsigned depth);
  void LearnWords(std::string_view call);
  [[noreturn]] void Refuse(const std::string& why) const;
  bool At(unsigned indentation) const { return line_ && line_->indentation == indentation; }

  static constexpr std::size_t kLongestLine = 1 << 20;

  std::istream& in_;
  const std::unique_ptr<char[]> buffer_{new char[kLongestLine + 1]};
  Header header_;
  std::map<int, std::string> words_;
  std::size_t number_ = 0;
  std::optional<Line> line_;  ///< the next one that nobody has taken
};

}  // namespace recorder

#endif
