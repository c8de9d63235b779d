#include "diagnosis/OnCard.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "recorder/Format.h"
#include "recorder/Refusals.h"
#include "recorder/Thrown.h"

namespace diagnosis {
namespace {

using Lines = std::vector<std::string>;
using recorder::Notification;
using recorder::Step;
using scenario::RequestResult;

void Append(Lines* lines, unsigned indentation, const std::string& text) {
  recorder::AppendEscaped(&lines->emplace_back(indentation, ' '), text);
}

bool IsAccess(const calls::Event& event) {
  const auto* const call = std::get_if<calls::Call>(&event);
  return call && call->function->purpose == calls::Purpose::kAccess;
}

/// What is recorded of a step, in order: its events and notes of clients.
template <typename TellEvent, typename TellNote>
void Walk(const Step& step, unsigned depth, const TellEvent& tell_event, const TellNote& tell_note) {
  for (const recorder::Item& item : step.items) {
    const auto* const notification = std::get_if<Notification>(&item.what);
    if (!notification) {
      tell_event(depth, std::get<calls::Event>(item.what));
      continue;
    }
    tell_note(depth, TellText(*notification));
    for (const auto& called : notification->steps) {
      const auto* const inner = std::get_if<Step>(&called);
      if (!inner) continue;
      tell_note(depth, CallsText(notification->client, *inner));
      Walk(*inner, depth + 1, tell_event, tell_note);
      if (!inner->result.empty()) tell_note(depth, recorder::GetsText(notification->client, inner->result));
    }
    if (!notification->thrown.empty()) tell_note(depth, ThrewText(*notification));
  }
}

std::vector<const calls::Call*> CallsOf(const Step& step) {
  std::vector<const calls::Call*> calls;
  Walk(
      step, 0,
      [&](unsigned, const calls::Event& event) {
        if (const auto* call = std::get_if<calls::Call>(&event)) calls.push_back(call);
      },
      [](unsigned, const std::string&) {});
  return calls;
}

/// Each platform has its own texts for interface objects: in a log line that was made of one stands "*" for it.
class ObjectTexts {
 public:
  /// Whether it was such a text, which the next log line that holds it is made of.
  bool Take(const calls::Event& event) {
    if (!IsAccess(event)) return false;
    const auto* const text = std::get_if<std::string>(&std::get<calls::Call>(event).result);
    if (text) text_ = *text;
    return true;
  }
  /// Whether there is "*" in it now.
  bool Blank(calls::Event* event) {
    auto* const line = std::get_if<calls::LogLine>(event);
    const std::size_t found = line && !text_.empty() ? line->text.find(text_) : std::string::npos;
    if (found == std::string::npos) return false;
    line->text.replace(found, text_.size(), 1, kAnyText);
    text_.clear();
    return true;
  }

  static constexpr char kAnyText = '*';

 private:
  std::string text_;
};

bool Has(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

/// The recorder does not see every object's text: a line that holds one is then known by what is around it now.
void BlankUnseen(Lines* recorded, const Lines& now, const std::string& blanked) {
  if (Has(*recorded, blanked)) return;
  const std::size_t at = blanked.find(ObjectTexts::kAnyText);
  const std::string before = blanked.substr(0, at);
  const std::string after = blanked.substr(at + 1);
  for (std::string& line : *recorded) {
    if (Has(now, line) || line.size() < before.size() + after.size() || line.compare(0, at, before) != 0) continue;
    if (line.compare(line.size() - after.size(), after.size(), after) != 0) continue;
    line = blanked;
    return;
  }
}

Lines TellRecorded(const Step& step) {
  Lines lines;
  ObjectTexts texts;
  Walk(
      step, 0,
      [&](unsigned depth, calls::Event event) {
        if (texts.Take(event)) return;
        texts.Blank(&event);
        if (auto* call = std::get_if<calls::Call>(&event)) call->output = {};
        Append(&lines, recorder::EventIndentation(depth), calls::UnmarkedText(event));
      },
      [&](unsigned depth, const std::string& note) { Append(&lines, recorder::EventIndentation(depth), note); });
  if (!step.result.empty()) Append(&lines, recorder::kResultIndentation, "=> " + step.result);
  return lines;
}

}  // namespace

OnCard::OnCard(softcard::Card& card, const softcard::CardDescription& description)
    : card_(card), record_(card.log(), softcard::CallLog::Recording::kAll), performer_(card) {
  card_.Reset(description);
}

OnCard::Made OnCard::Make(const Step& step) {
  const auto* const request = std::get_if<recorder::Request>(&step.action);
  const bool is_start = request && request->operation == recorder::Operation::kStart;
  if (is_start && started_) {
    throw recorder::BadRecording(
        "line " + std::to_string(step.line) +
        ": the module starts a second time; replay the recordings of two processes one by one");
  }
  if (!is_start && !started_) performer_.Start();
  started_ = true;
  for (const recorder::Refusal& refusal : recorder::Refusals(step)) {
    card_.faults().FailNth(refusal.function->name, refusal.nth, refusal.result);
  }
  ids_.Begin(CallsOf(step));
  Made made;
  made.recorded = TellRecorded(step);
  made.now = TellNow(performer_.Perform([&] { return Perform(step); }), &made.recorded);
  made.other_ids = ids_.TakeOthers();
  card_.faults().Clear();
  return made;
}

RequestResult OnCard::Perform(const Step& step) {
  frames_.push_back({&step});
  RequestResult result;
  try {
    if (const auto* request = std::get_if<recorder::Request>(&step.action)) {
      const int number = recorder::Make(*request, *HalL3MplsEncapsulationInterface::GetInstance());
      if (request->operation != recorder::Operation::kStart) result = {RequestResult::Kind::kNumber, number, ""};
    } else {
      Register(std::get<recorder::Registration>(step.action));
    }
  } catch (const std::exception&) {
    result = {RequestResult::Kind::kThrew, 0, recorder::DescribeAgain()};
  }
  frames_.pop_back();
  return result;
}

void OnCard::Register(const recorder::Registration& registration) {
  clients_.insert(registration.client);
  scenario::Performer::Callback callback;
  if (!registration.empty) {
    callback = [this, name = registration.client](int id, unsigned port) { Notified(name, id, port); };
  }
  performer_.Register(registration.client, std::move(callback));
}

void OnCard::Notified(const std::string& client, int destination_id, unsigned port) {
  performer_.Note(TellText(Notification{client, destination_id, port}));
  const Notification* const recorded =
      NextNotification(*frames_.back().step, client, &frames_.back().next_notification);
  if (!recorded) return;
  for (const auto& called : recorded->steps) {
    if (const auto* standing = std::get_if<recorder::Standing>(&called)) {
      Apply(*standing);
      continue;
    }
    const Step& step = std::get<Step>(called);
    performer_.Note(CallsText(client, step));
    const RequestResult result = performer_.Deeper([&] { return Perform(step); });
    if (result.kind != RequestResult::Kind::kNone) performer_.Note(recorder::GetsText(client, result.Text()));
  }
  if (recorded->thrown.empty()) return;
  performer_.Note(ThrewText(*recorded));
  recorder::ThrowAgain(recorded->thrown);
}

void OnCard::Apply(const recorder::Standing& standing) {
  using Kind = recorder::Standing::Kind;
  const auto& records = card_.common().destination_id_correlators;
  switch (standing.kind) {
    case Kind::kNothing:
      for (const std::string& name : clients_) performer_.Register(name, nullptr);
      break;
    case Kind::kUnit: card_.common().unit = standing.unit; break;
    case Kind::kDestination:
      if (records.count(static_cast<int>(standing.destination_id)) > 0) break;
      throw recorder::BadRecording("destination " + std::to_string(standing.destination_id) +
                                   " was installed before the recording began, and no card can be told how; take a "
                                   "recording from the start of its process, or replay this one as it is");
    case Kind::kClient: Register(standing.client); break;
    case Kind::kLim: break;  // the card has tables of its own
  }
}

Lines OnCard::TellNow(scenario::Trace trace, Lines* recorded) {
  Lines lines;
  Lines blanked;
  ObjectTexts texts;
  for (scenario::TraceLine& line : trace.lines) {
    const unsigned indentation = recorder::EventIndentation(line.depth);
    if (const auto* note = std::get_if<scenario::ClientNote>(&line.what)) {
      Append(&lines, indentation, note->text);
      continue;
    }
    auto& event = std::get<calls::Event>(line.what);
    if (texts.Take(event)) continue;
    const bool is_blanked = texts.Blank(&event);
    ids_.Translate(&event);
    Append(&lines, indentation, calls::UnmarkedText(event));
    if (is_blanked) blanked.push_back(lines.back());
  }
  if (trace.result.kind != RequestResult::Kind::kNone) {
    Append(&lines, recorder::kResultIndentation, "=> " + trace.result.Text());
  }
  for (const std::string& line : blanked) BlankUnseen(recorded, lines, line);
  return lines;
}

}  // namespace diagnosis
