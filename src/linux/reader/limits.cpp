#include "linux/reader/limits.h"

#include <sys/resource.h>

namespace orvane::ical {

namespace {

constexpr rlim_t kMostMemory = rlim_t{768} << 20;
constexpr rlim_t kMostDescriptors = 32;
constexpr rlim_t kSecondsOfAFile = 10;

// Sanitizers reserve terabytes of addresses.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsSanitized = true;
#elif defined(__has_feature)
constexpr bool kIsSanitized = __has_feature(address_sanitizer);
#else
constexpr bool kIsSanitized = false;
#endif

using Resource = decltype(RLIMIT_CORE);

void limit(Resource resource, rlim_t most) {
  rlimit current{};
  if (getrlimit(resource, &current) != 0) return;
  const rlim_t allowed = current.rlim_max < most ? current.rlim_max : most;
  const rlimit lowered{allowed, allowed};
  setrlimit(resource, &lowered);
}

}  // namespace

void limitProcess() {
  limit(RLIMIT_CORE, 0);
  limit(RLIMIT_NOFILE, kMostDescriptors);
  if (!kIsSanitized) limit(RLIMIT_AS, kMostMemory);
}

void grantTimeOfAFile() {
  rusage used{};
  rlimit current{};
  if (getrusage(RUSAGE_SELF, &used) != 0 || getrlimit(RLIMIT_CPU, &current) != 0) return;
  const auto seconds = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec);
  current.rlim_cur = seconds + 1 + kSecondsOfAFile;
  if (current.rlim_cur > current.rlim_max) current.rlim_cur = current.rlim_max;
  setrlimit(RLIMIT_CPU, &current);
}

}  // namespace orvane::ical
