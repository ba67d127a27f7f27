#pragma once

#include <functional>
#include <string>

#include "linux/gio/handles.h"

namespace orvane::host::gio {

// Follows who owns a well-known name on the bus, for as long as this lives. Default main context
// only; nothing is called after the destructor.
class NameWatch {
 public:
  // `appeared` is called in a later turn if the name has an owner, and with every new one;
  // `vanished` when it has none (any more). The owner is the unique name of a connection.
  NameWatch(GDBusConnection* connection, const std::string& name,
            std::function<void(const std::string& owner)> appeared,
            std::function<void()> vanished = nullptr);
  NameWatch(const NameWatch&) = delete;
  NameWatch& operator=(const NameWatch&) = delete;
  ~NameWatch();

 private:
  const std::function<void(const std::string& owner)> appeared_;
  const std::function<void()> vanished_;
  guint watch_ = 0;
};

}  // namespace orvane::host::gio
