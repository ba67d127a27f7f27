#pragma once

#include <filesystem>
#include <set>
#include <string>

#include "support/scratch_folder.h"

namespace orvane::host {

// A folder of the test's own, and what came to lie in it.
class Scratch : public ScratchFolder {
 public:
  // A link that leads nowhere counts, too.
  [[nodiscard]] bool has(const std::string& name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(*this / name));
  }
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> result;
    for (const auto& entry : std::filesystem::directory_iterator(path())) {
      result.insert(entry.path().filename().string());
    }
    return result;
  }
};

}  // namespace orvane::host
