#ifndef SCENARIO_SCENARIO_H
#define SCENARIO_SCENARIO_H

#include <array>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "HalEncapsulationTypes.h"
#include "hal/limid.h"
#include "softcard/CardDescription.h"

namespace scenario {

struct Statement;

enum class Operation {
  kStart,  ///< obtains the module, which starts it
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
};

/// A call of the module's interface. What an operation does not take stays at its default.
struct Request {
  Operation operation{};
  unsigned id = 0;  ///< destination or VRF
  limid_t limid{};
  unsigned vrf = 0;
  unsigned mtu = 0;
  std::optional<std::array<unsigned char, 6>> mac;  ///< nothing: a null pointer
  std::vector<en_HalVlanCapabilities> vlan_capabilities;
  unsigned vlan_destination_id = 0;
  std::vector<ActionFlags> actions;
  std::vector<unsigned> labels;
  std::vector<en_HalMplsCapabilities> mpls_capabilities;
  ActionFlags action = HAL_ACTION_NONE;
};

/// Registers an update client.
struct Client {
  enum class Behaviour { kNotify, kEmpty, kThrow, kCalls };

  std::string name;
  Behaviour behaviour = Behaviour::kNotify;
  std::string what;              ///< of kThrow's exception
  std::vector<Statement> calls;  ///< of kCalls: requests and registrations, made in order in the callback
};

struct Fault {
  enum class When {
    kNth,      ///< the n-th call of the function
    kEvery,    ///< each call of the function
    kNumbered  ///< the n-th call, whatever function it is
  };

  When when = When::kNth;
  std::string function;
  unsigned long number = 1;
  int result = 0;
};

struct ClearFaults {};

/// An IPv4 packet that has been routed to a destination.
struct Send {
  unsigned id = 0;
  unsigned ttl = 64;
  unsigned tos = 0;
  unsigned size = 20;  ///< in bytes, with the header
};

struct Show {
  std::vector<std::string> tables;
};

struct Say {
  std::string text;
};

/// What the last request or packet, or the card, has to be like. Texts are whole lines in which '*' stands for any
/// characters.
struct Expectation {
  enum class Kind {
    kResult,        ///< `number`
    kThrow,         ///< `text`: what the request threw
    kLog,           ///< `number`: the level; `text`: the line
    kCall,          ///< `text`: the call
    kNotification,  ///< `name`: the client; `destination`, `port`
    kPacket,        ///< `text`: a step of the packet's way
    kTrace,         ///< `lines`: calls, log lines and notifications, all of them in order
    kRows,          ///< `name`: the table; `number`
    kTable,         ///< `name`: the table; `lines`: all its rows
    kEmpty,         ///< `lines`: tables that need not be
  };

  Kind kind{};
  bool negated = false;  ///< nothing that fits may be there
  std::optional<long long> number{};
  std::optional<std::string> text{};
  std::string name{};
  std::optional<long long> destination{};
  std::optional<long long> port{};
  std::vector<std::string> lines{};
};

struct Statement {
  unsigned line = 0;
  std::string text;  ///< as written, without comment, loop counters replaced
  std::variant<Request, Client, Fault, ClearFaults, Send, Show, Say, Expectation> action;
};

struct Scenario {
  std::string file;
  softcard::CardDescription card;
  std::vector<Statement> statements;
};

}  // namespace scenario

#endif
