#ifndef SOFTCARD_CALL_LOG_H
#define SOFTCARD_CALL_LOG_H

#include <string>
#include <vector>

namespace softcard {

/// What an event of the call log is.
enum class EventKind {
  kCall,    ///< a call that programs or asks the card: bcm_*, fm_*, the managers' operations, limid_*, the EXP map id
  kAccess,  ///< a look at what is there already: singletons, manager getters, members of interface and tunnel objects
  kLog,     ///< a line of the log
};

/// One line of text each, the same for tests, console and recordings:
///
///     IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 1
///     IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=null, mtu=1500, flags=0x0) = -4 (Invalid parameter)
///     log 7: Installing outgoing encapsulation for VLAN destination id(10)
struct Event {
  EventKind kind;
  std::string text;
};

/// Every platform call with its arguments and its result, and every log line, in order.
class CallLog {
 public:
  enum class Recording {
    kNothing,  ///< for long runs
    kCalls,    ///< calls and log lines, the default
    kAll,      ///< accesses too
  };

  void set_recording(Recording recording) { recording_ = recording; }
  bool Records(EventKind kind) const;
  void Add(EventKind kind, std::string text);

  const std::vector<Event>& events() const { return events_; }
  /// The events' texts.
  std::vector<std::string> Lines() const;
  void Clear() { events_.clear(); }

 private:
  Recording recording_ = Recording::kCalls;
  std::vector<Event> events_;
};

}  // namespace softcard

#endif
