#include <utility>

#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

using softcard::Card;
using softcard::LabelAction;
using softcard::Tables;

/// Writes a table that another module of a card fills: `row` is then there, or no longer. The result is the table's.
template <typename Write, typename MakeRow>
Action Writes(Write write, MakeRow row, bool is_there) {
  return [write, row, is_there](Run& run) {
    Trace trace = run.performer.Perform([&] {
      return RequestResult{RequestResult::Kind::kNumber, write(run.card, run.card.tables()), ""};
    });
    if (trace.result.number == 0) trace.own_row = {row(run.card), is_there};
    return trace;
  };
}
template <typename Write, typename MakeRow>
Action Puts(Write write, MakeRow row) {
  return Writes(write, row, true);
}
template <typename Write, typename MakeRow>
Action Takes(Write write, MakeRow row) {
  return Writes(write, row, false);
}

struct LabelRow {
  unsigned label;
  LabelAction action;  ///< with its port still a lim id
  limid_t port{};
};

LabelRow ReadLabel(const Fields& fields, const softcard::CardDescription& card) {
  using Kind = LabelAction::Kind;
  const std::vector<Token>& words = fields.words();
  const bool pops = words.size() > 1 && (words[1].text == "pop" || words[1].text == "port");
  if (words.size() != (pops ? 3 : 2)) {
    throw SyntaxError{fields.name().offset, "\"label\" needs a label and what becomes of it", fields.form().usage()};
  }
  const unsigned label = ToUnsigned(words[0], "label");
  if (!pops) return {label, {Kind::kDestination, ToUnsigned(words[1], "id")}};
  if (words[1].text == "pop") return {label, {Kind::kPopVrf, ToUnsigned(words[2], "VRF")}};
  return {label, {Kind::kPopPort, 0}, ToLimId(words[2], card)};
}

LabelAction ActionOf(const LabelRow& row, const Card& card) {
  LabelAction action = row.action;
  if (action.kind == LabelAction::Kind::kPopPort) action.value = static_cast<unsigned>(ToPort(row.port, card));
  return action;
}

std::vector<limid_t> ReadPorts(const Token& list, const softcard::CardDescription& card) {
  std::vector<limid_t> ports;
  for (const Token& port : Elements(list)) ports.push_back(ToLimId(port, card));
  return ports;
}

std::vector<int> ToPorts(const std::vector<limid_t>& limids, const Card& card) {
  std::vector<int> ports;
  ports.reserve(limids.size());
  for (const limid_t limid : limids) ports.push_back(ToPort(limid, card));
  return ports;
}

void AddRoutes(Language& language) {
  language.Add("route", "VRF PREFIX ID", "Routes a VRF's packets for a prefix to a destination", Kind::kRequest,
               [](const Fields& fields, const Surroundings&) {
                 const auto& words = fields.words();
                 const unsigned vrf = ToUnsigned(words[0], "VRF"), id = ToUnsigned(words[2], "id");
                 const softcard::Prefix prefix = ToPrefix(words[1]);
                 return Puts([=](const Card&, Tables& tables) { return tables.routes.Set(vrf, prefix, id); },
                             [=](const Card&) { return softcard::MakeRow(vrf, prefix, id); });
               });
  language.Add("no-route", "VRF PREFIX", "Takes it away", Kind::kRequest,
               [](const Fields& fields, const Surroundings&) {
                 const unsigned vrf = ToUnsigned(fields.words()[0], "VRF");
                 const softcard::Prefix prefix = ToPrefix(fields.words()[1]);
                 return Takes([=](const Card&, Tables& tables) { return tables.routes.Delete(vrf, prefix); },
                              [=](const Card&) { return softcard::MakeRow(vrf, prefix, 0U); });
               });
}

void AddLabels(Language& language) {
  language.Add(
      "label", "LABEL ID | LABEL pop VRF | LABEL port PORT",
      "Sends an incoming label's packets to a destination; pops it and routes; pops it and sends the frame below",
      Kind::kRequest, [](const Fields& fields, const Surroundings& around) {
        const LabelRow row = ReadLabel(fields, around.card);
        return Puts(
            [=](const Card& card, Tables& tables) {
              return tables.labels.Set(row.label, ActionOf(row, card), tables.ports);
            },
            [=](const Card& card) { return softcard::MakeRow(row.label, ActionOf(row, card), card.tables().ports); });
      });
  language.Add("no-label", "LABEL", "Takes it away", Kind::kRequest, [](const Fields& fields, const Surroundings&) {
    const unsigned label = ToUnsigned(fields.words()[0], "label");
    return Takes([=](const Card&, Tables& tables) { return tables.labels.Delete(label); },
                 [=](const Card& card) { return softcard::MakeRow(label, LabelAction(), card.tables().ports); });
  });
}

void AddPorts(Language& language) {
  language.Add(
      "attach", "PORT ID", "Sends what comes in on a port whole to a destination, a virtual circuit", Kind::kRequest,
      [](const Fields& fields, const Surroundings& around) {
        const limid_t port = ToLimId(fields.words()[0], around.card);
        const unsigned id = ToUnsigned(fields.words()[1], "id");
        return Puts(
            [=](const Card& card, Tables& tables) {
              return tables.attachments.Set(ToPort(port, card), id, tables.ports);
            },
            [=](const Card& card) { return softcard::AttachmentRow(ToPort(port, card), id, card.tables().ports); });
      });
  language.Add(
      "no-attach", "PORT", "Routes it again", Kind::kRequest, [](const Fields& fields, const Surroundings& around) {
        const limid_t port = ToLimId(fields.words()[0], around.card);
        return Takes(
            [=](const Card& card, Tables& tables) { return tables.attachments.Delete(ToPort(port, card)); },
            [=](const Card& card) { return softcard::AttachmentRow(ToPort(port, card), 0, card.tables().ports); });
      });
  language.Add("lag", "LAG PORT,...", "Makes a LAG of ports: the packets of a flow leave by the same one",
               Kind::kRequest, [](const Fields& fields, const Surroundings& around) {
                 const limid_t lag = ToLimId(fields.words()[0], around.card);
                 const std::vector<limid_t> ports = ReadPorts(fields.words()[1], around.card);
                 return Puts(
                     [=](const Card& card, Tables& tables) {
                       return tables.lags.Set(ToPort(lag, card), ToPorts(ports, card), tables.ports);
                     },
                     [=](const Card& card) {
                       return softcard::MembersRow(ToPort(lag, card), ToPorts(ports, card), card.tables().ports);
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
