#include "linux/desktopicons/plasma_backend.h"

#include <chrono>
#include <iostream>
#include <string>
#include <utility>

#include "linux/desktopicons/call_outcome.h"
#include "linux/desktopicons/plasma_scripts.h"
#include "linux/gio/call.h"

namespace orvane::host::desktopicons {
namespace {

// The shell answers between two of its pictures, and late while it is starting.
constexpr std::chrono::seconds kCallLimit{5};

std::string textIn(GVariant* results) {
  if (!g_variant_is_of_type(results, G_VARIANT_TYPE("(s)"))) return {};
  const char* text = nullptr;
  g_variant_get(results, "(&s)", &text);
  return text;
}

class PlasmaBackend final : public IconBackend {
 public:
  explicit PlasmaBackend(GDBusConnection* connection) : connection_(gio::shared(connection)) {}

  [[nodiscard]] std::string name() const override { return "plasma"; }

  void capture(std::function<void(std::optional<IconState>)> captured) override {
    evaluate(plasmaCaptureScript(), [this, captured = std::move(captured)](
                                        GVariant* results, const gio::Failure& failure) {
      if (failure.is(G_DBUS_ERROR, G_DBUS_ERROR_FAILED)) tellRefusal();
      captured(results ? plasmaState(textIn(results)) : std::nullopt);
    });
  }

  void captureNew(const IconState& known,
                  std::function<void(std::optional<NewIcons>)> captured) override {
    evaluate(plasmaCaptureScript(),
             [known, captured = std::move(captured)](GVariant* results, const gio::Failure&) {
               captured(results ? plasmaNewIcons(known, textIn(results)) : std::nullopt);
             });
  }

  void hide(const IconState& state, std::function<void(Outcome)> done) override {
    change(plasmaHideScript(state), Outcome::refused, std::move(done));
  }

  // A record that no capture made has nothing in it to give back.
  void giveBack(const IconState& state, std::function<void(Outcome)> done) override {
    change(plasmaGiveBackScript(state), Outcome::done, std::move(done));
  }

 private:
  void change(const std::optional<std::string>& script, Outcome withoutScript,
              std::function<void(Outcome)> done) {
    if (!script) return done(withoutScript);
    evaluate(*script, [done = std::move(done)](GVariant* results, const gio::Failure& failure) {
      done(outcomeOf(results, failure));
    });
  }

  void evaluate(const std::string& script, gio::Answered answered) const {
    gio::call(connection_.get(),
              {"org.kde.plasmashell", "/PlasmaShell", "org.kde.PlasmaShell", "evaluateScript"},
              g_variant_new("(s)", script.c_str()), kCallLimit, calls_, std::move(answered));
  }

  void tellRefusal() {
    if (std::exchange(toldRefusal_, true)) return;
    std::cerr << "orvane: Plasma did not let its icons be hidden.\n";
  }

  const gio::ObjectPtr<GDBusConnection> connection_;
  const gio::Cancellation calls_;
  bool toldRefusal_ = false;
};

}  // namespace

std::unique_ptr<IconBackend> makePlasmaBackend(GDBusConnection* connection) {
  return std::make_unique<PlasmaBackend>(connection);
}

}  // namespace orvane::host::desktopicons
