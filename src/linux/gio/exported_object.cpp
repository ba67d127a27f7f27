#include "linux/gio/exported_object.h"

#include <stdexcept>
#include <utility>

namespace orvane::host::gio {
namespace {

NodeInfoPtr parsedDescription(const std::string& description) {
  Failure failure;
  NodeInfoPtr info(g_dbus_node_info_new_for_xml(description.c_str(), failure.out()));
  if (!info) throw std::logic_error(failure.message());
  if (!info->interfaces || !info->interfaces[0] || info->interfaces[1]) {
    throw std::logic_error("a description needs one interface");
  }
  return info;
}

}  // namespace

CallError unknownMethod(const std::string& message) {
  return {"org.freedesktop.DBus.Error.UnknownMethod", message};
}

CallError invalidArguments(const std::string& message) {
  return {"org.freedesktop.DBus.Error.InvalidArgs", message};
}

ExportedObject::ExportedObject(GDBusConnection* connection, const std::string& path,
                               const std::string& description, Handlers handlers)
    : connection_(shared(connection)),
      path_(path),
      description_(parsedDescription(description)),
      handlers_(std::move(handlers)) {
  static const GDBusInterfaceVTable entries = {&onCall, &onProperty, nullptr, {}};
  registration_ = g_dbus_connection_register_object(
      connection, path.c_str(), description_->interfaces[0], &entries, this, nullptr, nullptr);
}

// The library delivers nothing to an object that is not registered any more, also not what it had
// queued before.
ExportedObject::~ExportedObject() {
  if (registration_ != 0) g_dbus_connection_unregister_object(connection_.get(), registration_);
}

void ExportedObject::emit(const std::string& signal, GVariant* arguments) const {
  g_dbus_connection_emit_signal(connection_.get(), nullptr, path_.c_str(),
                                description_->interfaces[0]->name, signal.c_str(), arguments,
                                nullptr);
}

void ExportedObject::onCall(GDBusConnection*, const char*, const char*, const char*,
                            const char* method, GVariant* arguments,
                            GDBusMethodInvocation* invocation, gpointer self) {
  const auto call = static_cast<ExportedObject*>(self)->handlers_.call;
  auto reply = call ? call(method, arguments) : CallReply(unknownMethod("The object is gone."));
  if (const auto* error = std::get_if<CallError>(&reply)) {
    g_dbus_method_invocation_return_dbus_error(invocation, error->name.c_str(),
                                               error->message.c_str());
  } else {
    g_dbus_method_invocation_return_value(invocation, std::get<VariantPtr>(reply).get());
  }
}

GVariant* ExportedObject::onProperty(GDBusConnection*, const char*, const char*, const char*,
                                     const char* property, GError** error, gpointer self) {
  const auto& read = static_cast<ExportedObject*>(self)->handlers_.property;
  auto value = read ? read(property) : nullptr;
  if (!value) {
    g_set_error(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_PROPERTY, "There is no property %s.",
                property);
  }
  return value.release();
}

}  // namespace orvane::host::gio
