// Times a push tunnel's requests on the software card, the shortest of many rounds: prints the nanoseconds of one. With
// a number: makes so many requests and prints the most memory that the process had, in kilobytes. What is put in front
// of the platform is whoever runs it to choose.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "HalL3MplsEncapsulationInterface.h"
#include "softcard/Card.h"

namespace {

unsigned char mac[6] = {2, 0, 0, 0, 0, 1};
constexpr unsigned int kVlan = 10;
constexpr unsigned int kRequests = 3;  // of a tunnel's life

const HalL3MplsEncapsulationInterface& Module() { return *HalL3MplsEncapsulationInterface::GetInstance(); }

bool LiveAndDie(unsigned int id) {
  const std::vector<unsigned int> labels = {100, 200};
  const std::vector<en_HalMplsCapabilities> push = {HAL_MPLS_CAPABILITY_PUSH};
  const limid_t port = softcard::LimId("eth1");
  return Module().InstallMplsUnprotectedOutgoingEncapsulation(id, kVlan, port, mac, labels, push, HAL_ACTION_NONE) ==
             0 &&
         Module().ReplaceMplsUnprotectedOutgoingEncapsulation(id, kVlan, port, mac, labels, push, HAL_ACTION_NONE) ==
             0 &&
         Module().DestroyMplsUnprotectedOutgoingEncapsulation(id) == 0;
}

double ShortestNanoseconds() {
  constexpr int kRounds = 200;
  constexpr unsigned int kTunnels = 100;
  using Clock = std::chrono::steady_clock;
  auto shortest = Clock::duration::max();
  for (int round = 0; round < kRounds; ++round) {
    const auto start = Clock::now();
    for (unsigned int id = 100; id < 100 + kTunnels; ++id) {
      if (!LiveAndDie(id)) std::exit(1);
    }
    shortest = std::min(shortest, Clock::now() - start);
  }
  return std::chrono::duration<double, std::nano>(shortest).count() / (kTunnels * kRequests);
}

/// Of this program alone: what a process has used tells also what the one before it in the same process had.
long MostKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmHWM:", 0) == 0) return std::strtol(line.c_str() + std::strlen("VmHWM:"), nullptr, 10);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  softcard::Card& card = softcard::Card::Get();
  const softcard::Record quiet(card.log(), softcard::CallLog::Recording::kNothing);
  Module().InstallVrf(1);
  Module().InstallVlanOutgoingEncapsulation(kVlan, softcard::LimId("vlan100"), 1, 1500, mac, {});
  // A recording that can be paused is.
  if (std::getenv("HAL_CARD_RECORDING_SIGNAL")) raise(SIGUSR1);
  if (argc > 1) {
    const long wanted = std::strtol(argv[1], nullptr, 10);
    for (long made = 0; made < wanted; made += kRequests) {
      if (!LiveAndDie(100)) return 1;
    }
    std::printf("%ld\n", MostKilobytes());
    return 0;
  }
  std::printf("%.1f\n", ShortestNanoseconds());
  return 0;
}
