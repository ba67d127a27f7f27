#include <benchmark/benchmark.h>

#include <optional>

#include "calendar_folders.h"
#include "reading_bench.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  // Ten thousand files, written only for those who read them.
  std::optional<orvane::bench::CalendarFolders> folders;
  orvane::bench::registerReading(
      [&]() -> orvane::bench::CalendarFolders& { return folders ? *folders : folders.emplace(); });
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
