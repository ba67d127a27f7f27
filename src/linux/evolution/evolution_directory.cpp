#include "linux/evolution/evolution_directory.h"

#include <libedataserver/libedataserver.h>

#include <utility>
#include <vector>

#include "linux/evolution/call.h"
#include "linux/evolution/evolution_client.h"
#include "linux/evolution/signal_handlers.h"
#include "linux/gio/handles.h"

namespace orvane::host {
namespace {

struct Registry {
  std::shared_ptr<GDBusConnection> bus;
  std::shared_ptr<ESourceRegistry> sources;  // null: it cannot be had
};

// The library ends the process where these settings are not installed.
bool areSettingsInstalled() {
  auto* const source = g_settings_schema_source_get_default();
  if (source == nullptr) return false;
  auto* const schema =
      g_settings_schema_source_lookup(source, "org.gnome.Evolution.DefaultSources", TRUE);
  if (schema == nullptr) return false;
  g_settings_schema_unref(schema);
  return true;
}

// Blocks.
Registry openRegistry(GCancellable* cancellable) {
  if (!areSettingsInstalled()) return {};
  gio::Failure failure;
  // The connection that the library will use; by itself it would end the process with the bus.
  auto* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, failure.out());
  if (bus == nullptr) return {};
  // While anybody holds on to a connection that has ended, there is no other to be had.
  Registry registry{{bus, gio::ReleaseObject()}, nullptr};
  if (g_dbus_connection_is_closed(bus)) return {};
  g_dbus_connection_set_exit_on_close(bus, FALSE);
  auto* const sources = e_source_registry_new_sync(cancellable, failure.out());
  if (sources != nullptr) registry.sources.reset(sources, gio::ReleaseObject());
  return registry;
}

const char* extensionFor(EKEntityType type) {
  return type == EKEntityType::event ? E_SOURCE_EXTENSION_CALENDAR : E_SOURCE_EXTENSION_TASK_LIST;
}

bool isSelected(ESource* source, EKEntityType type) {
  auto* const extension = e_source_get_extension(source, extensionFor(type));
  return e_source_selectable_get_selected(E_SOURCE_SELECTABLE(extension)) != FALSE;
}

void releaseSources(GList* sources) { g_list_free_full(sources, g_object_unref); }

// Whoever hears it may destroy us.
void tell(std::function<void()> sign) { sign(); }

class EvolutionDirectory final : public AccountDirectory {
 public:
  EvolutionDirectory(std::shared_ptr<CallThreads> threads, Registry registry, AccountSigns signs)
      : threads_(std::move(threads)),
        registry_(std::move(registry.sources)),
        signs_(std::move(signs)),
        handlers_(registry_.get()),
        busHandlers_(registry.bus.get()) {
    // When the registry ends and is started anew the library finds it again by itself.
    busHandlers_.add("closed", [this] { tell(signs_.died); });
    for (const char* signal : {"source-added", "source-removed", "source-changed", "source-enabled",
                               "source-disabled"}) {
      handlers_.add(signal, [this] { tell(signs_.changed); });
    }
  }

  [[nodiscard]] std::vector<AccountCalendar> calendars() const override {
    std::vector<AccountCalendar> calendars;
    for (const auto type : {EKEntityType::event, EKEntityType::reminder}) {
      const std::unique_ptr<GList, void (*)(GList*)> sources(
          e_source_registry_list_enabled(registry_.get(), extensionFor(type)), &releaseSources);
      for (const auto* item = sources.get(); item != nullptr; item = item->next) {
        auto* const source = static_cast<ESource*>(item->data);
        if (!isSelected(source, type)) continue;
        const gio::TextPtr title(e_source_dup_display_name(source));
        calendars.push_back({e_source_get_uid(source), title ? title.get() : "", type});
      }
    }
    return calendars;
  }

  Subscription open(const AccountCalendar& calendar, AccountSigns signs,
                    std::function<void(std::unique_ptr<AccountClient>)> opened) override {
    const gio::ObjectPtr<ESource> source(
        e_source_registry_ref_source(registry_.get(), calendar.source.c_str()));
    if (source) {
      return openCalendar(threads_, source.get(), calendar.type, std::move(signs),
                          std::move(opened));
    }
    // It went just now.
    return callOnThread<bool>(
        *threads_, [](GCancellable*) { return false; },
        [opened = std::move(opened)](bool) { opened(nullptr); });
  }

 private:
  const std::shared_ptr<CallThreads> threads_;
  const std::shared_ptr<ESourceRegistry> registry_;
  const AccountSigns signs_;
  SignalHandlers handlers_;
  SignalHandlers busHandlers_;
};

}  // namespace

Subscription openDirectory(std::shared_ptr<CallThreads> threads, AccountSigns signs,
                           std::function<void(std::unique_ptr<AccountDirectory>)> opened) {
  return callOnThread<Registry>(
      *threads, [](GCancellable* cancellable) { return openRegistry(cancellable); },
      [threads, signs = std::move(signs), opened = std::move(opened)](Registry registry) {
        if (!registry.sources) return opened(nullptr);
        opened(std::make_unique<EvolutionDirectory>(threads, std::move(registry), signs));
      });
}

}  // namespace orvane::host
