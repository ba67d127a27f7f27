#include "linux/evolution/service_watch.h"

#include <chrono>
#include <string_view>
#include <utility>

#include "linux/gio/subscription.h"

namespace orvane::host {
namespace {

// A release of the service that older programs cannot speak to has other numbers behind these.
// The library knows which are its own; here it matters only whether there is anything at all.
constexpr const char* family = "org.gnome.evolution.dataserver";
constexpr std::string_view registry = "org.gnome.evolution.dataserver.Sources";
constexpr std::string_view calendars = "org.gnome.evolution.dataserver.Calendar";

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";
constexpr std::chrono::seconds patience{10};

guint subscribe(GDBusConnection* bus, const char* signal, const char* argument,
                GDBusSignalFlags flags, GDBusSignalCallback heard, gpointer self) {
  return gio::subscribe(bus, {busName, busPath, busName, signal}, argument, flags, heard, self);
}

}  // namespace

ServiceWatch::ServiceWatch(GDBusConnection* bus, std::function<void(bool)> told,
                           std::function<void(bool)> ownerChanged)
    : bus_(gio::shared(bus)), told_(std::move(told)), ownerChanged_(std::move(ownerChanged)) {
  ownerSigns_ = subscribe(bus, "NameOwnerChanged", family, G_DBUS_SIGNAL_FLAGS_MATCH_ARG0_NAMESPACE,
                          &onSign, this);
  activatableSigns_ = subscribe(bus, "ActivatableServicesChanged", nullptr,
                                G_DBUS_SIGNAL_FLAGS_NONE, &onSign, this);
  ask();
}

ServiceWatch::~ServiceWatch() {
  gio::unsubscribe(bus_.get(), ownerSigns_);
  gio::unsubscribe(bus_.get(), activatableSigns_);
}

void ServiceWatch::onSign(GDBusConnection*, const char*, const char*, const char*, const char*,
                          GVariant* signal, gpointer self) {
  auto* const watch = static_cast<ServiceWatch*>(self);
  watch->ask();
  watch->noteOwner(signal);
}

void ServiceWatch::noteOwner(GVariant* signal) {
  if (!ownerChanged_ || !g_variant_is_of_type(signal, G_VARIANT_TYPE("(sss)"))) return;
  const char* name = nullptr;
  const char* owner = nullptr;
  g_variant_get(signal, "(&s&s&s)", &name, nullptr, &owner);
  const std::string_view text = name;
  if (!text.starts_with(registry) && !text.starts_with(calendars)) return;
  const auto ownerChanged = ownerChanged_;
  ownerChanged(*owner != '\0');
}

void ServiceWatch::ask() {
  isAskedAgain_ = unanswered_ > 0;
  if (isAskedAgain_) return;
  hasRegistry_ = hasCalendars_ = false;
  askFor("ListActivatableNames");
  askFor("ListNames");
}

void ServiceWatch::askFor(const char* list) {
  ++unanswered_;
  gio::call(bus_.get(), {busName, busPath, busName, list}, nullptr, patience, cancellation_,
            [this](GVariant* results, const gio::Failure&) {
              if (results != nullptr) note(results);
              if (--unanswered_ == 0) conclude();
            });
}

void ServiceWatch::note(GVariant* results) {
  if (!g_variant_is_of_type(results, G_VARIANT_TYPE("(as)"))) return;
  const gio::VariantPtr names(g_variant_get_child_value(results, 0));
  for (gsize index = 0; index < g_variant_n_children(names.get()); ++index) {
    const gio::VariantPtr name(g_variant_get_child_value(names.get(), index));
    const std::string_view text = g_variant_get_string(name.get(), nullptr);
    hasRegistry_ = hasRegistry_ || text.starts_with(registry);
    hasCalendars_ = hasCalendars_ || text.starts_with(calendars);
  }
}

void ServiceWatch::conclude() {
  if (isAskedAgain_) return ask();
  const bool isThere = hasRegistry_ && hasCalendars_;
  if (known_ == isThere) return;
  known_ = isThere;
  const auto told = told_;
  told(isThere);
}

}  // namespace orvane::host
