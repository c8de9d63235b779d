#include "tests/operations/Sequences.h"

#include "diagnosis/Attempt.h"
#include "tests/operations/Markdown.h"

namespace operations {
namespace {

#define VRF "install-vrf 1"
#define VLAN VRF, "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"
#define CLIENT "client fib notify"
#define MPLS(WORD, PORT, LABELS) WORD "-mpls 30 vlan=10 lim=" PORT " mac=02:00:00:00:00:09 " LABELS

struct Sequence {
  const char* title;
  const char* explanation;
  std::vector<std::string> before;  ///< is known
  std::vector<std::string> requests;
};

const Sequence kSequences[] = {
    {"A VLAN that was moved within its VRF",
     "The association stays with the old VLAN, and a destroy looks for it at the new one: it fails, and puts back "
     "what it took. Moved back, the destination can be destroyed. The my-station entry of the VLAN in between stays "
     "for good: a packet to its MAC is routed there, and an install of that VLAN is refused.",
     {VLAN},
     {"replace-vlan 10 lim=vlan200 vrf=1 mtu=1500 mac=00:00:5e:00:01:01", "destroy-vlan 10",
      "replace-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01", "destroy-vlan 10",
      "install-vlan 11 lim=vlan200 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"}},
    {"A base that is destroyed under its tunnel",
     "Nobody counts who leaves through a VLAN. The tunnel has an interface of its own and goes on; it can no longer "
     "be replaced, since a replace reads the base, but it can be destroyed. A host on the VLAN has no interface "
     "left to leave through.",
     {VLAN, "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09", MPLS("install", "eth2", "labels=100 caps=push")},
     {"destroy-vlan 10", MPLS("replace", "eth3", "labels=200 caps=push"), "destroy-mpls 30", "destroy-host 20"}},
    {"An id that is installed twice",
     "The second install programs the chip and returns 0, and only then finds that the id is taken: its record is "
     "refused, and nobody knows what it has made. The destroy takes the first set; the second stays for good.",
     {VRF},
     {"install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01",
      "install-vlan 10 lim=vlan200 vrf=1 mtu=1500 mac=00:00:5e:00:01:02", "destroy-vlan 10", "destroy-vlan 10"}},
    {"An MPLS id that is installed twice",
     "An MPLS install looks its id up first, and refuses.",
     {VLAN},
     {MPLS("install", "eth2", "labels=100 caps=push"), MPLS("install", "eth3", "labels=200 caps=push"),
      "destroy-mpls 30"}},
    {"A swap that leaves its tunnel",
     "One label instead of two: the tunnel's interface goes, and the egress object is made anew under another id. "
     "No update client is told, as only the replace of a push or a forward tells them, and those keep the id: "
     "whoever holds the old id has to ask for the new one after each replace of a swap. The way back into a tunnel "
     "keeps the id.",
     {VLAN, CLIENT, MPLS("install", "eth2", "labels=16,300 caps=swap")},
     {MPLS("replace", "eth3", "labels=17 caps=swap"), MPLS("replace", "eth3", "labels=18,301 caps=swap"),
      "destroy-mpls 30"}},
    {"A VC label on a record that held an interface",
     "The egress object leaves through the VLAN's interface from then on. The tunnel's interface and its initiator "
     "stay, with nothing bound to them, until the destination is destroyed.",
     {VLAN, CLIENT, MPLS("install", "eth2", "labels=100 caps=push")},
     {MPLS("replace", "eth3", "labels=500 caps=vc"), "destroy-mpls 30"}},
};

void Describe(const scenario::Language& language, const Sequence& sequence, std::ostream& out) {
  out << "\n### " << sequence.title << "\n\n" << sequence.explanation << "\n\n";
  for (const std::string& line : sequence.before) out << "    " << line << "\n";
  out << "\n| then | result | logged and told | rows |\n|---|---|---|---|\n";
  diagnosis::Situation situation{sequence.before, {}};
  for (const std::string& request : sequence.requests) {
    situation.request = request;
    const diagnosis::Attempt attempt = diagnosis::Try(language, softcard::Card::Get(), situation);
    Lines told = Errors(attempt);
    for (const scenario::Notification& notification : attempt.trace.notifications) told.push_back(notification.Text());
    out << "| `" << request << "` | " << attempt.trace.result.Text() << " | " << Cell(told, "nothing") << " | "
        << Cell(Changes(attempt.before, attempt.after), "as before") << " |\n";
    situation.before.push_back(request);
  }
}

}  // namespace

void DescribeSequences(const scenario::Language& language, std::ostream& out) {
  out << "\n## Sequences that surprise\n\nNothing is refused here but what the requests before have made impossible.\n";
  for (const Sequence& sequence : kSequences) Describe(language, sequence, out);
}

}  // namespace operations
