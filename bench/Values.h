#ifndef BENCH_VALUES_H
#define BENCH_VALUES_H

#include "hal/limid.h"

// What all requests of the benchmarks carry, for the ready-made texts and arguments of the bare sequences.

constexpr unsigned int kVlanDestination = 1;
constexpr limid_t kVlanLimId{100};
constexpr limid_t kPortLimId{24};
constexpr int kPort = 1024;
constexpr unsigned int kVrf = 1;
constexpr unsigned int kMtu = 1500;
constexpr unsigned int kFirstLabel = 100;
constexpr unsigned int kSecondLabel = 200;

/// The destination that the ready-made texts name.
constexpr unsigned int kNamedDestination = 1002;

#endif
