#ifndef TESTS_MODEL_REQUEST_H
#define TESTS_MODEL_REQUEST_H

#include <cstdint>
#include <string>
#include <vector>

namespace model {

/// One of the module's public operations, or the registration of an update client. The names are those of the rules'
/// tables and of the scenario language.
enum class Operation {
  kInit,
  kInstallVrf,
  kDestroyVrf,
  kInstallVlan,
  kReplaceVlan,
  kDestroyVlan,
  kInstallHost,
  kReplaceHost,
  kDestroyHost,
  kInstallMpls,
  kReplaceMpls,
  kDestroyMpls,
  kRegister,
};
constexpr int kOperations = 13;
const char* Name(Operation operation);

/// What an update client does when it is called.
enum class ClientKind { kEmpty, kRecords, kThrows, kCalls };

/// The `nth` call of `function` during the request, or of any when it is empty, returns `result`.
struct Fault {
  std::string function;
  unsigned nth;
  int result;
};

constexpr int64_t kNullMac = -1;

/// A request with its arguments; an operation reads those it has.
struct Request {
  Operation operation;
  unsigned dest = 0;
  unsigned base = 0;
  std::string limid = "eth1";
  unsigned vrf = 1;
  unsigned mtu = 1500;
  int64_t mac = 0x00005e000101;  ///< the first byte is the most significant of the six
  std::vector<int> items;        ///< VLAN capabilities, host actions, MPLS capabilities
  std::vector<unsigned> labels;
  int action = 0;
  std::string client;
  ClientKind kind = ClientKind::kRecords;
  std::vector<Request> calls;  ///< what a client of kind kCalls asks for, unless it is itself called from a callback
  std::vector<Fault> faults;
};

std::string MacText(int64_t mac);
/// The request as a line of a scenario, without its faults.
std::string RequestText(const Request& request);
/// The requests as a scenario that `softcard run` reproduces, faults in front of their requests.
std::string Scenario(const std::vector<Request>& requests);

}  // namespace model

#endif
