#include "linux/defaults/user_defaults.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

#include "linux/defaults/defaults_file.h"
#include "linux/defaults/json_defaults.h"

namespace orvane::host {
namespace {

// Long enough to gather what one gesture changes, short enough to leave time for the disk.
constexpr Duration kGathering = std::chrono::milliseconds(100);

JsonDefaults load(DefaultsFile& file) {
  const auto text = file.read();
  if (!text) return JsonDefaults::object();
  auto parsed = parseDefaults(*text);
  if (parsed) return *std::move(parsed);
  file.setAside("it is not a JSON object");
  return JsonDefaults::object();
}

class JsonFileUserDefaults final : public FileUserDefaults {
 public:
  JsonFileUserDefaults(std::filesystem::path path, MainActor& actor)
      : actor_(actor),
        file_(std::make_shared<DefaultsFile>(std::move(path))),
        values_(load(*file_)) {}
  ~JsonFileUserDefaults() override { flush(); }

  [[nodiscard]] std::optional<DefaultsValue> object(const std::string& key) const override {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : valueOf(*found);
  }

  void set(const std::string& key, DefaultsValue value) override {
    values_[key] = jsonOf(value);
    ++version_;
    if (!timer_) gather();
  }

  void flush() override {
    timer_.cancel();
    if (file_->writtenVersion() < version_) file_->write(textOf(values_), version_);
  }

 private:
  void gather() {
    timer_ = actor_.after(kGathering, [this] { writeOnWorker(); });
  }
  // A disk that hangs keeps one worker waiting, not one more with each change.
  void writeOnWorker() {
    timer_.cancel();
    if (isWriting_->exchange(true)) return gather();
    actor_.runOnWorker(
        [file = file_, text = textOf(values_), version = version_, isWriting = isWriting_] {
          file->write(text, version);
          *isWriting = false;
        });
  }

  MainActor& actor_;
  const std::shared_ptr<DefaultsFile> file_;  // a worker may still be writing to it
  JsonDefaults values_;
  std::uint64_t version_ = 0;
  const std::shared_ptr<std::atomic<bool>> isWriting_ = std::make_shared<std::atomic<bool>>(false);
  Subscription timer_;
};

}  // namespace

std::unique_ptr<FileUserDefaults> makeUserDefaults(std::filesystem::path path, MainActor& actor) {
  return std::make_unique<JsonFileUserDefaults>(std::move(path), actor);
}

std::filesystem::path userDefaultsPath(const Environment& environment) {
  const auto base = baseDirectory(environment, "XDG_CONFIG_HOME", ".config");
  return base ? *base / "orvane" / "defaults.json" : std::filesystem::path();
}

}  // namespace orvane::host
