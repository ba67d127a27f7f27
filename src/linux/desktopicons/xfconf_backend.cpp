#include "linux/desktopicons/xfconf_backend.h"

#include <charconv>
#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "linux/desktopicons/call_outcome.h"
#include "linux/gio/call.h"

namespace orvane::host::desktopicons {
namespace {

using gio::VariantPtr;
using Text = std::optional<std::string>;

constexpr const char* kChannel = "xfce4-desktop";
constexpr const char* kProperty = "/desktop-icons/style";
constexpr const char* kHidden = "0";
constexpr const char* kUnset = "unset";
constexpr const char* kForeign = "foreign";  // a value of another type; never written down
constexpr const char* kNoProperty = "org.xfce.Xfconf.Error.PropertyNotFound";
constexpr std::chrono::milliseconds kCallLimit{1000};

// The style that a record tells; nothing where it tells none.
std::optional<gint32> styleOf(const std::string& text) {
  gint32 style = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, style);
  if (error != std::errc() || rest != end) return std::nullopt;
  return style;
}

class XfconfBackend final : public IconBackend {
 public:
  explicit XfconfBackend(GDBusConnection* connection) : connection_(gio::shared(connection)) {}

  [[nodiscard]] std::string name() const override { return "xfce"; }

  void capture(std::function<void(std::optional<IconState>)> captured) override {
    read([captured = std::move(captured)](const Text& now) {
      const bool isKnown = now && *now != kForeign;
      captured(isKnown ? std::optional(IconState{*now, kHidden}) : std::nullopt);
    });
  }

  void hide(const IconState&, std::function<void(Outcome)> done) override {
    write(kHidden, std::move(done));
  }

  void giveBack(const IconState& state, std::function<void(Outcome)> done) override {
    read([this, state, done = std::move(done)](const Text& now) {
      if (!now) return done(Outcome::unknown);
      if (now != state.written) return done(Outcome::done);
      write(state.before, done);
    });
  }

 private:
  // The style as text, "unset", "foreign", or nothing where xfconf does not answer.
  void read(std::function<void(const Text&)> answered) const {
    call("GetProperty", g_variant_new("(ss)", kChannel, kProperty),
         [answered = std::move(answered)](GVariant* results, const gio::Failure& failure) {
           answered(results ? Text(styleIn(results)) : absence(failure));
         });
  }

  static std::string styleIn(GVariant* results) {
    if (!g_variant_is_of_type(results, G_VARIANT_TYPE("(v)"))) return kForeign;
    const VariantPtr boxed(g_variant_get_child_value(results, 0));
    const VariantPtr value(g_variant_get_variant(boxed.get()));
    if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE_INT32)) return kForeign;
    return std::to_string(g_variant_get_int32(value.get()));
  }

  static Text absence(const gio::Failure& failure) {
    return failure.remoteName() == kNoProperty ? Text(kUnset) : std::nullopt;
  }

  // Where the record does not tell a style, what the user had is not known, and the desktop's own
  // choice stands for it: the icons are not to stay hidden.
  void write(const std::string& text, std::function<void(Outcome)> done) const {
    const auto answered = [done = std::move(done)](GVariant* results, const gio::Failure& failure) {
      done(outcomeOf(results, failure));
    };
    if (const auto style = styleOf(text)) {
      auto* const value = g_variant_new_int32(*style);
      call("SetProperty", g_variant_new("(ssv)", kChannel, kProperty, value), answered);
    } else {
      call("ResetProperty", g_variant_new("(ssb)", kChannel, kProperty, FALSE), answered);
    }
  }

  void call(const char* method, GVariant* arguments, gio::Answered answered) const {
    gio::callStarting(connection_.get(),
                      {"org.xfce.Xfconf", "/org/xfce/Xfconf", "org.xfce.Xfconf", method}, arguments,
                      kCallLimit, calls_, std::move(answered));
  }

  const gio::ObjectPtr<GDBusConnection> connection_;
  const gio::Cancellation calls_;
};

}  // namespace

std::unique_ptr<IconBackend> makeXfconfBackend(GDBusConnection* connection) {
  return std::make_unique<XfconfBackend>(connection);
}

}  // namespace orvane::host::desktopicons
