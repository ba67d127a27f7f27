// gio/ is what the adapters that speak to the session bus share: owners for the library's handles.
#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>

namespace orvane::host::gio {

struct ReleaseObject {
  void operator()(void* object) const { g_object_unref(object); }
};
struct ReleaseVariant {
  void operator()(GVariant* value) const { g_variant_unref(value); }
};
struct ReleaseMemory {
  void operator()(void* memory) const { g_free(memory); }
};
struct ReleaseNodeInfo {
  void operator()(GDBusNodeInfo* info) const { g_dbus_node_info_unref(info); }
};
struct ReleaseKeyFile {
  void operator()(GKeyFile* file) const { g_key_file_unref(file); }
};

template <class T>
using ObjectPtr = std::unique_ptr<T, ReleaseObject>;
using VariantPtr = std::unique_ptr<GVariant, ReleaseVariant>;
using TextPtr = std::unique_ptr<char, ReleaseMemory>;
using NodeInfoPtr = std::unique_ptr<GDBusNodeInfo, ReleaseNodeInfo>;
using KeyFilePtr = std::unique_ptr<GKeyFile, ReleaseKeyFile>;

// One more owner of an object that somebody else owns too.
template <class T>
[[nodiscard]] ObjectPtr<T> shared(T* object) {
  return ObjectPtr<T>(static_cast<T*>(g_object_ref(object)));
}

// A fresh value is "floating"; this makes it ours.
[[nodiscard]] inline VariantPtr owned(GVariant* value) {
  return VariantPtr(g_variant_ref_sink(value));
}

// Where a call leaves what went wrong.
class Failure {
 public:
  Failure() = default;
  Failure(const Failure&) = delete;
  Failure& operator=(const Failure&) = delete;
  ~Failure() { g_clear_error(&error_); }

  // For the call's last argument; whatever an earlier call left is dropped.
  [[nodiscard]] GError** out() {
    g_clear_error(&error_);
    return &error_;
  }
  [[nodiscard]] bool is(GQuark domain, int code) const {
    return g_error_matches(error_, domain, code) != FALSE;
  }
  [[nodiscard]] std::string message() const { return error_ ? error_->message : ""; }
  // The bus name of an error that somebody else on the bus answered; else empty.
  [[nodiscard]] std::string remoteName() const {
    if (!error_ || !g_dbus_error_is_remote_error(error_)) return {};
    const TextPtr name(g_dbus_error_get_remote_error(error_));
    return name ? name.get() : "";
  }
  explicit operator bool() const { return error_ != nullptr; }

 private:
  GError* error_ = nullptr;
};

// Ends calls that are still on their way when this is destroyed: their callbacks then see
// G_IO_ERROR_CANCELLED and must touch nothing of the owner.
class Cancellation {
 public:
  Cancellation() : cancellable_(g_cancellable_new()) {}
  Cancellation(const Cancellation&) = delete;
  Cancellation& operator=(const Cancellation&) = delete;
  ~Cancellation() { g_cancellable_cancel(cancellable_.get()); }

  [[nodiscard]] GCancellable* get() const { return cancellable_.get(); }

 private:
  ObjectPtr<GCancellable> cancellable_;
};

}  // namespace orvane::host::gio
