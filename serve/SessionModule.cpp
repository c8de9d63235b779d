#include "serve/SessionModule.h"

#include <algorithm>
#include <stdexcept>
#include <variant>

namespace serve {
namespace {

using recorder::Operation;
using recorder::Request;

MacAddress ToMac(const unsigned char* bytes) {
  MacAddress mac;
  std::copy_n(bytes, mac.size(), mac.begin());
  return mac;
}

Request Named(Operation operation, unsigned id) {
  Request request;
  request.operation = operation;
  request.id = id;
  return request;
}

Request Vlan(Operation operation, unsigned id, limid_t limid, unsigned vrf, unsigned mtu, const unsigned char* mac,
             const std::vector<en_HalVlanCapabilities>& capabilities) {
  Request request = Named(operation, id);
  request.limid = limid;
  request.vrf = vrf;
  request.mtu = mtu;
  request.mac = ToMac(mac);
  request.items.assign(capabilities.begin(), capabilities.end());
  return request;
}

Request Host(Operation operation, unsigned id, unsigned vlan_id, limid_t limid, const std::vector<ActionFlags>& actions,
             const unsigned char* mac) {
  Request request = Named(operation, id);
  request.vlan_destination_id = vlan_id;
  request.limid = limid;
  request.mac = ToMac(mac);
  request.items.assign(actions.begin(), actions.end());
  return request;
}

Request Mpls(Operation operation, unsigned id, unsigned vlan_id, limid_t limid, const unsigned char* mac,
             const std::vector<unsigned>& labels, const std::vector<en_HalMplsCapabilities>& capabilities,
             ActionFlags action) {
  Request request = Named(operation, id);
  request.vlan_destination_id = vlan_id;
  request.limid = limid;
  request.mac = ToMac(mac);
  request.labels = labels;
  request.items.assign(capabilities.begin(), capabilities.end());
  request.action = action;
  return request;
}

/// Keeps a request's result.
struct Result : scenario::Observer {
  void Took(const scenario::Step& step) override {
    const auto* const trace = std::get_if<scenario::Trace>(&step.content);
    if (trace == nullptr) return;
    result = trace->result;
    if (result.number < 0) refused = RefusedCalls(*trace);
  }
  void Ended(const std::string&, const scenario::Tally&) override {}

  scenario::RequestResult result;
  std::string refused;
};

}  // namespace

int SessionModule::Make(const Request& request) const {
  refused_.clear();
  if (in_statement_) return recorder::Make(request, *GetInstance());
  Result made;
  session_.Do({kControlPlane, Text(request) + '\n'}, made);
  refused_ = made.refused;
  if (made.result.kind == scenario::RequestResult::Kind::kThrew) throw std::runtime_error(made.result.Text());
  return made.result.number;
}

int SessionModule::InitEncapsulationModule() const { return Make(Named(Operation::kInit, 0)); }
int SessionModule::InstallVrf(unsigned vrf) const { return Make(Named(Operation::kInstallVrf, vrf)); }
int SessionModule::DestroyVrf(unsigned vrf) const { return Make(Named(Operation::kDestroyVrf, vrf)); }

int SessionModule::InstallVlanOutgoingEncapsulation(unsigned id, limid_t limid, unsigned vrf, unsigned mtu,
                                                    unsigned char* mac,
                                                    std::vector<en_HalVlanCapabilities> capabilities) const {
  return Make(Vlan(Operation::kInstallVlan, id, limid, vrf, mtu, mac, capabilities));
}
int SessionModule::DestroyVlanOutgoingEncapsulation(unsigned id) const {
  return Make(Named(Operation::kDestroyVlan, id));
}
int SessionModule::ReplaceVlanOutgoingEncapsulation(unsigned id, limid_t limid, unsigned vrf, unsigned mtu,
                                                    unsigned char* mac,
                                                    std::vector<en_HalVlanCapabilities> capabilities) const {
  return Make(Vlan(Operation::kReplaceVlan, id, limid, vrf, mtu, mac, capabilities));
}

int SessionModule::InstallHostOutgoingEncapsulation(unsigned id, unsigned vlan_id, limid_t limid,
                                                    std::vector<ActionFlags> actions, unsigned char* mac) const {
  return Make(Host(Operation::kInstallHost, id, vlan_id, limid, actions, mac));
}
int SessionModule::DestroyHostOutgoingEncapsulation(unsigned id) const {
  return Make(Named(Operation::kDestroyHost, id));
}
int SessionModule::ReplaceHostOutgoingEncapsulation(unsigned id, unsigned vlan_id, limid_t limid,
                                                    std::vector<ActionFlags> actions, unsigned char* mac) const {
  return Make(Host(Operation::kReplaceHost, id, vlan_id, limid, actions, mac));
}

int SessionModule::InstallMplsUnprotectedOutgoingEncapsulation(unsigned id, unsigned vlan_id, limid_t limid,
                                                               unsigned char* mac, std::vector<unsigned> labels,
                                                               std::vector<en_HalMplsCapabilities> capabilities,
                                                               ActionFlags action) const {
  return Make(Mpls(Operation::kInstallMpls, id, vlan_id, limid, mac, labels, capabilities, action));
}
int SessionModule::DestroyMplsUnprotectedOutgoingEncapsulation(unsigned id) const {
  return Make(Named(Operation::kDestroyMpls, id));
}
int SessionModule::ReplaceMplsUnprotectedOutgoingEncapsulation(unsigned id, unsigned vlan_id, limid_t limid,
                                                               unsigned char* mac, std::vector<unsigned> labels,
                                                               std::vector<en_HalMplsCapabilities> capabilities,
                                                               ActionFlags action) const {
  return Make(Mpls(Operation::kReplaceMpls, id, vlan_id, limid, mac, labels, capabilities, action));
}

}  // namespace serve
