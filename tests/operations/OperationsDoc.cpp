// Prints docs/operations.md: runs every operation on the software card, once as it is and once for each of its platform
// calls with that call refused, and writes down what was seen. With --check FILE it compares instead.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "HalL3MplsEncapsulationInterface.h"
#include "bcm/error.h"
#include "softcard/Card.h"

namespace {

using Lines = std::vector<std::string>;
using Request = std::function<int()>;

HalL3MplsEncapsulationInterface& module_ = *HalL3MplsEncapsulationInterface::GetInstance();
softcard::Card& card = softcard::Card::Get();

unsigned char router_mac[] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x01};
unsigned char other_mac[] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x02};
unsigned char host_mac[] = {0x02, 0x00, 0x00, 0x00, 0x00, 0x09};

limid_t Lim(const char* name) { return softcard::LimId(name); }

/// What an operation starts from, and the request itself.
struct Case {
  const char* title;
  const char* explanation;
  std::function<void()> prepare;
  Request request;
};

void Nothing() {
  module_.InstallVrf(1);
  module_.InstallVrf(2);
}
void WithVlan() {
  Nothing();
  module_.InstallVlanOutgoingEncapsulation(10, Lim("vlan100"), 1, 1500, router_mac, {});
}
void WithHost() {
  WithVlan();
  module_.InstallHostOutgoingEncapsulation(20, 10, Lim("eth1"), {}, host_mac);
}

int InstallMpls(const std::vector<unsigned int>& labels, en_HalMplsCapabilities capability) {
  return module_.InstallMplsUnprotectedOutgoingEncapsulation(30, 10, Lim("eth2"), host_mac, labels, {capability},
                                                             HAL_ACTION_NONE);
}
int ReplaceMpls(const std::vector<unsigned int>& labels, en_HalMplsCapabilities capability) {
  return module_.ReplaceMplsUnprotectedOutgoingEncapsulation(30, 10, Lim("eth3"), other_mac, labels, {capability},
                                                             HAL_ACTION_NONE);
}
int DestroyMpls() { return module_.DestroyMplsUnprotectedOutgoingEncapsulation(30); }

std::function<void()> WithMpls(const std::vector<unsigned int>& labels, en_HalMplsCapabilities capability) {
  return [=] {
    WithVlan();
    InstallMpls(labels, capability);
  };
}
Request Install(const std::vector<unsigned int>& labels, en_HalMplsCapabilities capability) {
  return [=] { return InstallMpls(labels, capability); };
}
Request Replace(const std::vector<unsigned int>& labels, en_HalMplsCapabilities capability) {
  return [=] { return ReplaceMpls(labels, capability); };
}

constexpr auto kSwap = HAL_MPLS_CAPABILITY_SWAP;
constexpr auto kForward = HAL_MPLS_CAPABILITY_FORWARD;
constexpr auto kPush = HAL_MPLS_CAPABILITY_PUSH;
constexpr auto kVcLabel = HAL_MPLS_CAPABILITY_VC_LABEL;

const Case kCases[] = {
    {"InitEncapsulationModule", "Both modes are tried, whatever becomes of the first.", Nothing,
     [] { return module_.InitEncapsulationModule(); }},
    {"InstallVrf", "The platform's status is the result, also when positive.", Nothing,
     [] { return module_.InstallVrf(3); }},
    {"DestroyVrf", "The platform's status is the result, also when positive.", Nothing,
     [] { return module_.DestroyVrf(2); }},

    {"InstallVlanOutgoingEncapsulation",
     "The protocol packet control stays on after every failure. An id that is installed already gets a second set of "
     "chip objects, the first record stays.",
     Nothing, [] { return module_.InstallVlanOutgoingEncapsulation(10, Lim("vlan100"), 1, 1500, router_mac, {}); }},
    {"ReplaceVlanOutgoingEncapsulation, same VRF, another VLAN",
     "The association and the old VLAN's my-station entry stay where they are.", WithVlan,
     [] { return module_.ReplaceVlanOutgoingEncapsulation(10, Lim("vlan200"), 1, 9000, other_mac, {}); }},
    {"ReplaceVlanOutgoingEncapsulation, another VRF",
     "The stored VLAN leaves the stored VRF before the new pair is associated. Nothing is undone.", WithVlan,
     [] { return module_.ReplaceVlanOutgoingEncapsulation(10, Lim("vlan200"), 2, 9000, other_mac, {}); }},
    {"DestroyVlanOutgoingEncapsulation",
     "Everything about the VLAN is taken from the interface object. A restored my-station entry has the interface's "
     "flags, not those of the install.",
     WithVlan, [] { return module_.DestroyVlanOutgoingEncapsulation(10); }},

    {"InstallHostOutgoingEncapsulation", "One chip object, made last: nothing to undo.", WithVlan,
     [] { return module_.InstallHostOutgoingEncapsulation(20, 10, Lim("eth1"), {}, host_mac); }},
    {"ReplaceHostOutgoingEncapsulation",
     "The platform's negative status is the result. A host that is not installed is installed, as above.", WithHost,
     [] { return module_.ReplaceHostOutgoingEncapsulation(20, 0, Lim("eth2"), {}, other_mac); }},
    {"DestroyHostOutgoingEncapsulation", "A host that is not installed is a success.", WithHost,
     [] { return module_.DestroyHostOutgoingEncapsulation(20); }},

    {"InstallMplsUnprotectedOutgoingEncapsulation, push of two labels", "A failed install leaves no record.", WithVlan,
     Install({100, 200}, kPush)},
    {"InstallMplsUnprotectedOutgoingEncapsulation, forward", "As a push, with an initiator that pushes nothing.",
     WithVlan, Install({}, kForward)},
    {"InstallMplsUnprotectedOutgoingEncapsulation, swap into a tunnel",
     "When the egress object is refused, the initiator cleared is that of the VLAN's interface: this is meant.",
     WithVlan, Install({16, 300}, kSwap)},
    {"InstallMplsUnprotectedOutgoingEncapsulation, swap",
     "No interface of its own: the record names the VLAN's, which the destroy leaves alone.", WithVlan,
     Install({16}, kSwap)},
    {"InstallMplsUnprotectedOutgoingEncapsulation, VC label", "The record names no interface.", WithVlan,
     Install({500}, kVcLabel)},

    {"ReplaceMplsUnprotectedOutgoingEncapsulation, push",
     "Nothing is undone and the record keeps its ids after a failure. The update clients are called before the record "
     "is written.",
     WithMpls({100, 200}, kPush), Replace({300}, kPush)},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, swap that stays in its tunnel", "Nothing is undone.",
     WithMpls({16, 300}, kSwap), Replace({17, 301}, kSwap)},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, swap out of its tunnel",
     "Succeeds though the new egress object is refused; the record then holds the negative status.",
     WithMpls({16, 300}, kSwap), Replace({17}, kSwap)},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, swap into a tunnel", "The new interface is taken back.",
     WithMpls({16}, kSwap), Replace({17, 301}, kSwap)},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, swap without a tunnel", "", WithMpls({16}, kSwap),
     Replace({17}, kSwap)},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, swap to label 0", "The egress object is made anew.",
     WithMpls({16}, kSwap), Replace({0}, kSwap)},
    {"ReplaceMplsUnprotectedOutgoingEncapsulation, VC label", "", WithMpls({500}, kVcLabel), Replace({501}, kVcLabel)},

    {"DestroyMplsUnprotectedOutgoingEncapsulation, push", "Goes through whatever the chip says.",
     WithMpls({100}, kPush), DestroyMpls},
    {"DestroyMplsUnprotectedOutgoingEncapsulation, VC label", "", WithMpls({500}, kVcLabel), DestroyMpls},
};

bool StartsWith(const std::string& text, const char* prefix) { return text.rfind(prefix, 0) == 0; }

/// Calls that only decode or describe, and cannot fail a request.
bool IsAside(const std::string& line) {
  static const char* const kAsides[] = {"limid_", "fm_", "HalBcmCommon::GetMplsExpMapId",
                                        "bcm_mpls_egress_label_t_init", "TunnelObject::set_"};
  return std::any_of(std::begin(kAsides), std::end(kAsides),
                     [&](const char* prefix) { return StartsWith(line, prefix); });
}

struct Run {
  int result;
  Lines calls;   ///< every platform call
  Lines errors;  ///< log lines that report something
  Lines before, after;
};

Lines Tables() {
  Lines rows;
  for (const char* const table :
       {"switch", "vrfs", "stations", "associations", "protocol", "intfs", "initiators", "egresses", "destinations"}) {
    const Lines more = softcard::Texts(card.Rows(table));
    rows.insert(rows.end(), more.begin(), more.end());
  }
  return rows;
}

/// Runs a case; with `refused` above 0 the call of that number is given `rv`.
Run RunCase(const Case& c, unsigned long refused = 0, int rv = 0) {
  card.Reset();
  c.prepare();
  card.log().Clear();
  if (refused > 0) {
    card.faults().FailCallNumber(refused, rv);
  }
  Run run;
  run.before = Tables();
  run.result = c.request();
  run.after = Tables();
  for (const calls::Event& event : card.log().events()) {
    const std::string text = calls::UnmarkedText(event, softcard::kLimIdNames);
    if (const auto* line = std::get_if<calls::LogLine>(&event)) {
      if (line->level <= 4) run.errors.push_back(text);
    } else {
      run.calls.push_back(text);
    }
  }
  return run;
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

Lines CallsFrom(const Lines& calls, std::size_t index) {
  Lines rest(calls.begin() + static_cast<std::ptrdiff_t>(std::min(index, calls.size())), calls.end());
  rest.erase(std::remove_if(rest.begin(), rest.end(), IsAside), rest.end());
  return rest;
}

std::string Cell(const Lines& lines, const char* none) {
  std::string text;
  for (const std::string& line : lines) {
    text += (text.empty() ? "`" : "<br>`") + line + "`";
  }
  return text.empty() ? none : text;
}

std::string Name(const std::string& call) { return call.substr(0, call.find('(')); }

/// The rows that went and the rows that came.
Lines Changes(const Lines& before, const Lines& after) {
  Lines rows;
  for (const std::string& row : Without(before, after)) {
    rows.push_back("- " + row);
  }
  for (const std::string& row : Without(after, before)) {
    rows.push_back("+ " + row);
  }
  return rows;
}

/// What a refused request leaves; when it succeeds all the same, only where that differs from what it leaves as a rule.
std::string Residue(const Run& good, const Run& bad) {
  return bad.result == good.result ? Cell(Changes(good.after, bad.after), "as without the refusal")
                                   : Cell(Changes(bad.before, bad.after), "nothing");
}

void Describe(const Case& c, std::ostream& out) {
  const Run good = RunCase(c);
  out << "\n## " << c.title << "\n\n";
  if (*c.explanation != '\0') {
    out << c.explanation << "\n\n";
  }
  int step = 0;
  for (const std::string& call : CallsFrom(good.calls, 0)) {
    out << ++step << ". `" << call << "`\n";
  }
  out << "\n| refused call | calls after it | failures logged | result | left behind |\n|---|---|---|---|---|\n";
  step = 0;
  for (std::size_t i = 0; i < good.calls.size(); ++i) {
    const std::string& call = good.calls[i];
    // The card's protocol control is an operation that can fail; the services that hand it out are not.
    if (IsAside(call)) {
      continue;
    }
    const bool is_lookup = StartsWith(call, "IntfManager::GetIntfObject");
    const Run bad = RunCase(c, i + 1, is_lookup ? 0 : BCM_E_FAIL);
    const Lines rest = CallsFrom(bad.calls, i + 1);
    const bool goes_on = !rest.empty() && rest == CallsFrom(good.calls, i + 1);
    const Lines errors = Without(bad.errors, good.errors);
    out << "| " << ++step << ". `" << Name(call) << "` | " << (goes_on ? "goes on" : Cell(rest, "none")) << " | "
        << Cell(errors, "none") << " | " << bad.result << " | " << Residue(good, bad) << " |\n";
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
)";
  for (const Case& c : kCases) {
    Describe(c, out);
  }
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
    if (!more_expected && !more_found) {
      return 0;
    }
    if (more_expected != more_found || expected != found) {
      std::cerr << path << ":" << line << ": the module does otherwise; check that this is meant, then write the "
                << "document anew with: operations > docs/operations.md\n  document: " << (more_found ? found : "(end)")
                << "\n  module:   " << (more_expected ? expected : "(end)") << "\n";
      return 1;
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--check") == 0) {
    const int result = Check(argv[2]);
    card.Reset();
    return result;
  }
  if (argc != 1) {
    std::fprintf(stderr, "usage: operations [--check FILE]\n");
    return 2;
  }
  std::cout << Document();
  card.Reset();
  return 0;
}
