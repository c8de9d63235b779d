#ifndef SCENARIO_PERFORMER_H
#define SCENARIO_PERFORMER_H

#include <functional>
#include <set>
#include <string>

#include "scenario/Record.h"
#include "scenario/Scenario.h"

namespace scenario {

/// Makes requests to the module and keeps what happens meanwhile. The clients that it registers are silenced when it
/// goes.
class Performer {
 public:
  Performer() = default;
  ~Performer();
  Performer(const Performer&) = delete;
  Performer& operator=(const Performer&) = delete;

  Record Perform(const Request& request);
  Record Perform(const Client& client);

 private:
  Record Recorded(const std::function<Outcome()>& work);
  Outcome Make(const Request& request);
  void Register(const Client& client);
  void Notified(const Client& client, int destination, unsigned port);
  void Note(const std::string& text);
  void CollectEvents();

  Record record_;
  unsigned depth_ = 0;             ///< callbacks that are making requests
  std::set<std::string> calling_;  ///< the clients whose callbacks these are
  std::set<std::string> clients_;
};

}  // namespace scenario

#endif
