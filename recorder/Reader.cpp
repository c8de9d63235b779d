#include "recorder/Reader.h"

#include <charconv>
#include <utility>

#include "calls/Take.h"

namespace recorder {
namespace {

using calls::Take;

constexpr unsigned kDeepest = 64;  // clients' callbacks that call each other
constexpr char kEdited[] = "; the recording was edited or is damaged: take a whole one, or put the line right";

template <typename Number>
bool TakeNumber(std::string_view* text, Number* number) {
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), *number);
  if (error != std::errc()) return false;
  text->remove_prefix(static_cast<std::size_t>(end - text->data()));
  return true;
}

template <typename Number>
bool TakeField(std::string_view* text, std::string_view name, Number* number) {
  return Take(text, name) && TakeNumber(text, number);
}

bool TakeEntry(std::string_view* text, std::string_view name, std::optional<int>* port) {
  if (!Take(text, name)) return false;
  return Take(text, "none") || TakeNumber(text, &port->emplace());
}

/// "statistics notify", "statistics empty".
std::optional<Registration> ReadRegistration(std::string_view text) {
  auto name = TakeWord(&text);
  if (!name || (text != " notify" && text != " empty")) return std::nullopt;
  return Registration{*std::move(name), text == " empty"};
}

std::optional<Standing> ReadStanding(std::string_view text) {
  Standing standing{};
  if (Take(&text, "nothing")) {
    standing.kind = Standing::Kind::kNothing;
  } else if (TakeField(&text, "unit ", &standing.unit)) {
    standing.kind = Standing::Kind::kUnit;
  } else if (TakeField(&text, "destination ", &standing.destination_id)) {
    standing.kind = Standing::Kind::kDestination;
    if (!TakeField(&text, " intf=", &standing.intf) || !TakeField(&text, " egress=", &standing.egress)) {
      return std::nullopt;
    }
  } else if (Take(&text, "client ")) {
    standing.kind = Standing::Kind::kClient;
    auto client = ReadRegistration(std::exchange(text, {}));
    if (!client) return std::nullopt;
    standing.client = *std::move(client);
  } else if (Take(&text, "lim ")) {
    standing.kind = Standing::Kind::kLim;
    const auto word = calls::Read(calls::Kind::kLimId, &text);
    if (!word || !TakeEntry(&text, " port=", &standing.port) || !TakeEntry(&text, " lag=", &standing.lag)) {
      return std::nullopt;
    }
    standing.limid = {static_cast<uint32_t>(std::get<std::int64_t>(*word))};
  } else {
    return std::nullopt;
  }
  return text.empty() ? std::optional(std::move(standing)) : std::nullopt;
}

std::optional<Step> ReadAction(std::string_view text, std::size_t line) {
  Step step;
  step.line = line;
  if (Take(&text, "client ")) {
    auto registration = ReadRegistration(text);
    if (!registration) return std::nullopt;
    step.action = *std::move(registration);
  } else {
    auto request = ReadRequest(text);
    if (!request) return std::nullopt;
    step.action = *std::move(request);
  }
  return step;
}

/// A start and a registration end without a result when all is well.
bool MayLackResult(const Step& step) {
  const auto* const request = std::get_if<Request>(&step.action);
  return !request || request->operation == Operation::kStart;
}

bool IsResult(std::string_view text, const Step& step) {
  if (Take(&text, "threw ")) return true;
  int number = 0;
  return !MayLackResult(step) && TakeNumber(&text, &number) && text.empty();
}

std::optional<Notification> ReadTelling(std::string_view text) {
  auto name = Take(&text, "client ") ? TakeWord(&text) : std::nullopt;
  unsigned id = 0;
  int port = 0;
  if (!name || !TakeField(&text, " is told id=", &id) || !TakeField(&text, " port=", &port) || !text.empty()) {
    return std::nullopt;
  }
  return Notification{*std::move(name), static_cast<int>(id), static_cast<unsigned>(port), {}, {}};
}

}  // namespace

std::string Text(const Registration& registration) {
  return "client " + Word(registration.client) + (registration.empty ? " empty" : " notify");
}

std::string TellText(const Notification& notification) {
  return "client " + Word(notification.client) +
         " is told id=" + std::to_string(static_cast<unsigned>(notification.destination_id)) +
         " port=" + std::to_string(static_cast<int>(notification.port));
}

std::string ActionText(const Step& step) {
  const auto* const request = std::get_if<Request>(&step.action);
  return request ? Text(*request) : Text(std::get<Registration>(step.action));
}

std::string CallsText(const std::string& client, const Step& step) {
  return "client " + Word(client) + " calls " + ActionText(step);
}

std::string GetsText(const std::string& client, const std::string& result) {
  return "client " + Word(client) + " gets " + result;
}

std::string ThrewText(const Notification& notification) {
  return "client " + Word(notification.client) + " threw " + notification.thrown;
}

const Notification* NextNotification(const Step& step, const std::string& client, std::size_t* next) {
  for (std::size_t i = *next; i < step.items.size(); ++i) {
    const auto* const notification = std::get_if<Notification>(&step.items[i].what);
    if (!notification || notification->client != client) continue;
    *next = i + 1;
    return notification;
  }
  return nullptr;
}

Reader::Reader(std::istream& in) : in_(in) {
  std::string text;
  if (!GetLine(&text)) throw BadRecording("the file is empty: nothing was recorded into it; name another");
  std::string_view first = text;
  int version = 0;
  if (!TakeField(&first, "card recording ", &version) || !first.empty()) {
    throw BadRecording("line 1: this is no recording, which begins with \"card recording " +
                       std::to_string(kFormatVersion) + "\"; name a file that HAL_CARD_RECORDING was set to");
  }
  if (version != kFormatVersion) {
    throw BadRecording("line 1: the recording is of format version " + std::to_string(version) +
                       ", which this program does not read; take the one of the recorder's own release");
  }
  header_.module_version = TakeHeaderLine("module ");
  const std::string machine = TakeHeaderLine("machine ");
  std::string_view rest = machine;
  if (!TakeNumber(&rest, &header_.word_bits) || (header_.word_bits != 32 && header_.word_bits != 64) ||
      (rest != "-bit big-endian" && rest != "-bit little-endian")) {
    Refuse("\"" + machine + "\" is no machine, such as \"32-bit big-endian\"");
  }
  header_.big_endian = rest == "-bit big-endian";
  const std::string unit = TakeHeaderLine("unit ");
  rest = unit;
  if (!TakeNumber(&rest, &header_.unit) || !rest.empty()) Refuse("\"" + unit + "\" is no unit");
  header_.begun = TakeHeaderLine("begun ");
  if (!GetLine(&text)) return;
  if (!text.empty()) Refuse("the header does not end with an empty line");
  Advance();
}

void Reader::Refuse(const std::string& why) const {
  throw BadRecording("line " + std::to_string(number_) + ": " + why + kEdited);
}

std::string Reader::TakeHeaderLine(const char* name) {
  std::string text;
  if (!GetLine(&text)) {
    throw BadRecording("line " + std::to_string(number_ + 1) + ": the recording ends in its header, before \"" + name +
                       "\": it was cut; take a whole one");
  }
  std::string_view rest = text;
  if (!Take(&rest, name)) Refuse("the header lacks its line \"" + std::string(name) + "...\"");
  return std::string(rest);
}

bool Reader::GetLine(std::string* text) {
  in_.getline(buffer_.get(), kLongestLine + 1);
  const auto taken = static_cast<std::size_t>(in_.gcount());  // with the line's end
  if (in_.eof() && taken == 0) return false;
  if (in_.eof()) {
    throw BadRecording("line " + std::to_string(number_ + 1) +
                       ": the last line is incomplete: the recording was cut; remove that line to read the others");
  }
  if (in_.fail()) {
    throw BadRecording("line " + std::to_string(number_ + 1) +
                       ": no line of a recording is that long; name a file that HAL_CARD_RECORDING was set to");
  }
  text->assign(buffer_.get(), taken - 1);
  ++number_;
  return true;
}

void Reader::Advance() {
  std::string text;
  line_.reset();
  if (!GetLine(&text)) return;
  line_ = ReadLine(text);
  if (!line_) Refuse("this is no line of a recording, which is a time and a text");
}

std::optional<Entry> Reader::Next() {
  if (!line_) return std::nullopt;
  if (line_->indentation != 0) Refuse("this line stands in no request");
  std::string_view text = line_->text;
  if (Take(&text, "! ")) {
    Remark remark{std::string(text)};
    Advance();
    return remark;
  }
  if (Take(&text, "has ")) {
    auto standing = ReadStanding(text);
    if (!standing) Refuse("\"" + line_->text + "\" tells nothing that a card has");
    Advance();
    return *std::move(standing);
  }
  auto step = ReadAction(text, number_);
  if (!step) Refuse("\"" + line_->text + "\" is no request");
  Advance();
  ReadItems(&*step, 0);
  if (At(kResultIndentation)) {
    std::string_view result = line_->text;
    if (!Take(&result, "=> ") || !IsResult(result, *step)) Refuse("\"" + line_->text + "\" is no result");
    step->result = result;
    Advance();
    step->complete = true;
  } else {
    step->complete = MayLackResult(*step);
  }
  // A recording that ends in a request is what a process leaves that died in it; so is one that stopped.
  if (!step->complete && line_ && line_->text.rfind("! the recording stopped", 0) != 0) {
    Refuse("the request of line " + std::to_string(step->line) + " has no result");
  }
  return *std::move(step);
}

void Reader::ReadItems(Step* step, unsigned depth) {
  while (At(EventIndentation(depth))) {
    const std::size_t number = number_;
    if (ReadTelling(line_->text)) {
      step->items.push_back({number, ReadNotification(depth)});
      continue;
    }
    auto event = calls::ReadEvent(line_->text);
    if (!event) Refuse("\"" + line_->text + "\" is neither a platform call nor a log line nor a notification");
    LearnWords(line_->text);
    step->items.push_back({number, *std::move(event)});
    Advance();
  }
}

void Reader::LearnWords(std::string_view call) {
  const std::size_t result = call.rfind(") = -");
  if (result == std::string_view::npos || call.back() != ')') return;
  call.remove_prefix(result + 4);
  int status = 0;
  if (TakeNumber(&call, &status) && Take(&call, " (")) words_[status] = call.substr(0, call.size() - 1);
}

Notification Reader::ReadNotification(unsigned depth) {
  Notification notification = *ReadTelling(line_->text);
  if (depth == kDeepest) Refuse("clients' callbacks call each other " + std::to_string(kDeepest) + " deep");
  Advance();
  const std::string by_client = "client " + Word(notification.client);
  while (At(EventIndentation(depth))) {
    std::string_view text = line_->text;
    if (Take(&text, "has ")) {
      auto standing = ReadStanding(text);
      if (!standing) Refuse("\"" + line_->text + "\" tells nothing that a card has");
      notification.steps.emplace_back(*std::move(standing));
      Advance();
    } else if (Take(&text, by_client + " calls ")) {
      auto step = ReadCalled(text, depth + 1);
      if (!step) Refuse("\"" + line_->text + "\" is no request");
      notification.steps.emplace_back(*std::move(step));
    } else {
      if (Take(&text, by_client + " threw ")) {
        notification.thrown = text;
        Advance();
      }
      break;
    }
  }
  return notification;
}

std::optional<Step> Reader::ReadCalled(std::string_view text, unsigned depth) {
  auto step = ReadAction(text, number_);
  if (!step) return std::nullopt;
  Advance();
  ReadItems(&*step, depth);
  step->complete = MayLackResult(*step);
  // "client NAME gets RESULT" stands where "client NAME calls ..." does.
  std::string_view result = At(EventIndentation(depth - 1)) ? std::string_view(line_->text) : std::string_view();
  if (Take(&result, "client ") && TakeWord(&result) && Take(&result, " gets ")) {
    if (!IsResult(result, *step)) Refuse("\"" + line_->text + "\" is no result");
    step->result = result;
    step->complete = true;
    Advance();
  }
  return step;
}

}  // namespace recorder
