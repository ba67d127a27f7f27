#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace orvane::host {

// The file behind the user defaults: read once, then replaced as a whole. Failures are survived and
// told in one line on standard error each time the cause is a new one. Any thread.
class DefaultsFile {
 public:
  explicit DefaultsFile(std::filesystem::path path) : path_(std::move(path)) {}
  DefaultsFile(const DefaultsFile&) = delete;
  DefaultsFile& operator=(const DefaultsFile&) = delete;

  // Nothing where there is no file, or none that can be read; the latter is put aside.
  [[nodiscard]] std::optional<std::string> read();
  // Keeps what is there under another name, because it is of no use here. Nothing is written
  // before that has succeeded.
  void setAside(const std::string& why);
  // Replaces the content: readers see the old text or the new one, also after a power cut. Keeps
  // the mode of the file, and replaces what a symbolic link stands for rather than the link. Does
  // nothing if a later version is there already.
  void write(const std::string& text, std::uint64_t version);
  // The last version that is safely on the disk.
  [[nodiscard]] std::uint64_t writtenVersion() const;

 private:
  int tryAside();
  [[nodiscard]] int tryWrite(const std::string& text) const;

  const std::filesystem::path path_;
  mutable std::mutex mutex_;
  std::uint64_t written_ = 0;
  bool inTheWay_ = false;
  int lastError_ = 0;
};

}  // namespace orvane::host
