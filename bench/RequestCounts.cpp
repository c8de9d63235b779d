// Sends every request once for each of a few destinations and lets the tool that it runs under count the instructions:
// callgrind, or qemu with this directory's plugin. Prints what it counts itself: allocations and memory.

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include "bench/Allocations.h"
#include "bench/InstructionMeter.h"
#include "bench/Requests.h"

namespace {

constexpr unsigned int kSamples = 64;

struct Meter : InstructionMeter {
  void Start() {
    allocations -= Allocations();
    InstructionMeter::Start();
  }
  void Stop() {
    InstructionMeter::Stop();
    allocations += Allocations();
  }
  unsigned long allocations = 0;
};

/// Once through unmeasured, so that no lazily bound symbol is looked up while the meter runs.
void Measure(const HalL3MplsEncapsulationInterface& target, const Kind& kind, const char* side, unsigned int populated,
             bool report) {
  const auto ids = FreshIds(kSamples, populated);
  for (const Step step : kSteps) {
    Prepare(kind, step, ids);
    Meter meter;
    if (report) meter.Reset();
    for (const unsigned int id : ids) {
      if (Send(target, kind, step, id, meter) != 0) {
        std::cerr << kind.name << " " << StepName(step) << ": destination " << id << ": the request failed\n";
        std::exit(1);
      }
    }
    if (report) {
      const std::string name = std::string(kind.name) + " " + StepName(step) + " " + side;
      meter.Report(name.c_str());
      std::printf("%s allocations %.2f\n", name.c_str(), static_cast<double>(meter.allocations) / kSamples);
    }
  }
}

/// What an installed destination keeps allocated, rounded to bytes: taken before freed memory lies around.
void MeasureMemory(const HalL3MplsEncapsulationInterface& module, unsigned int populated) {
  constexpr unsigned int kInstalls = 1000;
  const Kind& host = Kinds()[1];
  Meter meter;
  const auto before = mallinfo2().uordblks;
  for (unsigned int i = 1; i <= kInstalls; ++i) Send(module, host, Step::kInstall, (populated + i) * kIdStride, meter);
  std::printf("memory %zu\n", (mallinfo2().uordblks - before + kInstalls / 2) / kInstalls);
  for (unsigned int i = 1; i <= kInstalls; ++i) Send(module, host, Step::kDestroy, (populated + i) * kIdStride, meter);
}

}  // namespace

int main(int argc, char** argv) {
  const long destinations = argc >= 2 ? std::strtol(argv[1], nullptr, 10) : 0;
  if (argc > 3 || destinations < 100 || (argc == 3 && std::string(argv[2]) != "sequential")) {
    std::cerr << "usage: " << argv[0] << " DESTINATIONS [sequential]   (at least 100; random ids unless sequential)\n";
    return 2;
  }
  const auto populated = static_cast<unsigned int>(destinations);
  Populate(populated, argc == 3 ? Order::kSequential : Order::kRandom);
  const HalL3MplsEncapsulationInterface& module = *HalL3MplsEncapsulationInterface::GetInstance();
  MeasureMemory(module, populated);
  for (const bool report : {false, true}) {
    for (const Kind& kind : Kinds()) {
      Measure(module, kind, "module", populated, report);
      Measure(*kind.bare, kind, "bare", populated, report);
    }
  }
}
