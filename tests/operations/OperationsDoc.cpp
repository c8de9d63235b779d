// Prints docs/operations.md: runs every operation on the software card, once as it is and once for each of its platform
// calls with that call refused, and writes down what was seen. With --check FILE it compares instead.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "diagnosis/Operations.h"
#include "diagnosis/Refusals.h"
#include "tests/operations/Markdown.h"
#include "tests/operations/Sequences.h"

namespace operations {
namespace {

using calls::Call;
using diagnosis::Attempt;
using diagnosis::Refusal;

/// Calls that only decode or describe, and cannot fail a request. The card's protocol control is an operation that can
/// fail; the services that hand it out are not.
bool IsAside(const Call& call) {
  static const char* const kAsides[] = {"limid_", "fm_", "HalBcmCommon::GetMplsExpMapId",
                                        "bcm_mpls_egress_label_t_init", "TunnelObject::set_"};
  return std::any_of(std::begin(kAsides), std::end(kAsides),
                     [&](const char* prefix) { return std::string(call.function->name).rfind(prefix, 0) == 0; });
}

/// The calls from this number on that are told of.
Lines CallsFrom(const Attempt& attempt, unsigned long number) {
  Lines lines;
  for (const Call& call : diagnosis::CallsOf(attempt)) {
    if (number > 1) {
      --number;
    } else if (!IsAside(call)) {
      lines.push_back(calls::UnmarkedText(call, softcard::kLimIdNames));
    }
  }
  return lines;
}

/// `first` without the lines of `second`.
Lines Without(Lines first, const Lines& second) {
  first.erase(std::remove_if(first.begin(), first.end(),
                             [&](const std::string& line) {
                               return std::find(second.begin(), second.end(), line) != second.end();
                             }),
              first.end());
  return first;
}

/// What a refused request leaves; when it succeeds all the same, only where that differs from what it leaves as a rule.
std::string Residue(const Attempt& good, const Attempt& bad) {
  return bad.trace.result.number == good.trace.result.number
             ? Cell(Changes(good.after, bad.after), "as without the refusal")
             : Cell(Changes(bad.before, bad.after), "nothing");
}

void Describe(const scenario::Language& language, const diagnosis::Operation& operation, std::ostream& out) {
  const diagnosis::Refusals refusals = diagnosis::RefuseEachCall(language, softcard::Card::Get(), operation.situation);
  const Attempt& good = refusals.unhindered;
  out << "\n## " << operation.title << "\n\n";
  if (*operation.explanation != '\0') out << operation.explanation << "\n\n";
  int step = 0;
  for (const std::string& call : CallsFrom(good, 1)) out << ++step << ". `" << call << "`\n";
  out << "\n| refused call | calls after it | failures logged | result | left behind |\n|---|---|---|---|---|\n";
  step = 0;
  for (const Refusal& refusal : refusals.refused) {
    if (IsAside(refusal.call)) continue;
    const Attempt& bad = refusal.attempt;
    const Lines rest = CallsFrom(bad, refusal.number + 1);
    const bool goes_on = !rest.empty() && rest == CallsFrom(good, refusal.number + 1);
    out << "| " << ++step << ". `" << refusal.call.function->name << "` | "
        << (goes_on ? "goes on" : Cell(rest, "none")) << " | " << Cell(Without(Errors(bad), Errors(good)), "none")
        << " | " << bad.trace.result.Text() << " | " << Residue(good, bad) << " |\n";
  }
}

std::string Document() {
  std::ostringstream out;
  out << R"(# Operations: the calls they make, and what a refusal leaves

Written by the `operations` test program from real runs on the software card, and checked against them in every test
run; `operations > docs/operations.md` in the build directory's `tests/operations` writes it anew.

Each operation starts from VRFs 1 and 2 and what it needs besides: destination 10 is VLAN 100 in VRF 1, 20 a host, 30 an
MPLS encapsulation. Left out are the calls that only decode or describe: lim ids, the slot and its operations, the EXP map
id, the reset of label records, the tunnel object's values. "Refused" is -11 from that call, or "not found" from a lookup
of an interface; the miss of a new destination's own id, which belongs to every host and MPLS install, is not repeated.
A lookup of a destination that is not installed ends every replace and destroy with -1 before any call, but for the
host's: its replace installs and its destroy succeeds.

"Left behind" shows the rows that the request took from the card's tables (-) and put into them (+). For a request that
succeeds in spite of the refusal it shows where the tables differ from what the request leaves otherwise.

The last chapter, [sequences that surprise](#sequences-that-surprise), is about requests that nothing refuses.
)";
  scenario::Language language;
  scenario::AddStandard(language);
  for (const diagnosis::Operation& operation : diagnosis::Operations()) Describe(language, operation, out);
  DescribeSequences(language, out);
  softcard::Card::Get().Reset();
  return out.str();
}

int Check(const char* path) {
  std::ifstream file(path);
  std::istringstream document(Document());
  std::string expected;
  std::string found;
  for (int line = 1;; ++line) {
    const bool more_expected = static_cast<bool>(std::getline(document, expected));
    const bool more_found = static_cast<bool>(std::getline(file, found));
    if (!more_expected && !more_found) return 0;
    if (more_expected != more_found || expected != found) {
      std::cerr << path << ":" << line << ": the module does otherwise; check that this is meant, then write the "
                << "document anew with: operations > docs/operations.md\n  document: " << (more_found ? found : "(end)")
                << "\n  module:   " << (more_expected ? expected : "(end)") << "\n";
      return 1;
    }
  }
}

}  // namespace
}  // namespace operations

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--check") == 0) return operations::Check(argv[2]);
  if (argc != 1) {
    std::fprintf(stderr, "usage: operations [--check FILE]\n");
    return 2;
  }
  std::cout << operations::Document();
  return 0;
}
