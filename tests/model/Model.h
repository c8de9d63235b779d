#ifndef TESTS_MODEL_MODEL_H
#define TESTS_MODEL_MODEL_H

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/model/Request.h"
#include "tests/model/Rules.h"
#include "tests/model/Signatures.h"

namespace model {

/// An L3 interface as its object described it when the request came.
struct IntfFacts {
  int id;
  unsigned vlan, vrf;
  int64_t mac;
  unsigned mtu, flags;
  int tunnel;
  std::string text;
};

/// What the card was when a request came, as far as the request can ask for it.
struct Facts {
  int unit;
  unsigned limid_type, limid_index;  ///< as the decoders of lim ids write them; 0 and no name when they refuse
  std::string limid_name;
  std::optional<int> port, lag;  ///< the lim id's entries of the port tables
  std::map<int, IntfFacts> intfs;
};

struct Record {
  int intf, egress;
  bool operator==(const Record& other) const { return intf == other.intf && egress == other.egress; }
};
using Registry = std::map<int, Record>;

/// Where module and model part.
struct Difference : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What the module did, in order: calls with results, log lines, notifications, outcomes.
class Transcript {
 public:
  explicit Transcript(std::vector<std::string> lines) : lines_(std::move(lines)) {}

  void Expect(const std::string& line);
  /// The result of `call`, which has to be the next line: 0 or 1 for false and true.
  int ResultOf(const std::string& call, Result result);
  void ExpectEnd() const;
  /// All lines, with an arrow at the one that was expected otherwise.
  std::string Text() const;

 private:
  [[noreturn]] void Differ(const std::string& expected) const;

  std::vector<std::string> lines_;
  size_t next_ = 0;
};

/// The required behaviour, a second time: walks the rules along a transcript, takes the platform's results from it and
/// demands everything else, line by line.
class Model {
 public:
  /// `silent`: names that update clients without a callback are registered under.
  explicit Model(const std::set<std::string>& silent = {});

  /// Throws Difference. `facts`: one entry for the request and one for each request that a callback makes, in order.
  void Follow(const Request& request, Transcript& transcript, std::deque<Facts>& facts);

  const Registry& registry() const { return registry_; }

 private:
  class Walk;
  struct Client {
    ClientKind kind;
    std::vector<Request> calls;
    std::shared_ptr<int> told;  ///< how often since it was registered; copies are the same client
  };
  void Register(const Request& request, Transcript& transcript);
  void Answer(const Request& request, Transcript& transcript, std::deque<Facts>& facts);

  Registry registry_;
  std::map<std::string, Client> clients_;
  std::set<std::string> calling_;  ///< clients that are in their callback
};

/// The line that closes a request's transcript.
std::string ReturnLine(int result);
std::string ThrowLine(const std::string& what);
/// The line that a client leaves when it is called for the `nth` time since it was registered.
std::string NotifiedLine(const std::string& client, int dest, unsigned port, int nth);

}  // namespace model

#endif
