#include <algorithm>

#include "scenario/Fields.h"
#include "scenario/StatementParser.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

struct RequestForm {
  const char* name;
  Operation operation;
  const char* fields;
};

constexpr char kVlanFields[] = "ID lim=VLAN vrf=VRF mtu=BYTES mac=MAC [caps=CAPABILITY,...]";
constexpr char kHostFields[] = "ID vlan=ID lim=PORT mac=MAC [actions=ACTION,...]";
constexpr char kMplsFields[] = "ID vlan=ID lim=PORT mac=MAC [labels=LABEL,...] [caps=CAPABILITY,...] [action=ACTION]";

constexpr RequestForm kRequestForms[] = {
    {"start", Operation::kStart, ""},
    {"init", Operation::kInit, ""},
    {"install-vrf", Operation::kInstallVrf, "VRF"},
    {"destroy-vrf", Operation::kDestroyVrf, "VRF"},
    {"install-vlan", Operation::kInstallVlan, kVlanFields},
    {"replace-vlan", Operation::kReplaceVlan, kVlanFields},
    {"destroy-vlan", Operation::kDestroyVlan, "ID"},
    {"install-host", Operation::kInstallHost, kHostFields},
    {"replace-host", Operation::kReplaceHost, kHostFields},
    {"destroy-host", Operation::kDestroyHost, "ID"},
    {"install-mpls", Operation::kInstallMpls, kMplsFields},
    {"replace-mpls", Operation::kReplaceMpls, kMplsFields},
    {"destroy-mpls", Operation::kDestroyMpls, "ID"},
};

template <typename Enumeration>
std::vector<Enumeration> ToList(const Token& list, const char* what, const Names& names) {
  std::vector<Enumeration> result;
  for (const Token& element : Elements(list)) result.push_back(Enumeration{ToInt(element, what, names)});
  return result;
}

}  // namespace

std::optional<Request> ParseRequest(const std::vector<Token>& words, const softcard::CardDescription& card) {
  const RequestForm* const form = std::find_if(std::begin(kRequestForms), std::end(kRequestForms),
                                               [&](const RequestForm& f) { return f.name == words[0].text; });
  if (form == std::end(kRequestForms)) return std::nullopt;

  const Fields fields(words[0], {words.begin() + 1, words.end()}, form->fields);
  Request request;
  request.operation = form->operation;
  if (fields.Has(0)) request.id = ToUnsigned(fields.words()[0], "id");
  if (const Token* lim = fields.Find("lim")) request.limid = ToLimId(*lim, card);
  if (const Token* vrf = fields.Find("vrf")) request.vrf = ToUnsigned(*vrf, "VRF");
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
    if (form->fields == kVlanFields) {
      request.vlan_capabilities = ToList<en_HalVlanCapabilities>(*caps, "VLAN capability", kVlanCapabilities);
    } else {
      request.mpls_capabilities = ToList<en_HalMplsCapabilities>(*caps, "MPLS capability", kMplsCapabilities);
    }
  }
  if (const Token* action = fields.Find("action")) request.action = ActionFlags{ToInt(*action, "action", kActions)};
  return request;
}

std::vector<std::string> RequestNames() {
  std::vector<std::string> names;
  for (const RequestForm& form : kRequestForms) names.emplace_back(form.name);
  return names;
}

}  // namespace scenario
