#include "tests/model/Generator.h"

#include <algorithm>
#include <string>

#include "tests/model/Signatures.h"

namespace model {

std::vector<Request> Generator::Sequence(int length) {
  // A base to build on, which most requests need; later ones take it down and make others.
  std::vector<Request> requests(2);
  requests[0].operation = Operation::kInstallVrf;
  requests[1].operation = Operation::kInstallVlan;
  requests[1].dest = 10;
  requests[1].limid = "vlan100";
  while (static_cast<int>(requests.size()) < length) {
    requests.push_back(Any(false));
    if (OneIn(2)) requests.back().faults = Faults();
  }
  return requests;
}

Request Generator::Any(bool nested) {
  Request request{};
  request.operation = static_cast<Operation>(Below(kOperations));
  if (OneIn(2)) request.operation = OneOf({Operation::kInstallMpls, Operation::kReplaceMpls});
  request.dest = OneOf({1u, 2u, 3u, 10u, 20u});
  request.base = OneOf({10u, 10u, 10u, 10u, 20u, 1u, 2u});
  if (OneIn(10)) request.dest = OneOf({0u, 0x80000000u, 0xFFFFFFFFu});
  if (OneIn(10)) request.base = OneOf({0u, 0x80000000u, 0xFFFFFFFFu, 77u});
  request.vrf = OneIn(10) ? OneOf({0u, 1023u, 1024u, 0xFFFFFFFFu}) : OneOf({1u, 2u});
  request.mtu = OneIn(10) ? 0 : OneOf({1500u, 9000u, 0xFFFFFFFFu});
  request.mac = OneIn(10) ? kNullMac : OneOf<int64_t>({0x00005e000101, 0xffffffffffff, 0, 0x020406080a0c});
  switch (request.operation) {
    case Operation::kInstallVlan:
    case Operation::kReplaceVlan: Vlan(&request); break;
    case Operation::kInstallHost:
    case Operation::kReplaceHost: Host(&request); break;
    case Operation::kInstallMpls:
    case Operation::kReplaceMpls: Mpls(&request); break;
    case Operation::kRegister: {
      request.client = OneOf({"a", "b", "B", "ab"});
      request.kind = OneOf({ClientKind::kEmpty, ClientKind::kRecords, ClientKind::kRecords, ClientKind::kThrows});
      if (nested || OneIn(2)) break;
      request.kind = ClientKind::kCalls;
      for (int calls = 1 + Below(3); calls > 0; --calls) request.calls.push_back(Any(true));
      if (OneIn(3)) InstallAnew(&request.calls);
      break;
    }
    default: break;
  }
  return request;
}

void Generator::InstallAnew(std::vector<Request>* requests) {
  Request destroy{}, install{};
  destroy.operation = Operation::kDestroyMpls;
  install.operation = Operation::kInstallMpls;
  destroy.dest = install.dest = OneOf({1u, 2u, 3u});
  install.base = 10;
  Mpls(&install);
  requests->push_back(destroy);
  requests->push_back(install);
}

void Generator::Vlan(Request* request) {
  if (!OneIn(4)) request->dest = OneOf({10u, 20u});
  request->limid = OneOf({"vlan100", "vlan100", "vlan200", "vlan200", "vlan1", "vlan4094"});
  if (OneIn(10)) request->limid = OneOf({"vlan0", "vlan4095", "vlan65636", "eth1", "cpu", "0x0"});
  for (int items = Below(4); items > 0; --items) request->items.push_back(OneOf({0, 1, 1, 2, -1, 6}));
}

void Generator::Host(Request* request) {
  request->limid = OneOf({"eth1", "eth48", "lag1", "cpu"});
  if (OneIn(8)) request->limid = OneOf({"vlan100", "eth99", "lag99", "0x0"});
  for (int items = Below(4); items > 0; --items) request->items.push_back(Below(6));
  if (OneIn(5)) request->base = 0;
}

void Generator::Mpls(Request* request) {
  request->limid = OneOf({"eth1", "eth48", "lag1", "cpu"});
  if (OneIn(8)) request->limid = OneOf({"vlan100", "eth99", "lag99", "0x0"});
  for (int labels = OneOf({0, 1, 1, 2, 2, 2, 3}); labels > 0; --labels) {
    request->labels.push_back(OneOf({100u, 200u, 0u, 0u, 3u, 1048575u}));
    if (OneIn(20)) request->labels.back() = OneOf({1048576u, 0x80000000u, 0xFFFFFFFFu});
  }
  request->items = {OneOf({2, 2, 2, 3, 4, 4, 5})};
  if (OneIn(10)) request->items = {OneOf({0, 6, -1})};
  if (OneIn(6)) request->items.insert(request->items.begin(), 1);
  if (OneIn(6)) request->items.push_back(1);
  if (OneIn(20)) request->items.push_back(Below(7));
  if (OneIn(20)) request->items.clear();
  if (OneIn(5)) request->action = Below(6);
}

std::vector<Fault> Generator::Faults() {
  static const std::vector<Signature> faulty = [] {
    std::vector<Signature> all;
    for (const auto& signature : kSignatures) {
      if (signature.result != Result::kNothing) all.push_back(signature);
    }
    return all;
  }();
  std::vector<Fault> faults;
  for (int count = 1 + Below(3); count > 0; --count) {
    const Signature* function = nullptr;
    do {
      function = &faulty[Below(static_cast<int>(faulty.size()))];
    } while (Below(4) > 0 && std::string(function->function).find("Intf") == std::string::npos &&
             std::string(function->function).find("Egress") == std::string::npos);  // what most requests program
    const Signature& signature = *function;
    // "Found" an interface that is not there is no answer that a card gives.
    int result = signature.result == Result::kFound ? 0 : OneIn(2) ? -1 - Below(19) : OneOf({0, 1, 2, 77, -4, -7, -16});
    faults.push_back({signature.function, 1 + static_cast<unsigned>(Below(2)), result});
  }
  return faults;
}

namespace {

/// Every sequence that is a little simpler than this one.
std::vector<std::vector<Request>> Simpler(const std::vector<Request>& requests) {
  std::vector<std::vector<Request>> all;
  for (size_t chunk = requests.size() / 2; chunk > 0; chunk /= 2) {
    for (size_t i = 0; i + chunk <= requests.size(); i += chunk) {
      all.push_back(requests);
      all.back().erase(all.back().begin() + static_cast<long>(i), all.back().begin() + static_cast<long>(i + chunk));
    }
  }
  const auto change = [&](size_t i, const auto& edit) {
    all.push_back(requests);
    edit(&all.back()[i]);
  };
  for (size_t i = 0; i < requests.size(); ++i) {
    const Request& request = requests[i];
    for (size_t f = 0; f < request.faults.size(); ++f) {
      change(i, [f](Request* r) { r->faults.erase(r->faults.begin() + static_cast<long>(f)); });
    }
    for (size_t c = 0; c < request.calls.size() && request.calls.size() > 1; ++c) {
      change(i, [c](Request* r) { r->calls.erase(r->calls.begin() + static_cast<long>(c)); });
    }
    if (!request.items.empty()) change(i, [](Request* r) { r->items.pop_back(); });
    if (!request.labels.empty()) change(i, [](Request* r) { r->labels.pop_back(); });
    if (request.action != 0) change(i, [](Request* r) { r->action = 0; });
    if (request.mtu != 1500) change(i, [](Request* r) { r->mtu = 1500; });
    if (request.vrf != 1) change(i, [](Request* r) { r->vrf = 1; });
    if (request.mac != 0x00005e000101) change(i, [](Request* r) { r->mac = 0x00005e000101; });
  }
  return all;
}

}  // namespace

std::vector<Request> Shrink(std::vector<Request> requests,
                            const std::function<bool(const std::vector<Request>&)>& fails) {
  for (bool simpler = true; simpler;) {
    simpler = false;
    for (auto& candidate : Simpler(requests)) {
      if (!fails(candidate)) continue;
      requests = std::move(candidate);
      simpler = true;
      break;
    }
  }
  return requests;
}

}  // namespace model
