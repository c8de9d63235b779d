// Compares what the module and each bare sequence ask of the platform: every call, argument and log line, in order.

#include <algorithm>
#include <cstdio>

#include "bench/Requests.h"
#include "bench/Trace.h"

namespace {

struct NoMeter {
  void Start() {}
  void Stop() {}
};

std::vector<std::string> CallsOf(const HalL3MplsEncapsulationInterface& target, const Kind& kind, Step step) {
  Prepare(kind, step, {kNamedDestination});
  PlatformTrace().clear();
  NoMeter meter;
  const int result = Send(target, kind, step, kNamedDestination, meter);
  PlatformTrace().push_back("result " + std::to_string(result));
  return PlatformTrace();
}

}  // namespace

int main() {
  constexpr unsigned int kDestinations = 1000;
  Populate(kDestinations, Order::kRandom);
  const HalL3MplsEncapsulationInterface& module = *HalL3MplsEncapsulationInterface::GetInstance();
  int differences = 0;
  for (const Kind& kind : Kinds()) {
    std::vector<std::vector<std::string>> asked;
    for (const HalL3MplsEncapsulationInterface* target : {&module, static_cast<decltype(&module)>(kind.bare)}) {
      for (const Step step : kSteps) asked.push_back(CallsOf(*target, kind, step));
    }
    for (std::size_t step = 0; step < std::size(kSteps); ++step) {
      const auto& of_module = asked[step];
      const auto& of_bare = asked[step + std::size(kSteps)];
      if (of_module == of_bare) continue;
      ++differences;
      std::printf("%s %s: the bare sequence differs\n", kind.name, StepName(kSteps[step]));
      for (std::size_t i = 0; i < std::max(of_module.size(), of_bare.size()); ++i) {
        const std::string left = i < of_module.size() ? of_module[i] : "";
        const std::string right = i < of_bare.size() ? of_bare[i] : "";
        std::printf("%s %-70s | %s\n", left == right ? " " : "!", left.c_str(), right.c_str());
      }
    }
  }
  return differences == 0 ? 0 : 1;
}
