#include "diagnosis/Statements.h"

#include "diagnosis/Audit.h"
#include "diagnosis/State.h"
#include "diagnosis/Users.h"
#include "diagnosis/WholeFile.h"
#include "scenario/Failure.h"
#include "scenario/Run.h"

namespace diagnosis {

using scenario::Expectation;
using scenario::Fields;
using scenario::Run;
using scenario::Surroundings;

void AddAudit(scenario::Language& language, Ledger& ledger) {
  language.Add("audit", "", "Holds the records against the tables, and shows what does not fit", scenario::Kind::kShow,
               [&ledger](const Fields&, const Surroundings& around) {
                 around.watchers.insert(&ledger);
                 return [&ledger](const Run& run) {
                   return scenario::Shown{{{"findings", ToRows(Audit(run.card, ledger))}}};
                 };
               });
  language.AddExpectation("clean", "", "That the audit finds nothing", Expectation::About::kCard, Expectation::kPlain,
                          [&ledger](const Fields&, const Surroundings& around) {
                            around.watchers.insert(&ledger);
                            return [&ledger](const Run& run) {
                              const auto findings = softcard::Texts(ToRows(Audit(run.card, ledger)));
                              return scenario::Unless(findings.empty(), "no findings", findings);
                            };
                          });
}

void AddDifferences(scenario::Language& language, Mark& mark) {
  language.Add("show changes", "",
               "Shows the rows that are gone and those that are new or changed since the last show changes or mark, or "
               "since the beginning",
               scenario::Kind::kShow, [&mark](const Fields&, const Surroundings& around) {
                 around.watchers.insert(&mark);
                 return [&mark](const Run& run) {
                   Changes changes = mark.Since(run.card);
                   mark.Set(run.card);
                   return scenario::Shown{{{"took", std::move(changes.took)}, {"put", std::move(changes.put)}}};
                 };
               });
  language.Add("mark", "", "What show changes shows begins here", scenario::Kind::kShow,
               [&mark](const Fields&, const Surroundings& around) {
                 around.watchers.insert(&mark);
                 return [&mark](const Run& run) {
                   mark.Set(run.card);
                   return scenario::Shown{};
                 };
               });
  language.Add("save", "FILE", "Saves the state of the card, for softcard diff", scenario::Kind::kShow,
               [](const Fields& fields, const Surroundings&) {
                 return [file = std::string(fields.words()[0].text)](const Run& run) {
                   WriteWhole(file, StateJson(run.card));
                   return scenario::Shown{};
                 };
               });
}

void AddUsers(scenario::Language& language) {
  language.Add("show usage", "", "Shows how many rows of each table are in use, and how many there can be",
               scenario::Kind::kShow, [](const Fields&, const Surroundings&) {
                 return [](const Run& run) { return scenario::Shown{{{"usage", Usage(run.card)}}}; };
               });
  language.Add("who", "[port=PORT] [intf=INTF] [label=LABEL] [mac=MAC] [vlan=VLAN] [vrf=VRF]",
               "Shows everything that uses one of these, and the destinations that hold it", scenario::Kind::kShow,
               [](const Fields& fields, const Surroundings&) {
                 return [users = Users(fields)](const Run& run) { return users.On(run.card); };
               });
}

}  // namespace diagnosis
