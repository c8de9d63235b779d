#ifndef SCENARIO_PERFORMER_H
#define SCENARIO_PERFORMER_H

#include <functional>
#include <set>
#include <string>

#include "scenario/Trace.h"
#include "softcard/Card.h"

namespace scenario {

/// Makes requests to the module and keeps what happens meanwhile. The clients that it registers are silenced when it
/// goes.
class Performer {
 public:
  explicit Performer(softcard::Card& card) : card_(card) {}
  ~Performer();
  Performer(const Performer&) = delete;
  Performer& operator=(const Performer&) = delete;

  /// That update clients may make inside one request; the next one throws instead.
  static constexpr unsigned kMostClientRequests = 1000;

  using Work = std::function<RequestResult()>;

  /// Obtains the module, which starts it the first time in a process.
  Trace Start();
  /// Makes a request. From inside a client's callback it becomes part of the request under way: there is nothing but
  /// its result to be returned, and what it throws passes through.
  Trace Perform(const Work& request);

  using Callback = std::function<void(int destination, unsigned port)>;

  /// An empty callback silences the client.
  void Register(const std::string& client, Callback callback);

  // For callbacks.
  void Told(const std::string& client, int destination, unsigned port);
  void Note(const std::string& text);
  /// Makes a request one callback deeper.
  RequestResult Deeper(const Work& request);
  /// Marks a client as calling; says whether it was not.
  bool BeginsToCall(const std::string& client) { return calling_.insert(client).second; }
  void EndsToCall(const std::string& client) { calling_.erase(client); }

 private:
  void CollectEvents();

  softcard::Card& card_;
  Trace trace_;
  bool under_way_ = false;
  unsigned client_requests_ = 0;   ///< inside the request under way
  unsigned depth_ = 0;             ///< callbacks that are making requests
  std::set<std::string> calling_;  ///< the clients whose callbacks these are
  std::set<std::string> clients_;
};

}  // namespace scenario

#endif
