#include "diagnosis/Statements.h"

#include "diagnosis/Audit.h"
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

}  // namespace diagnosis
