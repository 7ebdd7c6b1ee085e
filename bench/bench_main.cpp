// The main of every benchmark program: the benchmarks of the plug-in's costs are in one program so
// that bench.sh can interleave and repeat them in one run; the plug-in is shut down before the
// program ends.
#include <benchmark/benchmark.h>

#include "bench_host.h"

int main(int argc, char** argv) {
  UseBenchProfile();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  BenchHost::ShutDown();
  return 0;
}
