#include "linux/gio/subscription.h"

#include "private_bus.h"

namespace orvane::host::gio {
namespace {

const Method nameOwnerChanged{"org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus", "NameOwnerChanged"};

void countSign(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
               gpointer count) {
  ++*static_cast<int*>(count);
}

TEST(Subscriptions, HearUntilTheyEnd) {
  const PrivateBus bus;
  const auto listening = bus.connect();
  int heard = 0;
  const guint subscription = subscribe(listening.get(), nameOwnerChanged, nullptr,
                                       G_DBUS_SIGNAL_FLAGS_NONE, &countSign, &heard);
  ASSERT_NE(subscription, 0);
  const auto other = bus.connect();
  EXPECT_TRUE(eventually([&] { return heard > 0; }));
  unsubscribe(listening.get(), subscription);
}

TEST(Subscriptions, AreNotMadeWhereTheConnectionIsClosed) {
  const PrivateBus bus;
  const auto closed = bus.connect();
  ASSERT_TRUE(g_dbus_connection_close_sync(closed.get(), nullptr, nullptr));
  // Which another thread notes, a moment later.
  ASSERT_TRUE(eventually([&] { return g_dbus_connection_is_closed(closed.get()); }));
  int heard = 0;
  const guint subscription = subscribe(closed.get(), nameOwnerChanged, nullptr,
                                       G_DBUS_SIGNAL_FLAGS_NONE, &countSign, &heard);
  EXPECT_EQ(subscription, 0);
  unsubscribe(closed.get(), subscription);
}

}  // namespace
}  // namespace orvane::host::gio
