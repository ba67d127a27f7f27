#include "linux/gio/exported_object.h"

#include "linux/gio/name_watch.h"
#include "private_bus.h"

namespace orvane::host::gio {
namespace {

constexpr const char* kEcho = R"(
<node>
  <interface name="org.example.Echo">
    <property name="Sound" type="s" access="read"/>
    <property name="Silence" type="s" access="read"/>
    <method name="Say"><arg type="s" direction="in"/><arg type="s" direction="out"/></method>
    <method name="Fail"/>
    <method name="Nothing"/>
    <signal name="Said"><arg type="s"/></signal>
  </interface>
</node>)";

class ExportedObjectTest : public testing::Test {
 protected:
  void SetUp() override {
    service_ = bus_.connect();
    client_ = bus_.connect();
    ASSERT_TRUE(service_);
    ASSERT_TRUE(client_);
    object_ = std::make_unique<ExportedObject>(service_.get(), "/echo", kEcho, handlers());
  }
  static ExportedObject::Handlers handlers() {
    return {[](const std::string& method, GVariant* arguments) -> CallReply {
              if (method == "Fail") return CallError{"org.example.Bad", "Bad luck."};
              if (method == "Nothing") return VariantPtr();
              return owned(g_variant_ref(arguments));
            },
            [](const std::string& property) {
              return property == "Sound" ? owned(g_variant_new_string("hum")) : nullptr;
            }};
  }
  Answer call(const std::string& method, const std::string& arguments = "") {
    return ask(client_.get(), serviceName(), "/echo", "org.example.Echo", method, arguments);
  }
  [[nodiscard]] std::string serviceName() const {
    return g_dbus_connection_get_unique_name(service_.get());
  }

  PrivateBus bus_;
  ObjectPtr<GDBusConnection> service_;
  ObjectPtr<GDBusConnection> client_;
  std::unique_ptr<ExportedObject> object_;
};

TEST_F(ExportedObjectTest, AnswersCallsAndErrors) {
  EXPECT_TRUE(object_->isExported());
  EXPECT_EQ(call("Say", "('hello',)").text(), "('hello',)");
  EXPECT_EQ(call("Nothing").text(), "()");
  EXPECT_EQ(call("Fail").text(), "org.example.Bad");
  EXPECT_EQ(call("Say", "(5,)").text(), "org.freedesktop.DBus.Error.InvalidArgs");
}

TEST_F(ExportedObjectTest, AnswersProperties) {
  const auto sound = [&](const std::string& name) {
    return property(client_.get(), serviceName(), "/echo", "org.example.Echo", name);
  };
  EXPECT_EQ(sound("Sound"), "'hum'");
  EXPECT_NE(sound("Silence"), "'hum'");
}

TEST_F(ExportedObjectTest, ATakenPathIsTold) {
  const ExportedObject second(service_.get(), "/echo", kEcho, handlers());
  EXPECT_FALSE(second.isExported());
  EXPECT_EQ(call("Say", "('hello',)").text(), "('hello',)");
}

TEST_F(ExportedObjectTest, AfterItsEndThereIsNoObject) {
  object_.reset();
  EXPECT_NE(call("Nothing").text(), "()");
}

TEST_F(ExportedObjectTest, SendsSignals) {
  std::string heard;
  const auto hear = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                       GVariant* arguments, gpointer heardText) {
    const TextPtr printed(g_variant_print(arguments, FALSE));
    *static_cast<std::string*>(heardText) = printed.get();
  };
  const guint id = g_dbus_connection_signal_subscribe(
      client_.get(), serviceName().c_str(), "org.example.Echo", "Said", "/echo", nullptr,
      G_DBUS_SIGNAL_FLAGS_NONE, hear, &heard, nullptr);
  call("Nothing");  // the subscription has reached the bus by now
  object_->emit("Said", g_variant_new("(s)", "boo"));
  EXPECT_TRUE(eventually([&] { return !heard.empty(); }));
  EXPECT_EQ(heard, "('boo',)");
  g_dbus_connection_signal_unsubscribe(client_.get(), id);
}

TEST_F(ExportedObjectTest, ADescriptionWithoutAnInterfaceIsAMistake) {
  EXPECT_THROW(ExportedObject(service_.get(), "/x", "<node/>", {}), std::logic_error);
  EXPECT_THROW(ExportedObject(service_.get(), "/x", "none", {}), std::logic_error);
}

TEST_F(ExportedObjectTest, ANameIsSeenComingAndGoing) {
  std::vector<std::string> seen;
  const NameWatch watch(
      client_.get(), "org.example.Name",
      [&](const std::string& owner) { seen.push_back("came " + owner); },
      [&] { seen.emplace_back("gone"); });
  EXPECT_TRUE(eventually([&] { return seen.size() == 1; }));
  const guint name =
      g_bus_own_name_on_connection(service_.get(), "org.example.Name", G_BUS_NAME_OWNER_FLAGS_NONE,
                                   nullptr, nullptr, nullptr, nullptr);
  EXPECT_TRUE(eventually([&] { return seen.size() == 2; }));
  g_bus_unown_name(name);
  EXPECT_TRUE(eventually([&] { return seen.size() == 3; }));
  EXPECT_EQ(seen, (std::vector<std::string>{"gone", "came " + serviceName(), "gone"}));
}

TEST_F(ExportedObjectTest, AnEndedWatchHearsNothing) {
  int heard = 0;
  {
    const NameWatch watch(
        client_.get(), "org.example.Name", [&](const std::string&) { ++heard; }, [&] { ++heard; });
  }
  call("Nothing");
  EXPECT_EQ(heard, 0);
}

}  // namespace
}  // namespace orvane::host::gio
