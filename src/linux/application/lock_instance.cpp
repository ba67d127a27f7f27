#include "linux/application/lock_instance.h"

#include <fcntl.h>
#include <glib-unix.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <optional>
#include <string>
#include <utility>

#include "linux/files/file_descriptor.h"
#include "linux/gio/handles.h"

namespace orvane::host::application {
namespace {

namespace fs = std::filesystem;

// What a further start sends. One byte that means nothing else.
constexpr char kActivate = 'a';

// The address may be of any length; its digest is not.
std::string nameFor(const std::string& busAddress) {
  if (busAddress.empty()) return "session";
  const gio::TextPtr digest(
      g_compute_checksum_for_string(G_CHECKSUM_SHA256, busAddress.c_str(), -1));
  constexpr std::size_t kEnough = 16;
  return "session-" + std::string(digest.get(), kEnough);
}

std::optional<sockaddr_un> addressOf(const fs::path& socket) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const auto& text = socket.native();
  if (text.size() >= sizeof address.sun_path) return std::nullopt;
  text.copy(address.sun_path, text.size());
  return address;
}

FileDescriptor openSocket() {
  return FileDescriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

// None where the socket cannot be had: further starts are then guarded against all the
// same, and only not heard of.
FileDescriptor listenAt(const fs::path& path) {
  const auto address = addressOf(path);
  auto socket = openSocket();
  if (!address || !socket) return FileDescriptor();
  ::unlink(path.c_str());  // of an instance that is gone: the lock is ours
  const auto* generic = reinterpret_cast<const sockaddr*>(&*address);
  return ::bind(socket.get(), generic, sizeof *address) == 0 ? std::move(socket) : FileDescriptor();
}

bool tellAt(const fs::path& path) {
  const auto address = addressOf(path);
  const auto socket = openSocket();
  if (!address || !socket) return false;
  const auto* generic = reinterpret_cast<const sockaddr*>(&*address);
  return ::sendto(socket.get(), &kActivate, 1, 0, generic, sizeof *address) == 1;
}

class LockInstance final : public Instance {
 public:
  LockInstance(FileDescriptor lock, FileDescriptor socket, fs::path socketPath,
               std::function<void()> activate, MainActor& mainActor)
      : lock_(std::move(lock)),
        socket_(std::move(socket)),
        socketPath_(std::move(socketPath)),
        activate_(std::move(activate)),
        mainActor_(mainActor) {
    if (socket_) source_ = g_unix_fd_add(socket_.get(), G_IO_IN, &onReadable, this);
  }
  LockInstance(const LockInstance&) = delete;
  LockInstance& operator=(const LockInstance&) = delete;
  ~LockInstance() override {
    if (source_ != 0) g_source_remove(source_);
    if (socket_) ::unlink(socketPath_.c_str());
  }

 private:
  static gboolean onReadable(gint socket, GIOCondition, gpointer self) {
    char byte = 0;
    while (::recv(socket, &byte, 1, 0) == 1) {
      if (byte == kActivate) static_cast<LockInstance*>(self)->activated();
    }
    return G_SOURCE_CONTINUE;
  }
  void activated() {
    mainActor_.post([alive = std::weak_ptr(alive_), this] {
      if (!alive.expired() && activate_) activate_();
    });
  }

  const FileDescriptor lock_;
  const FileDescriptor socket_;
  const fs::path socketPath_;
  const std::function<void()> activate_;
  MainActor& mainActor_;
  guint source_ = 0;
  const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace

InstanceClaim claimByLock(ApplicationOptions options, MainActor& mainActor) {
  const auto folder = options.runtimeFolder / "orvane";
  ::mkdir(folder.c_str(), 0700);  // if that was in vain, opening tells
  const auto name = nameFor(options.busAddress);
  const auto lockPath = folder / (name + ".lock");
  const auto socketPath = folder / (name + ".socket");
  FileDescriptor lock(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!lock) {
    if (options.connection) return {InstanceOutcome::first, nullptr};
    std::cerr << "orvane: A second start cannot be told, because " << lockPath
              << " cannot be opened: " << std::strerror(errno) << '\n';
    return {InstanceOutcome::first, nullptr};
  }
  if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
    if (!options.startedWithSession && !tellAt(socketPath)) {
      std::cerr << "orvane: Orvane runs already, but cannot be asked for its settings.\n";
    }
    return {InstanceOutcome::forwarded, nullptr};
  }
  auto socket = listenAt(socketPath);
  return {InstanceOutcome::first,
          std::make_unique<LockInstance>(std::move(lock), std::move(socket), socketPath,
                                         std::move(options.activate), mainActor)};
}

}  // namespace orvane::host::application
