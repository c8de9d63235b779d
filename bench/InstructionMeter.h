#ifndef BENCH_INSTRUCTION_METER_H
#define BENCH_INSTRUCTION_METER_H

#include <sys/syscall.h>
#include <unistd.h>

#ifdef BENCH_HAS_CALLGRIND
#include <valgrind/callgrind.h>
#endif

/// Tells the tool that the program runs under what to count. Without one it does nothing.
#ifdef BENCH_HAS_CALLGRIND

class InstructionMeter {
 public:
  void Reset() {
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
  }
  void Start() { CALLGRIND_TOGGLE_COLLECT; }
  void Stop() { CALLGRIND_TOGGLE_COLLECT; }
  void Report(const char* name, unsigned int) { CALLGRIND_DUMP_STATS_AT(name); }
};

#else

/// A system call that does not exist is how a program under qemu speaks to its plugin.
class InstructionMeter {
 public:
  void Reset() { Tell(0); }
  void Start() { Tell(1); }
  void Stop() { Tell(2); }
  void Report(const char* name, unsigned int samples) { Tell(3, name, samples); }

 private:
  static void Tell(long what, const char* name = nullptr, unsigned int samples = 0) {
    constexpr long kUnknownCall = 65000;
    syscall(kUnknownCall, what, name, samples);
  }
};

#endif

#endif
