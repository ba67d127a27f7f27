#include "linux/settingswindow/message_channel.h"

#include <glib-unix.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

namespace orvane::host {
namespace {

// How much is read in one turn, so that a program which never falls silent stops nobody else.
constexpr std::size_t kMostPerTurn = 64 * 1024;

bool isPassing(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

}  // namespace

MessageChannel::MessageChannel(FileDescriptor socket, Listener listener)
    : socket_(std::move(socket)), listener_(std::make_shared<const Listener>(std::move(listener))) {
  const GUnixFDSourceFunc readable = [](gint, GIOCondition, gpointer data) {
    static_cast<MessageChannel*>(data)->read();
    return gboolean{G_SOURCE_CONTINUE};
  };
  readWatch_ = g_unix_fd_add(
      socket_.get(), static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR), readable, this);
}

MessageChannel::~MessageChannel() {
  if (readWatch_ != 0) g_source_remove(readWatch_);
  if (writeWatch_ != 0) g_source_remove(writeWatch_);
}

void MessageChannel::write(std::string frame) {
  if (isLost_) return;
  leaving_ += frame;
  flush();
}

void MessageChannel::readAll() {
  const std::weak_ptr<bool> alive = alive_;
  while (!alive.expired() && read()) continue;
}

bool MessageChannel::read() {
  if (isLost_) return false;
  std::array<char, kMostPerTurn> bytes;
  const ssize_t count = recv(socket_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count > 0) {
    arriving_.append(bytes.data(), static_cast<std::size_t>(count));
    return handOn();
  }
  if (count == 0 || !isPassing(errno)) lose(ChannelLoss::hungUp);
  return false;
}

bool MessageChannel::handOn() {
  const auto listener = listener_;
  const std::weak_ptr<bool> alive = alive_;
  while (const auto message = arriving_.next()) {
    listener->received(*message);
    if (alive.expired() || isLost_) return false;
  }
  if (!arriving_.isBroken()) return true;
  lose(ChannelLoss::nonsense);
  return false;
}

void MessageChannel::flush() {
  while (written_ < leaving_.size()) {
    const ssize_t count = send(socket_.get(), leaving_.data() + written_,
                               leaving_.size() - written_, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      // Other failures are told by reading, when all that the program said before has been heard.
      if (isPassing(errno)) watchWriting();
      return;
    }
    written_ += static_cast<std::size_t>(count);
  }
  leaving_.clear();
  leaving_.shrink_to_fit();
  written_ = 0;
}

void MessageChannel::watchWriting() {
  if (writeWatch_ != 0) return;
  const GUnixFDSourceFunc writable = [](gint, GIOCondition, gpointer data) {
    auto& self = *static_cast<MessageChannel*>(data);
    self.writeWatch_ = 0;
    self.flush();
    return gboolean{G_SOURCE_REMOVE};
  };
  writeWatch_ = g_unix_fd_add(socket_.get(), G_IO_OUT, writable, this);
}

void MessageChannel::lose(ChannelLoss loss) {
  isLost_ = true;
  if (readWatch_ != 0) g_source_remove(std::exchange(readWatch_, 0));
  if (writeWatch_ != 0) g_source_remove(std::exchange(writeWatch_, 0));
  const auto listener = listener_;
  listener->lost(loss);
}

}  // namespace orvane::host
