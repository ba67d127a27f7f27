#include "linux/session/session_signs.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "linux/files/file_descriptor.h"
#include "linux/session/bus_address.h"

namespace orvane::host {
namespace {

bool isFolder(const std::string& path) {
  std::error_code unknown;
  return std::filesystem::is_directory(path, unknown);
}

// Whether anybody listens there. Somebody who has no time to answer does, too.
bool isListenedAt(const std::string& name) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (name.size() >= sizeof address.sun_path) return false;
  std::copy(name.begin(), name.end(), address.sun_path);
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket) return true;  // nothing is known
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
  const int failed = ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), size);
  const bool isNobody = failed != 0 && (errno == ECONNREFUSED || errno == ENOENT);
  return !isNobody;
}

class FolderAndBus final : public SessionSigns {
 public:
  FolderAndBus(std::optional<std::string> folder, std::optional<std::string> bus) {
    if (folder && isFolder(*folder)) folder_ = std::move(folder);
    if (bus && isListenedAt(*bus)) bus_ = std::move(bus);
  }
  [[nodiscard]] bool hasEnded() const override {
    return (folder_ && !isFolder(*folder_)) || (bus_ && !isListenedAt(*bus_));
  }

 private:
  std::optional<std::string> folder_;
  std::optional<std::string> bus_;
};

}  // namespace

std::unique_ptr<SessionSigns> makeSessionSigns(const Environment& environment) {
  const auto address = environment("DBUS_SESSION_BUS_ADDRESS");
  return std::make_unique<FolderAndBus>(environment("XDG_RUNTIME_DIR"),
                                        address ? localBusSocket(*address) : std::nullopt);
}

}  // namespace orvane::host
