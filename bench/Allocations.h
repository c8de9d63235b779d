#ifndef BENCH_ALLOCATIONS_H
#define BENCH_ALLOCATIONS_H

/// How often operator new was called since the program began. Linking Allocations.cpp replaces the operators.
unsigned long Allocations();

#endif
