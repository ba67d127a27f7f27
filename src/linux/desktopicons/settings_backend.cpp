#include "linux/desktopicons/settings_backend.h"

#include <utility>

#include "linux/desktopicons/settings_sync.h"
#include "linux/desktopicons/settings_value.h"

namespace orvane::host::desktopicons {
namespace {

class SettingsBackend final : public IconBackend {
 public:
  SettingsBackend(SettingsKey key, SettingsValue value)
      : key_(std::move(key)), value_(std::move(value)) {}

  [[nodiscard]] std::string name() const override { return key_.name; }

  void capture(std::function<void(std::optional<IconState>)> captured) override {
    captured(IconState{value_.userText(), key_.hidden});
  }
  void hide(const IconState& state, std::function<void(Outcome)> done) override {
    sync_.settle(value_.set(state.written), std::move(done));
  }
  void giveBack(const IconState& state, std::function<void(Outcome)> done) override {
    if (value_.text() != value_.normalized(state.written)) return done(Outcome::done);
    // A record that tells no value of this key is damaged: the desktop's own choice stands for it.
    const bool isKnown = !value_.normalized(state.before).empty();
    sync_.settle(value_.set(isKnown ? state.before : ""), std::move(done));
  }
  void finish() override { sync_.finish(); }

 private:
  const SettingsKey key_;
  const SettingsValue value_;
  SettingsSync sync_;
};

}  // namespace

std::unique_ptr<IconBackend> makeSettingsBackend(const SettingsKey& key) {
  auto value = SettingsValue::find(key.schema, key.key);
  if (!value || value->normalized(key.hidden).empty()) return nullptr;
  return std::make_unique<SettingsBackend>(key, std::move(*value));
}

}  // namespace orvane::host::desktopicons
