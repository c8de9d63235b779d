#include <limits>

#include "scenario/Fields.h"
#include "scenario/StatementParser.h"
#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

using Kind = Expectation::Kind;

struct ExpectationForm {
  const char* name;
  const char* fields;
  Kind kind;
  bool negatable;
  bool has_block;
};

constexpr ExpectationForm kExpectationForms[] = {
    {"result", "NUMBER", Kind::kResult, false, false},
    {"throw", "TEXT", Kind::kThrow, false, false},
    {"log", "[LEVEL] [TEXT]", Kind::kLog, true, false},
    {"call", "[CALL]", Kind::kCall, true, false},
    {"notification", "[CLIENT] [id=ID] [port=PORT]", Kind::kNotification, true, false},
    {"packet", "TEXT", Kind::kPacket, true, false},
    {"trace", "", Kind::kTrace, false, true},
    {"rows", "TABLE NUMBER", Kind::kRows, false, false},
    {"table", "TABLE", Kind::kTable, false, true},
    {"empty", "[except=TABLE,...]", Kind::kEmpty, false, false},
};

const ExpectationForm* FindExpectation(const std::string& name) {
  for (const ExpectationForm& form : kExpectationForms) {
    if (form.name == name) return &form;
  }
  return nullptr;
}

long long Count(const Token& word, const char* what) {
  return ToNumber(word, what, 0, std::numeric_limits<unsigned>::max());
}

/// A bare word is a function, whatever its arguments and result; a quoted one the whole call.
std::string CallText(const Token& call) { return call.quoted ? call.text : ToFunction(call) + "(*"; }

}  // namespace

Expectation ParseExpectation(const std::vector<Token>& words, const std::vector<std::string>& block) {
  std::size_t at = 1;
  const bool negated = words.size() > at && words[at].text == "no";
  if (negated) ++at;

  std::vector<std::string> names;
  for (const ExpectationForm& form : kExpectationForms) {
    if (!negated || form.negatable) names.emplace_back(form.name);
  }
  const std::string beginning = negated ? "expect no" : "expect";
  if (words.size() == at) throw SyntaxError{words[0].offset, "what is expected is missing" + Suggest("", names)};
  const ExpectationForm* form = FindExpectation(words[at].text);
  if (form == nullptr || (negated && !form->negatable)) {
    throw SyntaxError{words[at].offset, "nothing is expected by " + Quoted(beginning + " " + words[at].text) +
                                            Suggest(words[at].text, names)};
  }

  const Token name{beginning + " " + form->name, words[0].offset};
  const Fields fields(name, {words.begin() + static_cast<std::ptrdiff_t>(at) + 1, words.end()}, form->fields);
  Expectation expectation;
  expectation.kind = form->kind;
  expectation.negated = negated;
  switch (form->kind) {
    case Kind::kResult: expectation.number = ToStatus(fields.words()[0], "result"); break;
    case Kind::kThrow:
    case Kind::kPacket: expectation.text = fields.words()[0].text; break;
    case Kind::kLog:
      if (fields.Has(0)) expectation.number = ToInt(fields.words()[0], "log level");
      if (fields.Has(1)) expectation.text = fields.words()[1].text;
      break;
    case Kind::kCall:
      if (fields.Has(0)) expectation.text = CallText(fields.words()[0]);
      break;
    case Kind::kNotification:
      if (fields.Has(0)) expectation.name = fields.words()[0].text;
      if (const Token* id = fields.Find("id")) expectation.destination = ToUnsigned(*id, "id");
      if (const Token* port = fields.Find("port")) expectation.port = ToInt(*port, "chip port");
      break;
    case Kind::kRows:
      expectation.name = ToTable(fields.words()[0]);
      expectation.number = Count(fields.words()[1], "number of rows");
      break;
    case Kind::kTable:
      expectation.name = ToTable(fields.words()[0]);
      expectation.lines = block;
      break;
    case Kind::kTrace: expectation.lines = block; break;
    case Kind::kEmpty:
      if (const Token* except = fields.Find("except")) {
        for (const Token& table : Elements(*except)) expectation.lines.push_back(ToTable(table));
      }
      break;
  }
  return expectation;
}

bool HasBlock(const std::vector<Token>& words) {
  if (words.size() < 2 || words[0].text != "expect") return false;
  const ExpectationForm* form = FindExpectation(words[1].text);
  return form != nullptr && form->has_block;
}

}  // namespace scenario
