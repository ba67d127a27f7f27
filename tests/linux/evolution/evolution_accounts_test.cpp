#include "linux/evolution/evolution_accounts.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <set>

#include "gio/private_bus.h"
#include "linux/evolution/service_watch.h"
#include "linux/mainloop/main_loop.h"
#include "support/test_paths.h"

namespace orvane::host {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* registry = "org.gnome.evolution.dataserver.Sources5";
constexpr const char* calendars = "org.gnome.evolution.dataserver.Calendar8";

void own(GDBusConnection* connection, const char* name) {
  gio::askBus(connection, "RequestName", "('" + std::string(name) + "', uint32 0)");
}
void disown(GDBusConnection* connection, const char* name) {
  gio::askBus(connection, "ReleaseName", "('" + std::string(name) + "',)");
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

// A bus that can start the service, on which nobody runs it yet.
struct StartableService {
  StartableService() {
    for (const char* name : {registry, calendars}) bus.install(name);
    gio::askBus(theirs.get(), "ReloadConfig");
  }

  gio::PrivateBus bus;
  gio::ObjectPtr<GDBusConnection> theirs = bus.connect();
  gio::ObjectPtr<GDBusConnection> ours = bus.connect();
};

TEST(ServiceWatchOfABusTest, TheServiceMayBeInstalledAndRemovedWhileTheBusRuns) {
  const gio::PrivateBus bus;
  const auto ours = bus.connect();
  const auto theirs = bus.connect();
  std::vector<bool> told;
  const ServiceWatch watching(ours.get(), [&](bool isThere) { told.push_back(isThere); });
  const auto hasToldWithin = [&](std::size_t count) {
    return gio::eventually([&] { return told.size() >= count; });
  };
  const auto reload = [&] { gio::askBus(theirs.get(), "ReloadConfig"); };
  ASSERT_TRUE(hasToldWithin(1));
  for (const char* name : {registry, calendars}) bus.install(name);
  reload();
  ASSERT_TRUE(hasToldWithin(2));
  bus.remove(registry);
  reload();
  ASSERT_TRUE(hasToldWithin(3));
  EXPECT_THAT(told, ElementsAre(false, true, false));
}

TEST(ServiceWatchOfABusTest, AServiceThatTheBusCanStartIsThereThroughoutAndItsProgramsComeAndGo) {
  const StartableService service;
  std::vector<bool> told;
  std::vector<bool> running;
  const ServiceWatch watching(
      service.ours.get(), [&](bool isThere) { told.push_back(isThere); },
      [&](bool runs) { running.push_back(runs); });
  ASSERT_TRUE(gio::eventually([&] { return !told.empty(); }));
  own(service.theirs.get(), calendars);
  own(service.theirs.get(), "org.gnome.evolution.dataserver.AddressBook10");
  disown(service.theirs.get(), calendars);
  own(service.theirs.get(), registry);
  ASSERT_TRUE(gio::eventually([&] { return running.size() >= 3; }));
  EXPECT_THAT(running, ElementsAre(true, false, true));
  EXPECT_THAT(told, ElementsAre(true));
}

// A bus that the service is on, and the connections of it and of the program.
struct ServedBus {
  ServedBus() {
    own(service.get(), registry);
    own(service.get(), calendars);
  }

  gio::PrivateBus bus;
  gio::ObjectPtr<GDBusConnection> service = bus.connect();
  gio::ObjectPtr<GDBusConnection> ours = bus.connect();
};

class EvolutionAccountsTest : public testing::Test {
 protected:
  void watch(GDBusConnection* connection, const std::string& module) {
    accounts = makeEvolutionAccounts({connection, module}, *loop);
    accounts->watch([this](AccountService* service) {
      found.push_back(service != nullptr);
      services.insert(service);
    });
    EXPECT_THAT(found, IsEmpty()) << "never before the call has returned";
  }

  std::unique_ptr<MainLoop> loop = makeMainLoop();
  std::unique_ptr<Accounts> accounts;
  std::vector<bool> found;
  std::set<AccountService*> services;
};

TEST_F(EvolutionAccountsTest, WithoutABusThereIsNoService) {
  watch(nullptr, "/nonexistent/module.so");
  ASSERT_TRUE(gio::eventually([&] { return !found.empty(); }));
  EXPECT_THAT(found, ElementsAre(false));
}

TEST_F(EvolutionAccountsTest, WithoutAModuleThereIsNoService) {
  const ServedBus bus;
  testing::internal::CaptureStderr();
  watch(bus.ours.get(), "/nonexistent/module.so");
  ASSERT_TRUE(gio::eventually([&] { return !found.empty(); }));
  EXPECT_THAT(found, ElementsAre(false));
  disown(bus.service.get(), calendars);
  ASSERT_TRUE(gio::eventually([&] { return found.size() >= 2; }));
  own(bus.service.get(), calendars);
  ASSERT_TRUE(gio::eventually([&] { return found.size() >= 3; }));
  EXPECT_THAT(found, Each(false));
  accounts.reset();
  const auto told = testing::internal::GetCapturedStderr();
  EXPECT_THAT(told, HasSubstr("cannot be loaded: /nonexistent/module.so: "));
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
}

TEST_F(EvolutionAccountsTest, WithoutTheServiceNothingIsSaidAboutTheModule) {
  gio::PrivateBus bus;
  const auto ours = bus.connect();
  testing::internal::CaptureStderr();
  watch(ours.get(), "/nonexistent/module.so");
  ASSERT_TRUE(gio::eventually([&] { return !found.empty(); }));
  EXPECT_THAT(found, ElementsAre(false));
  accounts.reset();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(EvolutionAccountsTest, WhatIsNoModuleOfOursIsToldOf) {
  const ServedBus bus;
  testing::internal::CaptureStderr();
  watch(bus.ours.get(), "libgio-2.0.so.0");
  ASSERT_TRUE(gio::eventually([&] { return !found.empty(); }));
  EXPECT_THAT(found, ElementsAre(false));
  accounts.reset();
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("undefined symbol"));
}

TEST_F(EvolutionAccountsTest, AServiceThatGoesStaysFoundAndIsToldOfWhenItIsBack) {
  const ServedBus bus;
  watch(bus.ours.get(), builtProgram("tests/plain_module.so"));
  ASSERT_TRUE(gio::eventually([&] { return !found.empty(); }));
  std::vector<bool> seen;
  const ServiceWatch beside(bus.ours.get(), [&](bool isThere) { seen.push_back(isThere); });
  ASSERT_TRUE(gio::eventually([&] { return seen.size() == 1; }));
  disown(bus.service.get(), calendars);
  ASSERT_TRUE(gio::eventually([&] { return seen.size() == 2; }));
  own(bus.service.get(), calendars);
  ASSERT_TRUE(gio::eventually([&] { return found.size() >= 2; }));
  EXPECT_THAT(found, ElementsAre(true, true));
  EXPECT_THAT(services, SizeIs(1)) << "it is the same";
  accounts.reset();
}

TEST_F(EvolutionAccountsTest, TheModuleIsLoadedWhenTheFirstFrameHasHadItsTime) {
  const ServedBus bus;
  const auto begun = std::chrono::steady_clock::now();
  watch(bus.ours.get(), builtProgram("tests/plain_module.so"));
  ASSERT_TRUE(gio::eventually([&] { return !found.empty(); }));
  EXPECT_GE(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(200));
  accounts.reset();
}

TEST_F(EvolutionAccountsTest, AServiceThatTheBusCanStartIsToldOfWhenItRunsAgain) {
  const StartableService service;
  watch(service.ours.get(), builtProgram("tests/plain_module.so"));
  ASSERT_TRUE(gio::eventually([&] { return !found.empty(); }));
  own(service.theirs.get(), registry);
  own(service.theirs.get(), calendars);
  ASSERT_TRUE(gio::eventually([&] { return found.size() >= 2; }));
  EXPECT_THAT(found, Each(true));
  EXPECT_THAT(services, SizeIs(1)) << "it is the same";
  accounts.reset();
}

TEST_F(EvolutionAccountsTest, AServiceThatEndsAsSoonAsItRunsIsNotBack) {
  const StartableService service;
  watch(service.ours.get(), builtProgram("tests/plain_module.so"));
  ASSERT_TRUE(gio::eventually([&] { return !found.empty(); }));
  own(service.theirs.get(), calendars);
  disown(service.theirs.get(), calendars);
  bool isLater = false;
  const auto later = loop->after(std::chrono::milliseconds(1500), [&] { isLater = true; });
  ASSERT_TRUE(gio::eventually([&] { return isLater; }));
  EXPECT_THAT(found, ElementsAre(true));
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
