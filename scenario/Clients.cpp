#include <algorithm>
#include <stdexcept>
#include <utility>

#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"

namespace scenario {
namespace {

using Words = std::vector<Token>;

/// A request or a registration that a client makes in its callback.
struct ClientCall {
  std::string text;
  ReadStatement statement;
};

struct UpdateClient {
  enum class Behaviour { kNotify, kEmpty, kThrow, kCalls };

  std::string name;
  Behaviour behaviour = Behaviour::kNotify;
  std::string what;               ///< of kThrow's exception
  std::vector<ClientCall> calls;  ///< of kCalls, in order
};

void BeCalled(const UpdateClient& client, Run& run, int destination, unsigned port) {
  Performer& performer = run.performer;
  performer.Told(client.name, destination, port);
  if (client.behaviour == UpdateClient::Behaviour::kThrow) throw std::runtime_error(client.what);
  // A client whose own requests notify it does not start over.
  if (!performer.BeginsToCall(client.name)) return;
  for (const ClientCall& call : client.calls) {
    const auto make = [&] { return std::get<Trace>(call.statement.action(run)).result; };
    performer.Note("client " + client.name + " calls " + call.text);
    if (call.statement.kind == Kind::kClient) {
      make();
    } else {
      performer.Note("client " + client.name + " gets " + performer.Deeper(make).Text());
    }
  }
  performer.EndsToCall(client.name);
}

Action Registration(UpdateClient client) {
  return [client = std::move(client)](Run& run) {
    return run.performer.Perform([&] {
      Performer::Callback callback = [client, &run](int id, unsigned port) { BeCalled(client, run, id, port); };
      if (client.behaviour == UpdateClient::Behaviour::kEmpty) callback = nullptr;
      run.performer.Register(client.name, std::move(callback));
      return RequestResult{};
    });
  };
}

std::string TextOf(const Words& words) {
  std::string text;
  for (const Token& word : words) {
    text += text.empty() ? "" : " ";
    text += word.quoted ? '"' + std::string(word.text) + '"' : std::string(word.text);
  }
  return text;
}

bool IsForCallbacks(Kind kind) { return kind == Kind::kStart || kind == Kind::kRequest || kind == Kind::kClient; }

/// One request or registration of a callback.
ReadStatement ReadClientCall(const Words& words, const Language& language, const Surroundings& around) {
  const Statement* const statement = language.Find(words[0].text);
  if (statement == nullptr || !IsForCallbacks(statement->kind)) {
    std::vector<std::string> names;
    for (const Statement& known : language.statements()) {
      if (IsForCallbacks(known.kind)) names.push_back(known.form.name());
    }
    throw SyntaxError{words[0].offset, "a callback makes requests, " + Quoted(words[0].text) + " is none" +
                                           Suggest(words[0].text, names)};
  }
  ReadStatement read = language.Read(words, around);
  if (read.kind == Kind::kClient && words[2].text == "calls") {
    throw SyntaxError{words[0].offset,
                      "a client that a callback registers cannot make calls itself; "
                      "register it by a line of its own"};
  }
  return read;
}

/// The requests and registrations, separated by ";", that a client makes in its callback.
std::vector<ClientCall> ReadCalls(const Words& words, const Language& language, const Surroundings& around) {
  std::vector<ClientCall> calls;
  for (auto begin = words.begin(); begin != words.end();) {
    const auto end =
        std::find_if(begin, words.end(), [](const Token& word) { return !word.quoted && word.text == ";"; });
    if (begin == end) throw SyntaxError{end->offset, "a request is missing before this semicolon"};
    const Words call(begin, end);
    calls.push_back({TextOf(call), ReadClientCall(call, language, around)});
    begin = end == words.end() ? end : end + 1;
  }
  return calls;
}

Action ReadClient(const Fields& fields, const Language& language, const Surroundings& around) {
  using Behaviour = UpdateClient::Behaviour;
  const Words& words = fields.words();
  const std::string& usage = fields.form().usage();
  if (words.size() < 2) throw SyntaxError{fields.name().offset, "\"client\" needs a name and what it does", usage};
  UpdateClient client{std::string(words[0].text), {}, "", {}};
  around.clients.insert(client.name);
  const Token& behaviour = words[1];
  const Words what(words.begin() + 1, words.end());
  if (behaviour.text == "calls") {
    client.behaviour = Behaviour::kCalls;
    if (words.size() == 2) throw SyntaxError{behaviour.offset, "\"calls\" needs a request", usage};
    client.calls = ReadCalls({words.begin() + 2, words.end()}, language, around);
  } else if (behaviour.text == "throw") {
    client.behaviour = Behaviour::kThrow;
    client.what = Fields(Form("throw", "TEXT"), what, 1).words()[0].text;
  } else if (behaviour.text == "notify" || behaviour.text == "empty") {
    client.behaviour = behaviour.text == "empty" ? Behaviour::kEmpty : Behaviour::kNotify;
    Fields(Form(std::string(behaviour.text), ""), what, 1);
  } else {
    throw SyntaxError{
        behaviour.offset,
        "no client does " + Quoted(behaviour.text) + Suggest(behaviour.text, {"notify", "empty", "throw", "calls"}),
        usage};
  }
  return Registration(std::move(client));
}

}  // namespace

void AddClients(Language& language) {
  language.Add(
      "client", "NAME notify | empty | throw TEXT | calls REQUEST [; REQUEST]...",
      "Registers an update client: what it does when it is told of a reprogrammed tunnel", Kind::kClient,
      [&language](const Fields& fields, const Surroundings& around) { return ReadClient(fields, language, around); });
}

}  // namespace scenario
