#include <utility>

#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

using softcard::LabelAction;
using softcard::Tables;

/// Writes a table that another module of a card fills. Its result is the table's.
template <typename Write>
Action Writes(Write write) {
  return [write](Run& run) {
    return run.performer.Perform([&] {
      return RequestResult{RequestResult::Kind::kNumber, write(run.card, run.card.tables()), ""};
    });
  };
}

struct LabelRow {
  unsigned label;
  LabelAction action;  ///< with its port still a lim id
  limid_t port{};
};

LabelRow ReadLabel(const Fields& fields, const softcard::CardDescription& card) {
  using Kind = LabelAction::Kind;
  const std::vector<Token>& words = fields.words();
  const bool pops = words.size() == 3 && (words[1].text == "pop" || words[1].text == "port");
  if (!pops && words.size() != 2) {
    throw SyntaxError{fields.name().offset, "\"label\" needs a label and what becomes of it", fields.form().usage()};
  }
  const unsigned label = ToUnsigned(words[0], "label");
  if (!pops) return {label, {Kind::kDestination, ToUnsigned(words[1], "id")}};
  if (words[1].text == "pop") return {label, {Kind::kPopVrf, ToUnsigned(words[2], "VRF")}};
  return {label, {Kind::kPopPort, 0}, ToLimId(words[2], card)};
}

std::vector<limid_t> ReadPorts(const Token& list, const softcard::CardDescription& card) {
  std::vector<limid_t> ports;
  for (const Token& port : Elements(list)) ports.push_back(ToLimId(port, card));
  return ports;
}

void AddRoutes(Language& language) {
  language.Add(
      "route", "VRF PREFIX ID", "Routes a VRF's packets for a prefix to a destination", Kind::kRequest,
      [](const Fields& fields, const Surroundings&) {
        const auto& words = fields.words();
        return Writes([vrf = ToUnsigned(words[0], "VRF"), prefix = ToPrefix(words[1]), id = ToUnsigned(words[2], "id")](
                          const softcard::Card&, Tables& tables) { return tables.routes.Set(vrf, prefix, id); });
      });
  language.Add(
      "no-route", "VRF PREFIX", "Takes it away", Kind::kRequest, [](const Fields& fields, const Surroundings&) {
        const auto& words = fields.words();
        return Writes([vrf = ToUnsigned(words[0], "VRF"), prefix = ToPrefix(words[1])](
                          const softcard::Card&, Tables& tables) { return tables.routes.Delete(vrf, prefix); });
      });
}

void AddLabels(Language& language) {
  language.Add(
      "label", "LABEL ID | LABEL pop VRF | LABEL port PORT",
      "Sends an incoming label's packets to a destination; pops it and routes; pops it and sends the frame below",
      Kind::kRequest, [](const Fields& fields, const Surroundings& around) {
        return Writes([row = ReadLabel(fields, around.card)](const softcard::Card& card, Tables& tables) {
          LabelAction action = row.action;
          const bool to_port = action.kind == LabelAction::Kind::kPopPort;
          if (to_port) action.value = static_cast<unsigned>(ToPort(row.port, card));
          return tables.labels.Set(row.label, action, tables.ports);
        });
      });
  language.Add("no-label", "LABEL", "Takes it away", Kind::kRequest, [](const Fields& fields, const Surroundings&) {
    return Writes([label = ToUnsigned(fields.words()[0], "label")](const softcard::Card&, Tables& tables) {
      return tables.labels.Delete(label);
    });
  });
}

void AddPorts(Language& language) {
  language.Add("attach", "PORT ID", "Sends what comes in on a port whole to a destination, a virtual circuit",
               Kind::kRequest, [](const Fields& fields, const Surroundings& around) {
                 const auto& words = fields.words();
                 return Writes([port = ToLimId(words[0], around.card), id = ToUnsigned(words[1], "id")](
                                   const softcard::Card& card, Tables& tables) {
                   return tables.attachments.Set(ToPort(port, card), id, tables.ports);
                 });
               });
  language.Add(
      "no-attach", "PORT", "Routes it again", Kind::kRequest, [](const Fields& fields, const Surroundings& around) {
        return Writes([port = ToLimId(fields.words()[0], around.card)](const softcard::Card& card, Tables& tables) {
          return tables.attachments.Delete(ToPort(port, card));
        });
      });
  language.Add("lag", "LAG PORT,...", "Makes a LAG of ports: the packets of a flow leave by the same one",
               Kind::kRequest, [](const Fields& fields, const Surroundings& around) {
                 const auto& words = fields.words();
                 return Writes([lag = ToLimId(words[0], around.card), ports = ReadPorts(words[1], around.card)](
                                   const softcard::Card& card, Tables& tables) {
                   std::vector<int> members;
                   members.reserve(ports.size());
                   for (const limid_t port : ports) members.push_back(ToPort(port, card));
                   return tables.lags.Set(ToPort(lag, card), members, tables.ports);
                 });
               });
}

}  // namespace

void AddCardTables(Language& language) {
  AddRoutes(language);
  AddLabels(language);
  AddPorts(language);
}

}  // namespace scenario
