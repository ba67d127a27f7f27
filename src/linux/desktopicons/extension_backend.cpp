#include "linux/desktopicons/extension_backend.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "linux/desktopicons/settings_sync.h"
#include "linux/desktopicons/settings_value.h"

namespace orvane::host::desktopicons {
namespace {

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
  explicit ExtensionBackend(SettingsValue disabled) : disabledList_(std::move(disabled)) {}

  [[nodiscard]] std::string name() const override { return "gnome-extensions"; }

  // What is written down is the names that were added, and whether there was a list at all.
  void capture(std::function<void(std::optional<IconState>)> captured) override {
    const auto now = disabledList_.texts();
    Names added;
    for (const std::string extension : kIconExtensions) {
      if (!contains(now, extension)) added.push_back(extension);
    }
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
  const SettingsValue disabledList_;
  SettingsSync sync_;
};

}  // namespace

std::unique_ptr<IconBackend> makeExtensionBackend() {
  auto disabled = SettingsValue::find("org.gnome.shell", "disabled-extensions");
  if (!disabled) return nullptr;
  return std::make_unique<ExtensionBackend>(std::move(*disabled));
}

}  // namespace orvane::host::desktopicons
