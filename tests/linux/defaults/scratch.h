#pragma once

#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>

namespace orvane::host {

// A folder of the test's own that goes with it.
class Scratch {
 public:
  Scratch() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "orvane-defaults-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    root = pattern;
  }
  ~Scratch() {
    ::chmod(root.c_str(), 0700);
    std::error_code error;
    std::filesystem::remove_all(root, error);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::filesystem::path write(const std::string& name, const std::string& text) const {
    std::ofstream(root / name, std::ios::binary) << text;
    return root / name;
  }
  [[nodiscard]] std::string read(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(root / name, std::ios::binary).rdbuf();
    return text.str();
  }
  [[nodiscard]] bool has(const std::string& name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(root / name));
  }
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> result;
    for (const auto& entry : std::filesystem::directory_iterator(root)) {
      result.insert(entry.path().filename().string());
    }
    return result;
  }

  std::filesystem::path root;
};

}  // namespace orvane::host
