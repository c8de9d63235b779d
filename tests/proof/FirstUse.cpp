// The update registry comes into being at its first use, from whichever thread: all get the same one. Built with the
// thread sanitizer where the compiler has it.
#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

#include "HalL3MplsEncapsulationUpdItf.h"

using hal_encap::HalL3MplsEncapsulationUpdItf;

int main() {
  constexpr int kThreads = 16;
  std::atomic<int> waiting{kThreads};
  std::vector<HalL3MplsEncapsulationUpdItf*> seen(kThreads);
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      for (--waiting; waiting > 0;) std::this_thread::yield();
      seen[i] = HalL3MplsEncapsulationUpdItf::GetInstance();
    });
  }
  for (auto& thread : threads) thread.join();

  for (const auto* registry : seen) {
    if (registry && registry == seen[0]) continue;
    std::puts("two threads got different registries");
    return 1;
  }
  seen[0]->RegisterMplsUpdateClient("after the race", {});
  return 0;
}
