#include <benchmark/benchmark.h>

#include "calendar_folders.h"
#include "reading_bench.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  orvane::bench::CalendarFolders folders;
  orvane::bench::registerReading(folders);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
