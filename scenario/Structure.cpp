#include "scenario/Structure.h"

#include <algorithm>
#include <cctype>
#include <limits>

#include "scenario/Statements.h"
#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"
#include "softcard/Limits.h"

namespace scenario {

Loop ReadLoop(const std::vector<Token>& words, const Form& form) {
  const std::string& usage = form.usage();
  if (words.size() != 4 || words[2].text != "in") throw SyntaxError{words[0].offset, "this is no loop", usage};
  const std::string_view counter = words[1].text;
  if (!std::all_of(counter.begin(), counter.end(), [](unsigned char c) { return std::isalpha(c) || c == '_'; })) {
    throw SyntaxError{words[1].offset, Quoted(counter) + " is no name for a counter; use letters", usage};
  }
  const Token& range = words[3];
  const std::size_t dots = range.text.find("..");
  if (dots == std::string_view::npos) throw SyntaxError{range.offset, Quoted(range.text) + " is no range", usage};
  const auto number = [&](const Token& word) {
    constexpr long long kHighest = std::numeric_limits<unsigned>::max();
    return ToNumber(word, "end of a range", -kHighest, kHighest);
  };
  Loop loop{std::string(counter), number({range.text.substr(0, dots), range.offset}), number(Behind(range, dots + 2))};
  if (loop.first > loop.last) throw SyntaxError{range.offset, "this range is empty; a loop counts up", usage};
  return loop;
}

namespace {

/// "7,6,5,4,3,2,1,0": the EXP for each priority of a packet.
void ReadExpMap(const Token& list, std::array<unsigned char, 8>* map) {
  const std::vector<Token> exps = Elements(list);
  if (exps.size() != map->size()) {
    throw SyntaxError{list.offset, "exp= needs an EXP for each of the 8 priorities, such as 0,1,2,3,4,5,6,7"};
  }
  std::transform(exps.begin(), exps.end(), map->begin(), [](const Token& exp) {
    return static_cast<unsigned char>(ToNumber(exp, "EXP", 0, softcard::kLastExp));
  });
}

}  // namespace

softcard::CardDescription ReadCard(const Fields& fields) {
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
  set("routes", card.routes, kMaxRows);
  set("labels", card.labels, kMaxRows);
  set("unit", card.unit, kMaxRows);
  set("slot", card.slot, kMaxRows);
  set("exp-map", card.exp_map_id, kMaxRows);
  if (const Token* exps = fields.Find("exp")) ReadExpMap(*exps, &card.exp_maps[card.exp_map_id]);
  return card;
}

void AddStructure(Language& language) {
  language.Add("for", "COUNTER in FIRST..LAST", "Repeats the lines up to its end; $COUNTER is the round", Kind::kLoop);
  language.Add("include", "FILE", "Stands for the lines of a file, whose name is relative to the including file",
               Kind::kInclude);
  language.Add("end", "", "Ends a loop, or the lines of an expectation", Kind::kEnd);
  language.Add("card",
               "[ports=N] [lags=N] [vrfs=N] [vlans=N] [intfs=N] [egresses=N] [initiators=N] [routes=N] "
               "[labels=N] [unit=N] [slot=N] [exp-map=N] [exp=EXP,...]",
               "Describes the card, before everything else", Kind::kCard);
}

}  // namespace scenario
