#include "linux/files/base_directory.h"

namespace orvane::host {

std::optional<std::filesystem::path> absolutePath(const Environment& environment,
                                                  const std::string& name) {
  const std::filesystem::path value = environment(name).value_or("");
  return value.is_absolute() ? std::optional(value) : std::nullopt;
}

std::optional<std::filesystem::path> baseDirectory(const Environment& environment,
                                                   const std::string& name,
                                                   const std::string& inHome) {
  if (auto configured = absolutePath(environment, name)) return configured;
  const auto home = absolutePath(environment, "HOME");
  return home ? std::optional(*home / inHome) : std::nullopt;
}

}  // namespace orvane::host
