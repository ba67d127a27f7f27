#pragma once

#include <functional>
#include <string>
#include <variant>

#include "linux/gio/handles.h"

namespace orvane::host::gio {

// What a method call is answered with: the tuple of its results (null: none), or an error.
struct CallError {
  std::string name;  // a bus error name
  std::string message;
};
using CallReply = std::variant<VariantPtr, CallError>;

// The error for a method, an action or an item that does not exist.
[[nodiscard]] CallError unknownMethod(const std::string& message);
[[nodiscard]] CallError invalidArguments(const std::string& message);

// One interface of one object on the bus, for as long as this lives. The library has checked the
// calls' argument types against the description before it hands them on. Default main context only;
// nothing is called back after the destructor.
class ExportedObject {
 public:
  struct Handlers {
    // Called with the tuple of arguments; may destroy the exported object only in a later turn.
    std::function<CallReply(const std::string& method, GVariant* arguments)> call;
    // Null where the property has no value; an interface without properties needs none.
    std::function<VariantPtr(const std::string& property)> property;
  };

  // `description` is introspection text with exactly one interface; throws std::logic_error for any
  // other. isExported() tells whether the path was free.
  ExportedObject(GDBusConnection* connection, const std::string& path,
                 const std::string& description, Handlers handlers);
  ExportedObject(const ExportedObject&) = delete;
  ExportedObject& operator=(const ExportedObject&) = delete;
  ~ExportedObject();

  [[nodiscard]] bool isExported() const { return registration_ != 0; }
  // Sends a signal of the interface to everybody; null: no arguments.
  void emit(const std::string& signal, GVariant* arguments = nullptr) const;

 private:
  static void onCall(GDBusConnection*, const char* sender, const char* path, const char* interface,
                     const char* method, GVariant* arguments, GDBusMethodInvocation* invocation,
                     gpointer self);
  static GVariant* onProperty(GDBusConnection*, const char* sender, const char* path,
                              const char* interface, const char* property, GError** error,
                              gpointer self);

  const ObjectPtr<GDBusConnection> connection_;
  const std::string path_;
  const NodeInfoPtr description_;
  const Handlers handlers_;
  guint registration_ = 0;
};

}  // namespace orvane::host::gio
