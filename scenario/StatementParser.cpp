#include "scenario/StatementParser.h"

#include <algorithm>
#include <limits>

#include "scenario/Fields.h"
#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"
#include "softcard/Card.h"

namespace scenario {
namespace {

using Words = std::vector<Token>;

Words Rest(const Words& words, std::size_t from) {
  return {words.begin() + static_cast<std::ptrdiff_t>(std::min(from, words.size())), words.end()};
}

Fault ParseFault(const Words& words) {
  constexpr char kForm[] = "[FUNCTION] [nth=N|every] [call=N] result=STATUS";
  const auto number = [](const Token& word, const char* what) {
    return static_cast<unsigned long>(ToNumber(word, what, 1, std::numeric_limits<unsigned>::max()));
  };
  const Fields fields(words[0], Rest(words, 1), kForm);
  const Token* nth = fields.Find("nth");
  const Token* call = fields.Find("call");
  if (fields.Has(0) == (call != nullptr)) {
    throw SyntaxError{words[0].offset, "\"fail\" needs either FUNCTION or call=N", std::string("fail ") + kForm};
  }
  Fault fault;
  fault.result = ToStatus(*fields.Find("result"), "status");
  if (call != nullptr) {
    if (nth != nullptr) throw SyntaxError{nth->offset, "nth= counts the calls of a function; with call= leave it out"};
    fault.when = Fault::When::kNumbered;
    fault.number = number(*call, "number of a call");
    return fault;
  }
  fault.function = ToFunctionWithResult(fields.words()[0]);
  if (nth != nullptr && nth->text == "every") {
    fault.when = Fault::When::kEvery;
  } else if (nth != nullptr) {
    fault.number = number(*nth, "number of a call");
  }
  return fault;
}

Show ParseShow(const Words& words) {
  const Fields fields(words[0], Rest(words, 1), "TABLE...");
  Show show;
  for (const Token& word : fields.words()) {
    // The ports and LAGs are what the card has, not what requests change.
    if (word.text == "all") {
      show.tables = softcard::Card::TableNames();
      const auto is_given = [](const std::string& table) { return table == "ports" || table == "lags"; };
      show.tables.erase(std::remove_if(show.tables.begin(), show.tables.end(), is_given), show.tables.end());
    } else {
      show.tables.push_back(ToTable(word));
    }
  }
  return show;
}

Send ParseSend(const Words& words) {
  const Fields fields(words[0], Rest(words, 1), "ID [ttl=N] [tos=N] [size=BYTES]");
  constexpr unsigned kHeader = 20;
  const auto number = [](const Token& word, const char* what, unsigned low, unsigned high) {
    return static_cast<unsigned>(ToNumber(word, what, low, high));
  };
  Send send;
  send.id = ToUnsigned(fields.words()[0], "id");
  if (const Token* ttl = fields.Find("ttl")) send.ttl = number(*ttl, "TTL", 0, 255);
  if (const Token* tos = fields.Find("tos")) send.tos = number(*tos, "type of service", 0, 255);
  if (const Token* size = fields.Find("size")) send.size = number(*size, "size of an IPv4 packet", kHeader, 65535);
  return send;
}

std::string TextOf(const Words& words) {
  std::string text;
  for (const Token& word : words) {
    text += text.empty() ? "" : " ";
    text += word.quoted ? Quoted(word.text) : word.text;
  }
  return text;
}

Client ParseClient(const Words& words, const softcard::CardDescription& card);

/// The requests and registrations, separated by ";", that a client makes in its callback.
std::vector<Statement> ParseCalls(const Words& words, const softcard::CardDescription& card) {
  std::vector<Statement> calls;
  for (auto begin = words.begin(); begin != words.end();) {
    const auto end =
        std::find_if(begin, words.end(), [](const Token& word) { return !word.quoted && word.text == ";"; });
    if (begin == end) throw SyntaxError{end->offset, "a request is missing before this semicolon"};
    const Words call(begin, end);
    Statement statement;
    statement.text = TextOf(call);
    if (call[0].text == "client") {
      const Client client = ParseClient(call, card);
      if (client.behaviour == Client::Behaviour::kCalls) {
        throw SyntaxError{call[0].offset,
                          "a client that a callback registers cannot make calls itself; "
                          "register it by a line of its own"};
      }
      statement.action = client;
    } else if (const auto request = ParseRequest(call, card)) {
      statement.action = *request;
    } else {
      auto names = RequestNames();
      names.emplace_back("client");
      throw SyntaxError{call[0].offset, "a callback makes requests, " + Quoted(call[0].text) + " is none" +
                                            Suggest(call[0].text, names)};
    }
    calls.push_back(std::move(statement));
    begin = end == words.end() ? end : end + 1;
  }
  return calls;
}

Client ParseClient(const Words& words, const softcard::CardDescription& card) {
  constexpr char kUsage[] = "client NAME notify | empty | throw TEXT | calls REQUEST [; REQUEST]...";
  if (words.size() < 3) throw SyntaxError{words[0].offset, "\"client\" needs a name and what it does", kUsage};
  Client client;
  client.name = words[1].text;
  const Token& behaviour = words[2];
  const Words rest = Rest(words, 3);
  if (behaviour.text == "calls") {
    client.behaviour = Client::Behaviour::kCalls;
    if (rest.empty()) throw SyntaxError{behaviour.offset, "\"calls\" needs a request", kUsage};
    client.calls = ParseCalls(rest, card);
  } else if (behaviour.text == "throw") {
    client.behaviour = Client::Behaviour::kThrow;
    client.what = Fields(behaviour, rest, "TEXT").words()[0].text;
  } else if (behaviour.text == "notify" || behaviour.text == "empty") {
    client.behaviour = behaviour.text == "empty" ? Client::Behaviour::kEmpty : Client::Behaviour::kNotify;
    Fields(behaviour, rest, "");
  } else {
    throw SyntaxError{
        behaviour.offset,
        "no client does " + Quoted(behaviour.text) + Suggest(behaviour.text, {"notify", "empty", "throw", "calls"}),
        kUsage};
  }
  return client;
}

}  // namespace

Action ParseStatement(const Words& words, const std::vector<std::string>& block,
                      const softcard::CardDescription& card) {
  const std::string& name = words[0].text;
  if (auto request = ParseRequest(words, card)) return *std::move(request);
  if (name == "expect") return ParseExpectation(words, block);
  if (name == "client") return ParseClient(words, card);
  if (name == "fail") return ParseFault(words);
  if (name == "clear-faults") return Fields(words[0], Rest(words, 1), ""), ClearFaults{};
  if (name == "send") return ParseSend(words);
  if (name == "show") return ParseShow(words);
  if (name == "say") return Say{words.size() > 1 ? words[1].text : ""};

  auto names = RequestNames();
  for (const char* other : {"expect", "client", "fail", "clear-faults", "send", "show", "say", "for", "end", "card"}) {
    names.emplace_back(other);
  }
  throw SyntaxError{words[0].offset, "unknown request " + Quoted(name) + Suggest(name, names)};
}

softcard::CardDescription ParseCard(const Words& words) {
  const Fields fields(words[0], Rest(words, 1),
                      "[ports=N] [lags=N] [vrfs=N] [vlans=N] [intfs=N] [egresses=N] [initiators=N] [unit=N] [slot=N] "
                      "[exp-map=N]");
  constexpr long long kMaxPorts = 65535;
  constexpr long long kMaxRows = std::numeric_limits<int>::max();
  softcard::CardDescription card;
  const auto set = [&](const char* key, auto& field, long long high) {
    const Token* value = fields.Find(key);
    if (value != nullptr) field = static_cast<std::decay_t<decltype(field)>>(ToNumber(*value, key, 0, high));
  };
  set("ports", card.front_ports, kMaxPorts);
  set("lags", card.lags, kMaxPorts);
  set("vrfs", card.vrfs, kMaxRows);
  set("vlans", card.vlans, kMaxRows);
  set("intfs", card.intfs, kMaxRows);
  set("egresses", card.egresses, kMaxRows);
  set("initiators", card.initiators, kMaxRows);
  set("unit", card.unit, kMaxRows);
  set("slot", card.slot, kMaxRows);
  set("exp-map", card.exp_map_id, kMaxRows);
  return card;
}

}  // namespace scenario
