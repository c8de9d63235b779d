#ifndef ROUTER_ENCAPSULATIONS_H
#define ROUTER_ENCAPSULATIONS_H

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "HalL3MplsEncapsulationInterface.h"
#include "router/Told.h"

namespace router {

using Mac = std::array<unsigned char, 6>;

/// What an interface of the control plane is on the card.
struct InterfaceValues {
  limid_t port{};  ///< that its hosts are behind: an Ethernet port or a LAG
  limid_t vlan{};
  unsigned vrf = 0;
  unsigned mtu = 0;
  Mac mac{};
};

struct Interface {
  InterfaceValues values;
  unsigned id;  ///< of its VLAN encapsulation
};

/// Who has an address on an interface's network.
struct Neighbour {
  unsigned ifindex;
  softcard::IpAddress address;
};
bool operator<(const Neighbour& one, const Neighbour& other);

/// A way on the card: one encapsulation for all that go it.
struct Destination {
  enum class State {
    kAbsent,   ///< the card cannot do it, or refused
    kWaiting,  ///< for the neighbour's address; until then a host's packets go to the CPU, a tunnel's are dropped
    kReady,
  };

  Way way;
  unsigned id = 0;  ///< another one whenever it is installed
  unsigned long users = 0;
  State state = State::kAbsent;
  std::string reason{};    ///< why it is absent
  bool refused = false;    ///< by the card, which may take it another time
  bool installed = false;  ///< of an absent one: to be destroyed, when nothing points at it any more
  bool leaving = false;    ///< it is looked at when that is done
};

/// Makes encapsulations of ways by requests to the module, each once, and follows what it is told about interfaces and
/// neighbours. The module's requests are the only ones that it makes, in an order that what it is told decides.
class Encapsulations {
 public:
  /// What belongs to a control plane has ids from here on.
  static constexpr unsigned kFirstId = 1'000'000;

  using Changed = std::function<void(const Destination&)>;
  /// What the card refused of the module's last request, in words; empty when that is not known.
  using Why = std::function<std::string()>;

  /// The module outlives it. `changed` is told of a destination that is no longer absent, or has become so, whose users
  /// are to be moved elsewhere before Clear().
  Encapsulations(const HalL3MplsEncapsulationInterface& module, limid_t cpu, Changed changed, Why why)
      : module_(module), cpu_(cpu), changed_(std::move(changed)), why_(std::move(why)) {}

  /// The module's result: negative for a refusal.
  int SetInterface(unsigned ifindex, const InterfaceValues& values);
  /// One that is known: its destinations become absent, and its VLAN encapsulation is destroyed by Clear().
  void RemoveInterface(unsigned ifindex);
  /// Whether this VLAN encapsulation is still to be destroyed.
  bool IsLeaving(unsigned vlan_destination) const;
  const std::map<unsigned, Interface>& interfaces() const { return interfaces_; }

  void SetNeighbour(const Neighbour& neighbour, const Mac& mac);
  void RemoveNeighbour(const Neighbour& neighbour);
  const std::map<Neighbour, Mac>& neighbours() const { return neighbours_; }
  /// Whether packets go to it.
  bool IsGateway(const Neighbour& neighbour) const { return behind_.count(neighbour) != 0; }

  /// The way's destination, made for its first user. Each user gives it back.
  Destination& Acquire(const Way& way);
  void Release(Destination& destination);

  /// Something has changed for which the card may take now what it has refused.
  void MayHelp() { may_help_ = true; }
  bool HasSomethingHelped() const { return may_help_ && refused_ > 0; }
  /// Asks again for what was refused, if something may help.
  void Retry();
  /// Destroys what has no users any more and what has become absent.
  void Clear();

  const std::unordered_map<Way, Destination, Hash>& destinations() const { return destinations_; }
  std::uint64_t requests() const { return requests_; }

 private:
  using Destinations = std::vector<Destination*>;

  std::string WhyNot(const Way& way) const;
  void Program(Destination& destination);
  void Become(Destination& destination, Destination::State state, std::string reason);
  void Refused(Destination& destination, const char* what, int result);
  int Write(const Destination& destination, const Mac* mac);
  int WriteHost(const Destination& destination, ActionFlags action, Mac mac);
  int WriteTunnel(const Destination& destination, ActionFlags action, Mac mac);
  int Destroy(const Destination& destination);
  void Leave(Destination& destination);
  template <typename Request>
  int Ask(const Request& request);

  const HalL3MplsEncapsulationInterface& module_;
  const limid_t cpu_;
  const Changed changed_;
  const Why why_;                             ///< may be empty
  std::map<unsigned, Interface> interfaces_;  ///< by index
  std::map<Neighbour, Mac> neighbours_;
  std::unordered_map<Way, Destination, Hash> destinations_;
  std::map<Neighbour, Destinations> behind_;  ///< what goes to a neighbour
  Destinations leaving_;
  std::vector<unsigned> leaving_vlans_;  ///< by id
  unsigned next_id_ = kFirstId;
  unsigned long refused_ = 0;  ///< destinations
  std::uint64_t requests_ = 0;
  bool may_help_ = false;
};

}  // namespace router

#endif
