#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "../gio/private_bus.h"
#include "linux/gio/exported_object.h"

namespace orvane::host {

// Knows sessions and tells of them as logind does, on a bus of the test's own.
class StandInLogind {
 public:
  struct Session {
    std::string type = "x11";
    std::string display = ":7";
    bool isActive = true;
    bool isLocked = false;
  };
  // By which session it answers, as the last part of a path; empty: by none.
  struct Answers {
    std::string id = "2";  // that GetSession knows
    std::string byId = {};
    std::string byProcess = {};
    std::string byUser = {};
  };

  StandInLogind(const gio::PrivateBus& bus, Answers answers)
      : answers_(std::move(answers)), connection_(bus.connect()) {
    add(root_, manager_,
        {[this](const auto& method, GVariant* arguments) { return find(method, arguments); },
         nullptr});
    add(root_ + "/user/self", user_, {nullptr, [this](const auto&) { return display(); }});
    name_ = g_bus_own_name_on_connection(connection_.get(), "org.freedesktop.login1",
                                         G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr,
                                         nullptr);
  }
  StandInLogind(const StandInLogind&) = delete;
  StandInLogind& operator=(const StandInLogind&) = delete;
  ~StandInLogind() {
    g_bus_unown_name(name_);
    g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
  }

  void addSession(const std::string& name, const Session& session) {
    sessions_[name] = session;
    add(pathOf(name), session_,
        {nullptr, [this, name](const auto& property) { return valueOf(name, property); }});
  }

  // Tells of it as a change.
  void become(const std::string& name, bool isActive, bool isLocked) {
    sessions_[name].isActive = isActive;
    sessions_[name].isLocked = isLocked;
    GVariantBuilder changed;
    g_variant_builder_init(&changed, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&changed, "{sv}", "Active", g_variant_new_boolean(isActive));
    g_variant_builder_add(&changed, "{sv}", "LockedHint", g_variant_new_boolean(isLocked));
    g_dbus_connection_emit_signal(
        connection_.get(), nullptr, pathOf(name).c_str(), "org.freedesktop.DBus.Properties",
        "PropertiesChanged",
        g_variant_new("(sa{sv}as)", "org.freedesktop.login1.Session", &changed, nullptr), nullptr);
  }

  // Which methods were called, and how often a session was read.
  [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }
  [[nodiscard]] int readings() const { return readings_; }

 private:
  using Handlers = gio::ExportedObject::Handlers;

  static constexpr const char* manager_ = R"xml(
<node><interface name="org.freedesktop.login1.Manager">
  <method name="GetSession">
    <arg type="s" direction="in"/><arg type="o" direction="out"/>
  </method>
  <method name="GetSessionByPID">
    <arg type="u" direction="in"/><arg type="o" direction="out"/>
  </method>
</interface></node>)xml";
  static constexpr const char* user_ = R"xml(
<node><interface name="org.freedesktop.login1.User">
  <property name="Display" type="(so)" access="read"/>
</interface></node>)xml";
  static constexpr const char* session_ = R"xml(
<node><interface name="org.freedesktop.login1.Session">
  <property name="Type" type="s" access="read"/>
  <property name="Display" type="s" access="read"/>
  <property name="Active" type="b" access="read"/>
  <property name="LockedHint" type="b" access="read"/>
</interface></node>)xml";

  void add(const std::string& path, const char* description, Handlers handlers) {
    objects_.push_back(std::make_unique<gio::ExportedObject>(connection_.get(), path, description,
                                                             std::move(handlers)));
  }

  [[nodiscard]] std::string pathOf(const std::string& name) const {
    return root_ + "/session/" + name;
  }

  gio::CallReply find(const std::string& method, GVariant* arguments) {
    calls_.push_back(method);
    if (method == "GetSession") {
      const char* id = "";
      g_variant_get(arguments, "(&s)", &id);
      return id == answers_.id ? found(answers_.byId) : found({});
    }
    guint32 process = 1;
    g_variant_get(arguments, "(u)", &process);
    return process == 0 ? found(answers_.byProcess) : found({});
  }

  [[nodiscard]] gio::CallReply found(const std::string& name) const {
    if (name.empty()) return gio::CallError{"org.freedesktop.login1.NoSuchSession", "None"};
    return gio::owned(g_variant_new("(o)", pathOf(name).c_str()));
  }

  gio::VariantPtr display() {
    calls_.emplace_back("Display");
    const auto path = answers_.byUser.empty() ? "/" : pathOf(answers_.byUser);
    return gio::owned(g_variant_new("(so)", answers_.byUser.c_str(), path.c_str()));
  }

  gio::VariantPtr valueOf(const std::string& name, const std::string& property) {
    const auto& session = sessions_[name];
    if (property == "Active") ++readings_;
    if (property == "Active") return gio::owned(g_variant_new_boolean(session.isActive));
    if (property == "LockedHint") return gio::owned(g_variant_new_boolean(session.isLocked));
    return gio::owned(
        g_variant_new_string((property == "Type" ? session.type : session.display).c_str()));
  }

  const std::string root_ = "/org/freedesktop/login1";
  const Answers answers_;
  std::map<std::string, Session> sessions_;
  std::vector<std::string> calls_;
  int readings_ = 0;
  const gio::ObjectPtr<GDBusConnection> connection_;
  std::vector<std::unique_ptr<gio::ExportedObject>> objects_;
  guint name_ = 0;
};

}  // namespace orvane::host
