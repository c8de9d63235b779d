#include "recorder/Scenario.h"

#include <map>
#include <utility>

#include "recorder/Refusals.h"

namespace recorder {
namespace {

constexpr char kAnything = '*';

/// A text that a line of a scenario expects: what would mean something else there is quoted, and control characters,
/// which no line has, may be anything.
std::string Literal(std::string_view text) {
  std::string literal;
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < ' ') {
      literal += kAnything;
      continue;
    }
    if (c == kAnything || c == '\\') literal += '\\';
    if (c == '$') literal += c;
    literal += c;
  }
  return literal;
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

/// Puts anything in the place of the number behind `name`, of which there is one in a call at most.
void LetAnyNumberFollow(std::string* text, const std::string& name) {
  const std::size_t found = text->find(name);
  if (found == std::string::npos) return;
  const std::size_t begin = found + name.size();
  const std::size_t end = text->find_first_not_of("0123456789", begin);
  if (end != begin) text->replace(begin, end == std::string::npos ? end : end - begin, 1, kAnything);
}

std::string Pattern(calls::Call call, const calls::LimIdNames& names) {
  call.output = {};
  std::string text = Literal(calls::UnmarkedText(call, names));
  LetAnyNumberFollow(&text, "(intf=");
  LetAnyNumberFollow(&text, ", intf=");
  LetAnyNumberFollow(&text, "(egress=");
  if (call.function->result == calls::Result::kId) LetAnyNumberFollow(&text, ") = ");
  return text;
}

/// The module names an interface in these log lines.
void LetAnyIntfBeLogged(std::string* line) {
  LetAnyNumberFollow(line, "(intf id(");
  LetAnyNumberFollow(line, ": Intf changed, so updated it to ");
}

[[noreturn]] void Refuse(std::size_t line, const std::string& what) {
  throw BadRecording("line " + std::to_string(line) + ": " + what +
                     " cannot be told by a scenario; replay the recording as it is");
}

[[noreturn]] void RefuseName(std::size_t line) { Refuse(line, "a client whose name is no plain word"); }

}  // namespace

void ScenarioWriter::Begin(const Header& header) {
  Comment("Recorded " + header.begun + " on a " + std::to_string(header.word_bits) + "-bit " +
          (header.big_endian ? "big" : "little") + "-endian machine.");
}

void ScenarioWriter::Comment(const std::string& text) {
  text_ += "# ";
  AppendEscaped(&text_, text);
  text_ += '\n';
}

void ScenarioWriter::Write(const Entry& entry, bool expects) {
  if (const auto* step = std::get_if<Step>(&entry)) Write(*step, expects);
  if (const auto* standing = std::get_if<Standing>(&entry)) Write(*standing);
  if (const auto* remark = std::get_if<Remark>(&entry)) Comment("The recording says: " + remark->text);
}

void ScenarioWriter::Write(const Step& step, bool expects) {
  if (const auto* registration = std::get_if<Registration>(&step.action)) {
    return Register(registration->client, registration->empty ? "empty" : "notify", step.line);
  }
  LetClientsBehave(step);
  object_texts_.clear();
  Plan(step);
  text_ += ActionText(step) + '\n';
  if (!step.complete) {
    Comment("The recording ends here.");
    return;
  }
  if (!expects) return;
  constexpr std::string_view kThrew = "threw ";
  if (step.result.compare(0, kThrew.size(), kThrew) == 0) {
    text_ += "expect throw " + Quoted(Literal(step.result.substr(kThrew.size()))) + '\n';
  } else if (!step.result.empty()) {
    text_ += "expect result " + step.result + '\n';
  }
  text_ += "expect trace\n";
  Expect(step);
  text_ += "end\n";
}

void ScenarioWriter::Write(const Standing& standing) {
  if (standing.kind == Standing::Kind::kClient) {
    Register(standing.client.client, standing.client.empty ? "empty" : "notify", 0);
  }
  if (standing.kind == Standing::Kind::kDestination) {
    throw BadRecording("destination " + std::to_string(standing.destination_id) +
                       " was installed before the recording began, and no scenario can tell how; take a recording from "
                       "the start of its process");
  }
}

void ScenarioWriter::Register(const std::string& client, const std::string& behaviour, std::size_t line) {
  if (Word(client) != client) RefuseName(line);
  behaviours_[client] = behaviour;
  text_ += "client " + client + ' ' + behaviour + '\n';
}

void ScenarioWriter::LetClientsBehave(const Step& step) {
  for (const Item& item : step.items) {
    if (const auto* notification = std::get_if<Notification>(&item.what)) LetBehave(*notification, item.line);
  }
}

void ScenarioWriter::LetBehave(const Notification& notification, std::size_t line) {
  std::string behaviour;
  for (const auto& called : notification.steps) {
    const auto* const step = std::get_if<Step>(&called);
    if (!step) continue;
    const auto* const registration = std::get_if<Registration>(&step->action);
    if (registration && Word(registration->client) != registration->client) RefuseName(line);
    behaviour += (behaviour.empty() ? "calls " : " ; ") + ActionText(*step);
    LetClientsBehave(*step);
  }
  constexpr std::string_view kError = "std::runtime_error: ";
  const std::string& thrown = notification.thrown;
  if (!thrown.empty()) {
    if (!behaviour.empty() || thrown.compare(0, kError.size(), kError) != 0 || thrown.find('\n') != std::string::npos) {
      Refuse(line, "how the client " + notification.client + " threw");
    }
    behaviour = "throw " + Quoted(thrown.substr(kError.size()));
  }
  if (behaviour.empty()) behaviour = "notify";
  if (behaviours_[notification.client] != behaviour) Register(notification.client, behaviour, line);
}

/// A fault for each call that was refused, in a client's callback too.
void ScenarioWriter::Plan(const Step& step) {
  for (const Refusal& refusal : Refusals(step)) {
    const bool is_lookup = refusal.function->result == calls::Result::kFound;
    text_ += std::string("fail ") + refusal.function->name +
             (refusal.nth > 1 ? " nth=" + std::to_string(refusal.nth) : "") +
             " result=" + (is_lookup ? "false" : std::to_string(refusal.result)) + '\n';
  }
}

void ScenarioWriter::Expect(const Step& step) {
  for (const Item& item : step.items) {
    if (const auto* notification = std::get_if<Notification>(&item.what)) {
      text_ += "  " + TellText(*notification) + '\n';
      const std::string client = "client " + notification->client;
      for (const auto& called : notification->steps) {
        const auto* const inner = std::get_if<Step>(&called);
        if (!inner) continue;
        text_ += "  " + client + " calls " + ActionText(*inner) + '\n';
        Expect(*inner);
        if (!inner->result.empty()) text_ += "  " + client + " gets " + Literal(inner->result) + '\n';
      }
      continue;
    }
    const auto& event = std::get<calls::Event>(item.what);
    const auto* const call = std::get_if<calls::Call>(&event);
    if (call && call->function->purpose == calls::Purpose::kAccess) {
      const auto* const told = std::get_if<std::string>(&call->result);
      if (told && !told->empty()) object_texts_.push_back(Literal(*told));
      continue;
    }
    std::string line = call ? Pattern(*call, names_) : Literal(calls::UnmarkedText(event, names_));
    if (!call) LetAnyIntfBeLogged(&line);
    for (const std::string& of_object : object_texts_) {
      const std::size_t found = call ? std::string::npos : line.find(of_object);
      if (found != std::string::npos) line.replace(found, of_object.size(), 1, kAnything);
    }
    text_ += "  " + line + '\n';
  }
}

}  // namespace recorder
