#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace orvane {

// A folder of a test's own that goes with it, whatever became of the permissions in it. Its path
// holds no symbolic links. Throws where none can be made.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvane-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no scratch folder");
    path_ = std::filesystem::canonical(pattern);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    open(path_);
    // A folder is opened before the walk goes into it.
    for (std::filesystem::recursive_directory_iterator entry(path_, ignored), end; entry != end;
         entry.increment(ignored)) {
      if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) open(entry->path());
    }
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& name) const {
    return path_ / name;
  }

  // Folders on the way are made. Answers the file's path.
  std::filesystem::path write(const std::filesystem::path& name, const std::string& text) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << text;
    return path_ / name;
  }
  // Empty where there is no such file.
  [[nodiscard]] std::string read(const std::filesystem::path& name) const {
    std::ostringstream text;
    text << std::ifstream(path_ / name, std::ios::binary).rdbuf();
    return text.str();
  }

 private:
  static void open(const std::filesystem::path& folder) {
    std::error_code ignored;
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ignored);
  }

  std::filesystem::path path_;
};

}  // namespace orvane
