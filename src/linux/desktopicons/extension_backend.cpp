#include "linux/desktopicons/extension_backend.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include "linux/desktopicons/settings_sync.h"
#include "linux/desktopicons/settings_value.h"

namespace orvane::host::desktopicons {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr std::array<const char*, 3> kIconExtensions = {
    "ding@rastersoft.com", "gtk4-ding@smedius.gitlab.com", "desktop-icons@csoriano"};

bool contains(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string joined(const Names& names) {
  std::string text;
  for (const auto& name : names) text += (text.empty() ? "" : " ") + name;
  return text;
}

Names split(const std::string& text) {
  Names names(1);
  for (const char letter : text) {
    if (letter == ' ') {
      names.emplace_back();
    } else {
      names.back() += letter;
    }
  }
  std::erase(names, "");
  return names;
}

class ExtensionBackend final : public IconBackend {
 public:
  ExtensionBackend(SettingsValue disabled, std::vector<fs::path> extensionFolders)
      : disabledList_(std::move(disabled)), extensionFolders_(std::move(extensionFolders)) {}

  [[nodiscard]] std::string name() const override { return "gnome-extensions"; }

  // What is written down is the names that were added, and whether there was a list at all.
  void capture(std::function<void(std::optional<IconState>)> captured) override {
    const auto now = disabledList_.texts();
    Names added;
    for (const std::string extension : kIconExtensions) {
      if (isInstalled(extension) && !contains(now, extension)) added.push_back(extension);
    }
    if (added.empty()) return captured(std::nullopt);
    captured(IconState{disabledList_.userText().empty() ? "unset" : "set", joined(added)});
  }

  void hide(const IconState& state, std::function<void(Outcome)> done) override {
    auto names = disabledList_.texts();
    for (const auto& extension : split(state.written)) {
      if (!contains(names, extension)) names.push_back(extension);
    }
    sync_.settle(disabledList_.setTexts(names), std::move(done));
  }

  // Where somebody has taken our names away, the list is as they want it.
  void giveBack(const IconState& state, std::function<void(Outcome)> done) override {
    auto names = disabledList_.texts();
    const auto found = names.size();
    for (const auto& extension : split(state.written)) std::erase(names, extension);
    if (names.size() == found) return done(Outcome::done);
    const bool wasUnset = names.empty() && state.before == "unset";
    const bool isTaken = wasUnset ? disabledList_.set("") : disabledList_.setTexts(names);
    sync_.settle(isTaken, std::move(done));
  }

  void finish() override { sync_.finish(); }

 private:
  // The shell takes no folder for an extension that does not have this file.
  [[nodiscard]] bool isInstalled(const std::string& extension) const {
    return std::any_of(extensionFolders_.begin(), extensionFolders_.end(), [&](const auto& folder) {
      std::error_code unknown;
      return fs::is_regular_file(folder / extension / "metadata.json", unknown);
    });
  }

  const SettingsValue disabledList_;
  const std::vector<fs::path> extensionFolders_;
  SettingsSync sync_;
};

}  // namespace

std::vector<fs::path> shellExtensionFolders() {
  std::vector<fs::path> folders = {g_get_user_data_dir()};
  for (const char* const* each = g_get_system_data_dirs(); *each; ++each) {
    folders.emplace_back(*each);
  }
  for (auto& folder : folders) folder = folder / "gnome-shell" / "extensions";
  return folders;
}

std::unique_ptr<IconBackend> makeExtensionBackend(std::vector<fs::path> extensionFolders) {
  auto disabled = SettingsValue::find("org.gnome.shell", "disabled-extensions");
  if (!disabled) return nullptr;
  return std::make_unique<ExtensionBackend>(std::move(*disabled), std::move(extensionFolders));
}

}  // namespace orvane::host::desktopicons
