// files/ is what the adapters that deal with files share: an owner for descriptors, writing a file
// safely, and where a user's files lie.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace orvane::host {

// The value of an environment variable, nothing when it is not set.
using Environment = std::function<std::optional<std::string>(const std::string& name)>;

// The value where it is an absolute path; others do not count (XDG Base Directory Specification,
// "Environment variables"). Nothing where there is none.
[[nodiscard]] std::optional<std::filesystem::path> absolutePath(const Environment& environment,
                                                                const std::string& name);

// The user's base directory that the variable names, such as XDG_CONFIG_HOME, else that folder of
// the home. Nothing for a user who has neither.
[[nodiscard]] std::optional<std::filesystem::path> baseDirectory(const Environment& environment,
                                                                 const std::string& name,
                                                                 const std::string& inHome);

}  // namespace orvane::host
