// Times a push tunnel's requests, the shortest of many rounds, or of as many as are asked for: prints the nanoseconds
// of one. What is put in front of the platform is whoever runs it to choose.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "bench/Requests.h"

namespace {

struct NoMeter {
  void Start() {}
  void Stop() {}
};

}  // namespace

int main(int argc, char** argv) {
  constexpr unsigned int kDestinations = 1000;
  const long rounds = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 300;
  using Clock = std::chrono::steady_clock;
  Populate(kDestinations, Order::kRandom);
  const HalL3MplsEncapsulationInterface& module = *HalL3MplsEncapsulationInterface::GetInstance();
  const auto kind =
      std::find_if(Kinds().begin(), Kinds().end(), [](const Kind& k) { return k.name == std::string("push-2"); });
  if (kind == Kinds().end()) return 1;
  const auto ids = FreshIds(100, kDestinations);
  NoMeter meter;
  auto shortest = Clock::duration::max();
  for (long round = 0; round < rounds; ++round) {
    Clock::duration elapsed{};
    for (const Step step : kSteps) {
      Prepare(*kind, step, ids);
      const auto start = Clock::now();
      for (const unsigned int id : ids) {
        if (Send(module, *kind, step, id, meter) != 0) return 1;
      }
      elapsed += Clock::now() - start;
    }
    shortest = std::min(shortest, elapsed);
  }
  const auto nanoseconds = std::chrono::duration<double, std::nano>(shortest).count();
  std::printf("%.1f\n", nanoseconds / static_cast<double>(std::size(kSteps) * ids.size()));
  return 0;
}
