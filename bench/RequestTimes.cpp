// Times every request in batches: "vlan/module/1000/random" and its like, with a counter for each step in seconds per
// request.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string>

#include "bench/Requests.h"

namespace {

struct NoMeter {
  void Start() {}
  void Stop() {}
};

void PopulateOnce(unsigned int destinations, Order order) {
  static unsigned int populated = 0;
  static Order populated_order;
  if (populated != destinations || populated_order != order) {
    Populate(destinations, order);
    populated = destinations;
    populated_order = order;
  }
}

void Time(benchmark::State& state, const Kind& kind, const HalL3MplsEncapsulationInterface& target,
          unsigned int destinations, Order order) {
  using Clock = std::chrono::steady_clock;
  constexpr unsigned int kLargestBatch = 16384;
  PopulateOnce(destinations, order);
  auto ids = FreshIds(std::min(destinations / 2, kLargestBatch), destinations);
  std::seed_seq seed{2};
  std::shuffle(ids.begin(), ids.end(), std::mt19937(seed));

  NoMeter meter;
  std::chrono::duration<double> spent[std::size(kSteps)] = {};
  for ([[maybe_unused]] const auto round : state) {
    std::chrono::duration<double> of_round{};
    for (std::size_t step = 0; step < std::size(kSteps); ++step) {
      Prepare(kind, kSteps[step], ids);
      const auto start = Clock::now();
      for (const unsigned int id : ids) {
        if (Send(target, kind, kSteps[step], id, meter) != 0) {
          state.SkipWithError("a request failed");
          return;
        }
      }
      const std::chrono::duration<double> elapsed = Clock::now() - start;
      spent[step] += elapsed;
      of_round += elapsed;
    }
    state.SetIterationTime(of_round.count());
  }
  for (std::size_t step = 0; step < std::size(kSteps); ++step) {
    state.counters[StepName(kSteps[step])] =
        spent[step].count() / static_cast<double>(state.iterations()) / static_cast<double>(ids.size());
  }
}

void Register(const Kind& kind, const char* side, const HalL3MplsEncapsulationInterface& target,
              unsigned int destinations, Order order) {
  const std::string name = std::string(kind.name) + "/" + side + "/" + std::to_string(destinations) + "/" +
                           (order == Order::kRandom ? "random" : "sequential");
  benchmark::RegisterBenchmark(name.c_str(), Time, kind, std::cref(target), destinations, order)
      ->UseManualTime()
      ->Unit(benchmark::kMicrosecond);
}

}  // namespace

int main(int argc, char** argv) {
  const HalL3MplsEncapsulationInterface& module = *HalL3MplsEncapsulationInterface::GetInstance();
  const Kind& host = Kinds()[1];
  for (const unsigned int destinations : {100U, 1000U, 10000U, 100000U, 1000000U}) {
    Register(host, "module", module, destinations, Order::kSequential);
    const bool of_all = destinations == 1000 || destinations == 1000000;
    for (const Kind& kind : Kinds()) {
      if (of_all || &kind == &host) {
        Register(kind, "module", module, destinations, Order::kRandom);
        Register(kind, "bare", *kind.bare, destinations, Order::kRandom);
      }
    }
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
