#include "scenario/Requests.h"

#include <string_view>
#include <utility>

#include "HalL3MplsEncapsulationInterface.h"
#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

using Module = HalL3MplsEncapsulationInterface;
using Arguments = RequestArguments;

/// The interface takes addresses that it could write.
class Address {
 public:
  explicit Address(const Arguments& arguments) : bytes_(arguments.mac) {}
  operator unsigned char*() { return bytes_ ? bytes_->data() : nullptr; }

 private:
  std::optional<std::array<unsigned char, 6>> bytes_;
};

struct RequestForm {
  const char* name;
  const char* fields;
  const char* help;
  int (*make)(const Module& module, const Arguments& arguments);
};

constexpr char kVlanFields[] = "ID lim=VLAN vrf=VRF mtu=BYTES mac=MAC [caps=CAPABILITY,...]";
constexpr char kHostFields[] = "ID vlan=ID lim=PORT mac=MAC [actions=ACTION,...]";
constexpr char kMplsFields[] = "ID vlan=ID lim=PORT mac=MAC [labels=LABEL,...] [caps=CAPABILITY,...] [action=ACTION]";

const RequestForm kRequests[] = {
    {"init", "", "Initializes the module again",
     [](const Module& m, const Arguments&) { return m.InitEncapsulationModule(); }},
    {"install-vrf", "VRF", "Makes a VRF", [](const Module& m, const Arguments& a) { return m.InstallVrf(a.id); }},
    {"destroy-vrf", "VRF", "Takes a VRF away", [](const Module& m, const Arguments& a) { return m.DestroyVrf(a.id); }},
    {"install-vlan", kVlanFields, "Makes an outgoing encapsulation towards a VLAN",
     [](const Module& m, const Arguments& a) {
       return m.InstallVlanOutgoingEncapsulation(a.id, a.limid, a.vrf, a.mtu, Address(a), a.vlan_capabilities);
     }},
    {"replace-vlan", kVlanFields, "Changes it",
     [](const Module& m, const Arguments& a) {
       return m.ReplaceVlanOutgoingEncapsulation(a.id, a.limid, a.vrf, a.mtu, Address(a), a.vlan_capabilities);
     }},
    {"destroy-vlan", "ID", "Takes it away",
     [](const Module& m, const Arguments& a) { return m.DestroyVlanOutgoingEncapsulation(a.id); }},
    {"install-host", kHostFields, "Makes an outgoing encapsulation towards a host; vlan=0: beneath no VLAN",
     [](const Module& m, const Arguments& a) {
       return m.InstallHostOutgoingEncapsulation(a.id, a.vlan_destination_id, a.limid, a.actions, Address(a));
     }},
    {"replace-host", kHostFields, "Changes it",
     [](const Module& m, const Arguments& a) {
       return m.ReplaceHostOutgoingEncapsulation(a.id, a.vlan_destination_id, a.limid, a.actions, Address(a));
     }},
    {"destroy-host", "ID", "Takes it away",
     [](const Module& m, const Arguments& a) { return m.DestroyHostOutgoingEncapsulation(a.id); }},
    {"install-mpls", kMplsFields, "Makes an outgoing encapsulation into an MPLS tunnel",
     [](const Module& m, const Arguments& a) {
       return m.InstallMplsUnprotectedOutgoingEncapsulation(a.id, a.vlan_destination_id, a.limid, Address(a), a.labels,
                                                            a.mpls_capabilities, a.action);
     }},
    {"replace-mpls", kMplsFields, "Changes it",
     [](const Module& m, const Arguments& a) {
       return m.ReplaceMplsUnprotectedOutgoingEncapsulation(a.id, a.vlan_destination_id, a.limid, Address(a), a.labels,
                                                            a.mpls_capabilities, a.action);
     }},
    {"destroy-mpls", "ID", "Takes it away",
     [](const Module& m, const Arguments& a) { return m.DestroyMplsUnprotectedOutgoingEncapsulation(a.id); }},
};

template <typename Enumeration>
std::vector<Enumeration> ToList(const Token& list, const char* what, const Names& names) {
  std::vector<Enumeration> result;
  for (const Token& element : Elements(list)) result.push_back(Enumeration{ToInt(element, what, names)});
  return result;
}

/// Labels that a request asks for and its capability does not take.
void KeepUnused(const Arguments& arguments, std::map<unsigned, std::string>* unused) {
  unused->erase(arguments.id);
  const std::size_t asked = arguments.labels.size();
  const auto keep = [&](std::size_t taken, const char* how) {
    if (asked > taken) unused->emplace(arguments.id, "labels asked for: " + std::to_string(asked) + "; " + how);
  };
  for (const en_HalMplsCapabilities capability : arguments.mpls_capabilities) {
    if (capability == HAL_MPLS_CAPABILITY_PUSH) keep(2, "a push takes the first two");
    if (capability == HAL_MPLS_CAPABILITY_SWAP) keep(2, "a swap takes the first two");
    if (capability == HAL_MPLS_CAPABILITY_VC_LABEL) keep(1, "a virtual circuit takes the first");
    if (capability == HAL_MPLS_CAPABILITY_FORWARD) keep(0, "a forward takes none");
  }
}

}  // namespace

RequestArguments ReadRequest(const Fields& fields, const softcard::CardDescription& card) {
  Arguments request;
  if (fields.Has(0)) request.id = ToUnsigned(fields.words()[0], "id");
  if (const Token* lim = fields.Find("lim")) request.limid = ToLimId(*lim, card);
  const Token* const vrf = fields.Find("vrf");
  if (vrf != nullptr) request.vrf = ToUnsigned(*vrf, "VRF");
  if (const Token* mtu = fields.Find("mtu")) request.mtu = ToUnsigned(*mtu, "MTU");
  if (const Token* mac = fields.Find("mac")) request.mac = ToMac(*mac);
  if (const Token* vlan = fields.Find("vlan")) request.vlan_destination_id = ToUnsigned(*vlan, "id");
  if (const Token* actions = fields.Find("actions")) {
    request.actions = ToList<ActionFlags>(*actions, "action", kActions);
  }
  if (const Token* labels = fields.Find("labels")) {
    for (const Token& label : Elements(*labels)) request.labels.push_back(ToUnsigned(label, "label"));
  }
  if (const Token* caps = fields.Find("caps")) {
    // Of those that have capabilities, VLANs are what lies in a VRF.
    if (vrf != nullptr) {
      request.vlan_capabilities = ToList<en_HalVlanCapabilities>(*caps, "VLAN capability", kVlanCapabilities);
    } else {
      request.mpls_capabilities = ToList<en_HalMplsCapabilities>(*caps, "MPLS capability", kMplsCapabilities);
    }
  }
  if (const Token* action = fields.Find("action")) request.action = ActionFlags{ToInt(*action, "action", kActions)};
  return request;
}

void AddRequests(Language& language) {
  language.Add("start", "", "Starts the module here instead of before the first line", Kind::kStart,
               [](const Fields&, const Surroundings&) { return [](Run& run) { return run.performer.Start(); }; });
  for (const RequestForm& request : kRequests) {
    language.Add(request.name, request.fields, request.help, Kind::kRequest,
                 [&request](const Fields& fields, const Surroundings& around) {
                   return [&request, arguments = ReadRequest(fields, around.card)](Run& run) {
                     return run.performer.Perform([&] {
                       const int rv = request.make(*Module::GetInstance(), arguments);
                       const bool of_destination = std::string_view(request.fields).substr(0, 2) == "ID";
                       if (rv >= 0 && of_destination) KeepUnused(arguments, &run.unused_labels);
                       return RequestResult{RequestResult::Kind::kNumber, rv, ""};
                     });
                   };
                 });
  }
}

}  // namespace scenario
