#pragma once

#include <benchmark/benchmark.h>

#include <malloc.h>

namespace tarne::benchmarks {

/// Gives freed memory back to the system, outside of the measured time. What follows is measured
/// cold: the system gives it each page of memory anew.
inline void freshMemory(benchmark::State &state) {
    state.PauseTiming();
    malloc_trim(0);
    state.ResumeTiming();
}

} // namespace tarne::benchmarks
