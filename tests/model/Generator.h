#ifndef TESTS_MODEL_GENERATOR_H
#define TESTS_MODEL_GENERATOR_H

#include <functional>
#include <random>
#include <vector>

#include "tests/model/Request.h"

namespace model {

/// Random requests, good and bad, over few ids and values so that they meet. The same seed gives the same requests.
class Generator {
 public:
  explicit Generator(unsigned long seed) : random_(static_cast<std::mt19937::result_type>(seed)) {}

  std::vector<Request> Sequence(int length);

 private:
  Request Any(bool nested);
  void Vlan(Request* request);
  void Host(Request* request);
  void Mpls(Request* request);
  /// Takes an MPLS destination down and installs another by its id.
  void InstallAnew(std::vector<Request>* requests);
  std::vector<Fault> Faults();

  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  bool OneIn(int count) { return Below(count) == 0; }
  template <typename Value>
  Value OneOf(std::initializer_list<Value> values) {
    return values.begin()[Below(static_cast<int>(values.size()))];
  }

  std::mt19937 random_;  // gives the same numbers everywhere, unlike the library's distributions
};

/// The shortest sequence found, by leaving out and simplifying, that `fails` still.
std::vector<Request> Shrink(std::vector<Request> requests,
                            const std::function<bool(const std::vector<Request>&)>& fails);

}  // namespace model

#endif
