#include "tests/model/Request.h"

#include <cstdio>

namespace model {
namespace {

template <typename Number>
std::string List(const std::vector<Number>& numbers) {
  std::string text;
  for (const auto number : numbers) text += (text.empty() ? "" : ",") + std::to_string(number);
  return text;
}

template <typename Number>
std::string Field(const char* key, const std::vector<Number>& numbers) {
  return numbers.empty() ? "" : ' ' + std::string(key) + '=' + List(numbers);
}

/// As a scenario names it: ports that the card does not have say so.
std::string LimId(const std::string& name) {
  const bool absent = name == "eth99" || name == "lag99";
  return std::string(" lim=") + (absent ? "absent:" : "") + name;
}

/// A lookup finds or does not.
std::string ResultText(const Fault& fault) {
  if (fault.function == "IntfManager::GetIntfObject") return fault.result != 0 ? "true" : "false";
  return std::to_string(fault.result);
}

std::string ClientText(const Request& request) {
  const std::string start = "client " + request.client;
  switch (request.kind) {
    case ClientKind::kEmpty: return start + " empty";
    case ClientKind::kRecords: return start + " notify";
    case ClientKind::kThrows: return start + " throw \"" + start + '"';
    case ClientKind::kCalls: break;
  }
  std::string text = start + " calls";
  for (size_t i = 0; i < request.calls.size(); ++i) text += (i > 0 ? " ; " : " ") + RequestText(request.calls[i]);
  return text;
}

}  // namespace

const char* Name(Operation operation) {
  static const char* const names[] = {"init",         "install-vrf",  "destroy-vrf",  "install-vlan", "replace-vlan",
                                      "destroy-vlan", "install-host", "replace-host", "destroy-host", "install-mpls",
                                      "replace-mpls", "destroy-mpls", "client"};
  return names[static_cast<int>(operation)];
}

std::string MacText(int64_t mac) {
  if (mac == kNullMac) return "null";
  char text[32];
  const auto byte = [mac](int i) { return static_cast<unsigned>(mac >> (40 - 8 * i)) & 0xFF; };
  static_cast<void>(std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", byte(0), byte(1), byte(2),
                                  byte(3), byte(4), byte(5)));
  return text;
}

std::string RequestText(const Request& request) {
  std::string name = Name(request.operation);
  std::string dest = name + ' ' + std::to_string(request.dest);
  const std::string base = " vlan=" + std::to_string(request.base);
  const std::string mac = " mac=" + MacText(request.mac);
  switch (request.operation) {
    case Operation::kInit: return name;
    case Operation::kInstallVrf:
    case Operation::kDestroyVrf: return name + ' ' + std::to_string(request.vrf);
    case Operation::kInstallVlan:
    case Operation::kReplaceVlan:
      return dest + LimId(request.limid) + " vrf=" + std::to_string(request.vrf) +
             " mtu=" + std::to_string(request.mtu) + mac + Field("caps", request.items);
    case Operation::kInstallHost:
    case Operation::kReplaceHost: return dest + base + LimId(request.limid) + mac + Field("actions", request.items);
    case Operation::kInstallMpls:
    case Operation::kReplaceMpls:
      return dest + base + LimId(request.limid) + mac + Field("labels", request.labels) + Field("caps", request.items) +
             " action=" + std::to_string(request.action);
    case Operation::kDestroyVlan:
    case Operation::kDestroyHost:
    case Operation::kDestroyMpls: return dest;
    case Operation::kRegister: return ClientText(request);
  }
  return name;
}

std::string Scenario(const std::vector<Request>& requests) {
  std::string text;
  for (const auto& request : requests) {
    for (const auto& fault : request.faults) {
      text += "fail " + (fault.function.empty() ? "call=" : fault.function + " nth=") + std::to_string(fault.nth) +
              " result=" + ResultText(fault) + '\n';
    }
    text += RequestText(request) + '\n';
    if (!request.faults.empty()) text += "clear-faults\n";
  }
  return text;
}

}  // namespace model
