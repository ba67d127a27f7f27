#include "linux/evolution/evolution_accounts.h"

#include <gmock/gmock.h>

#include "gio/private_bus.h"
#include "linux/evolution/service_watch.h"
#include "linux/mainloop/main_loop.h"

namespace orvane::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* registry = "org.gnome.evolution.dataserver.Sources5";
constexpr const char* calendars = "org.gnome.evolution.dataserver.Calendar8";

void own(GDBusConnection* connection, const char* name) {
  gio::ask(connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
           "RequestName", "('" + std::string(name) + "', uint32 0)");
}
void disown(GDBusConnection* connection, const char* name) {
  gio::ask(connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
           "ReleaseName", "('" + std::string(name) + "',)");
}

class ServiceWatchTest : public testing::Test {
 protected:
  ServiceWatch watch() {
    return {ours.get(), [this](bool isThere) { told.push_back(isThere); }};
  }
  bool hasToldWithin(std::size_t count) {
    return gio::eventually([&] { return told.size() >= count; });
  }

  gio::PrivateBus bus;
  gio::ObjectPtr<GDBusConnection> ours = bus.connect();
  gio::ObjectPtr<GDBusConnection> service = bus.connect();
  std::vector<bool> told;
};

TEST_F(ServiceWatchTest, ABusWithoutTheServiceHasNone) {
  const auto watching = watch();
  ASSERT_TRUE(hasToldWithin(1));
  EXPECT_THAT(told, ElementsAre(false));
}

TEST_F(ServiceWatchTest, TheServiceIsBothItsPrograms) {
  own(service.get(), registry);
  const auto watching = watch();
  ASSERT_TRUE(hasToldWithin(1));
  own(service.get(), calendars);
  ASSERT_TRUE(hasToldWithin(2));
  EXPECT_THAT(told, ElementsAre(false, true));
  disown(service.get(), calendars);
  ASSERT_TRUE(hasToldWithin(3));
  EXPECT_THAT(told, ElementsAre(false, true, false));
}

TEST_F(ServiceWatchTest, AnotherReleaseHasOtherNumbers) {
  own(service.get(), "org.gnome.evolution.dataserver.Sources12");
  own(service.get(), "org.gnome.evolution.dataserver.Calendar34");
  const auto watching = watch();
  ASSERT_TRUE(hasToldWithin(1));
  EXPECT_THAT(told, ElementsAre(true));
}

TEST_F(ServiceWatchTest, NamesOfOthersAreNone) {
  own(service.get(), "org.example.dataserver.Sources5");
  own(service.get(), "org.example.dataserver.Calendar8");
  own(service.get(), "org.gnome.evolution.dataserver.AddressBook10");
  const auto watching = watch();
  ASSERT_TRUE(hasToldWithin(1));
  EXPECT_THAT(told, ElementsAre(false));
}

class EvolutionAccountsTest : public testing::Test {
 protected:
  void watch(GDBusConnection* connection, const std::string& module) {
    accounts = makeEvolutionAccounts({connection, module}, *loop);
    accounts->watch([this](AccountService* service) { found.push_back(service != nullptr); });
    EXPECT_THAT(found, IsEmpty()) << "never before the call has returned";
  }

  std::unique_ptr<MainLoop> loop = makeMainLoop();
  std::unique_ptr<Accounts> accounts;
  std::vector<bool> found;
};

TEST_F(EvolutionAccountsTest, WithoutABusThereIsNoService) {
  watch(nullptr, "/nonexistent/module.so");
  ASSERT_TRUE(gio::eventually([&] { return !found.empty(); }));
  EXPECT_THAT(found, ElementsAre(false));
}

TEST_F(EvolutionAccountsTest, WithoutAModuleThereIsNoService) {
  gio::PrivateBus bus;
  const auto service = bus.connect();
  own(service.get(), registry);
  own(service.get(), calendars);
  const auto ours = bus.connect();
  watch(ours.get(), "/nonexistent/module.so");
  ASSERT_TRUE(gio::eventually([&] { return !found.empty(); }));
  EXPECT_THAT(found, ElementsAre(false));
  accounts.reset();
}

TEST_F(EvolutionAccountsTest, AStoppedOneTellsNothing) {
  watch(nullptr, "");
  accounts->stop();
  bool isLater = false;
  const auto later = loop->after(std::chrono::milliseconds(20), [&] { isLater = true; });
  ASSERT_TRUE(gio::eventually([&] { return isLater; }));
  EXPECT_THAT(found, IsEmpty());
}

}  // namespace
}  // namespace orvane::host
