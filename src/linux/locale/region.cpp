#include "linux/locale/region.h"

#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/ures.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <memory>

#include "linux/locale/unicode_text.h"
#include "linux/locale/zone_file.h"

namespace orvane::host {

SystemPlaces::SystemPlaces()
    : environment([](const char* name) -> std::optional<std::string> {
        const char* value = std::getenv(name);
        return value ? std::optional<std::string>(value) : std::nullopt;
      }),
      offset([](std::int64_t instant) -> std::int32_t {
        const auto time = static_cast<std::time_t>(instant);
        std::tm local{};
        localtime_r(&time, &local);
        return static_cast<std::int32_t>(local.tm_gmtoff);
      }),
      offsetOf(offsetByZoneFile) {}

Date systemNow() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return {std::chrono::duration<double>(now).count()};
}

bool isTimeZone(const std::string& name) {
  const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(fromUtf8(name)));
  return *zone != icu::TimeZone::getUnknown() || offsetByZoneFile(name);
}

bool isLocale(const std::string& name) {
  const auto locale = icu::Locale::createCanonical(name.c_str());
  if (locale.isBogus() || *locale.getLanguage() == '\0') return false;
  UErrorCode status = U_ZERO_ERROR;
  ures_close(ures_open(nullptr, locale.getName(), &status));
  // The default locale's texts in place of the wanted ones mean that there are none.
  return U_SUCCESS(status) && status != U_USING_DEFAULT_WARNING;
}

}  // namespace orvane::host
