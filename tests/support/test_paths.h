#pragma once

#include <string>

namespace orvane {

// Where this build and its sources lie, as absolute paths. Functions rather than macros, so that
// one file only differs between two copies of the sources, and the others can be taken from the
// compiler's cache.

// tests/data.
[[nodiscard]] std::string testDataFolder();
// tests/golden.
[[nodiscard]] std::string goldenFolder();
// src.
[[nodiscard]] std::string sourceFolder();
// A program by its place in the build folder, such as "orvane" or "tests/x11_probe". The test's
// target must depend on it.
[[nodiscard]] std::string builtProgram(const std::string& name);

}  // namespace orvane
