#include "scenario/Performer.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <typeinfo>

#include "HalL3MplsEncapsulationInterface.h"
#include "HalL3MplsEncapsulationUpdItf.h"
#include "softcard/Card.h"

namespace scenario {
namespace {

std::string Describe(const std::exception& exception) {
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(typeid(exception).name(), nullptr, nullptr, nullptr), &std::free);
  return std::string(name ? name.get() : "exception") + ": " + exception.what();
}

int Call(const Request& r) {
  const HalL3MplsEncapsulationInterface& module = *HalL3MplsEncapsulationInterface::GetInstance();
  auto mac = r.mac;
  unsigned char* const address = mac ? mac->data() : nullptr;
  switch (r.operation) {
    case Operation::kStart: return 0;
    case Operation::kInit: return module.InitEncapsulationModule();
    case Operation::kInstallVrf: return module.InstallVrf(r.id);
    case Operation::kDestroyVrf: return module.DestroyVrf(r.id);
    case Operation::kInstallVlan:
      return module.InstallVlanOutgoingEncapsulation(r.id, r.limid, r.vrf, r.mtu, address, r.vlan_capabilities);
    case Operation::kReplaceVlan:
      return module.ReplaceVlanOutgoingEncapsulation(r.id, r.limid, r.vrf, r.mtu, address, r.vlan_capabilities);
    case Operation::kDestroyVlan: return module.DestroyVlanOutgoingEncapsulation(r.id);
    case Operation::kInstallHost:
      return module.InstallHostOutgoingEncapsulation(r.id, r.vlan_destination_id, r.limid, r.actions, address);
    case Operation::kReplaceHost:
      return module.ReplaceHostOutgoingEncapsulation(r.id, r.vlan_destination_id, r.limid, r.actions, address);
    case Operation::kDestroyHost: return module.DestroyHostOutgoingEncapsulation(r.id);
    case Operation::kInstallMpls:
      return module.InstallMplsUnprotectedOutgoingEncapsulation(r.id, r.vlan_destination_id, r.limid, address, r.labels,
                                                                r.mpls_capabilities, r.action);
    case Operation::kReplaceMpls:
      return module.ReplaceMplsUnprotectedOutgoingEncapsulation(r.id, r.vlan_destination_id, r.limid, address, r.labels,
                                                                r.mpls_capabilities, r.action);
    case Operation::kDestroyMpls: return module.DestroyMplsUnprotectedOutgoingEncapsulation(r.id);
  }
  return 0;
}

TraceLine::Kind KindOf(const calls::Event& event) {
  const auto* call = std::get_if<calls::Call>(&event);
  if (!call) return TraceLine::Kind::kLog;
  return call->function->purpose == calls::Purpose::kCall ? TraceLine::Kind::kCall : TraceLine::Kind::kAccess;
}

void RegisterCallback(const std::string& name, std::function<void(int, unsigned)> callback) {
  hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance()->RegisterMplsUpdateClient(name, std::move(callback));
}

}  // namespace

std::string Outcome::Text() const {
  switch (kind) {
    case Kind::kNumber: return std::to_string(number);
    case Kind::kThrew: return "threw " + thrown;
    case Kind::kNone: break;
  }
  return "no result";
}

std::string Notification::Text() const {
  return "client " + client + " is told id=" + std::to_string(static_cast<unsigned>(destination)) +
         " port=" + std::to_string(port);
}

Performer::~Performer() {
  for (const std::string& name : clients_) RegisterCallback(name, nullptr);
}

Record Performer::Perform(const Request& request) {
  return Recorded([&] { return Make(request); });
}

Record Performer::Perform(const Client& client) {
  return Recorded([&] {
    Register(client);
    return Outcome{};
  });
}

Record Performer::Recorded(const std::function<Outcome()>& work) {
  softcard::Card::Get().log().Clear();
  record_ = {};
  try {
    record_.outcome = work();
  } catch (const std::exception& exception) {
    record_.outcome = {Outcome::Kind::kThrew, 0, Describe(exception)};
  }
  CollectEvents();
  depth_ = 0;
  calling_.clear();
  return std::move(record_);
}

Outcome Performer::Make(const Request& request) {
  const int result = Call(request);
  return {request.operation == Operation::kStart ? Outcome::Kind::kNone : Outcome::Kind::kNumber, result, ""};
}

void Performer::Register(const Client& client) {
  clients_.insert(client.name);
  if (client.behaviour == Client::Behaviour::kEmpty) {
    RegisterCallback(client.name, nullptr);
  } else {
    RegisterCallback(client.name, [this, client](int id, unsigned port) { Notified(client, id, port); });
  }
}

void Performer::Notified(const Client& client, int destination, unsigned port) {
  record_.notifications.push_back({client.name, destination, static_cast<int>(port)});
  Note(record_.notifications.back().Text());
  if (client.behaviour == Client::Behaviour::kThrow) throw std::runtime_error(client.what);
  // A client whose own requests notify it does not start over.
  if (!calling_.insert(client.name).second) return;
  for (const Statement& call : client.calls) {
    Note("client " + client.name + " calls " + call.text);
    if (const auto* registration = std::get_if<Client>(&call.action)) {
      Register(*registration);
    } else {
      ++depth_;
      const Outcome outcome = Make(std::get<Request>(call.action));
      CollectEvents();
      --depth_;
      Note("client " + client.name + " gets " + outcome.Text());
    }
  }
  calling_.erase(client.name);
}

void Performer::Note(const std::string& text) {
  CollectEvents();
  record_.trace.push_back({TraceLine::Kind::kClient, text, depth_});
}

void Performer::CollectEvents() {
  softcard::CallLog& log = softcard::Card::Get().log();
  for (const calls::Event& event : log.Take()) {
    record_.trace.push_back({KindOf(event), calls::UnmarkedText(event, softcard::kLimIdNames), depth_});
  }
}

}  // namespace scenario
