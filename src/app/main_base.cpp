#include "app/main_base.h"

#include <cstdlib>
#include <system_error>

namespace orvane {

std::optional<std::string> environmentVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

std::filesystem::path programPath() {
  std::error_code unknown;
  return std::filesystem::read_symlink("/proc/self/exe", unknown);
}

}  // namespace orvane
