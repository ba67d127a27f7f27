#include "linux/settingswindow/gtk/board_socket.h"

#include <fcntl.h>
#include <glibmm/main.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

namespace orvane::window {
namespace {

constexpr std::size_t kPiece = std::size_t{64} << 10;

bool isWait(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

}  // namespace

BoardSocket::BoardSocket(host::FileDescriptor descriptor, Ears ears)
    : descriptor_(std::move(descriptor)), ears_(std::move(ears)) {
  ::fcntl(descriptor_.get(), F_SETFL, ::fcntl(descriptor_.get(), F_GETFL) | O_NONBLOCK);
  ::fcntl(descriptor_.get(), F_SETFD, FD_CLOEXEC);
  using enum Glib::IOCondition;
  reading_ = Glib::signal_io().connect([this](Glib::IOCondition) { return read(); },
                                       descriptor_.get(), IO_IN | IO_HUP | IO_ERR);
}

BoardSocket::~BoardSocket() {
  reading_.disconnect();
  writing_.disconnect();
}

// One piece in a turn of the loop, so that a long form leaves the window alive.
bool BoardSocket::read() {
  if (!readOnce()) return false;
  handOn();
  return !hasEnded_;
}

bool BoardSocket::readOnce() {
  std::array<char, kPiece> bytes;
  const auto count = ::recv(descriptor_.get(), bytes.data(), bytes.size(), 0);
  if (count < 0 && isWait(errno)) return true;
  if (count <= 0) return end(false), false;
  stream_.append(bytes.data(), static_cast<std::size_t>(count));
  return true;
}

void BoardSocket::handOn() {
  while (auto message = stream_.next()) ears_.message(std::move(*message));
  if (stream_.isBroken()) end(true);
}

void BoardSocket::send(const formwire::WindowMessage& message) {
  if (hasEnded_) return;
  const auto frame = formwire::encode(message);
  if (!frame) return;
  unsent_ += *frame;
  if (!writing_.connected() && write()) {
    using enum Glib::IOCondition;
    writing_ = Glib::signal_io().connect([this](Glib::IOCondition) { return write(); },
                                         descriptor_.get(), IO_OUT | IO_ERR);
  }
}

// Answers whether something is left. That nobody listens is found out by reading.
bool BoardSocket::write() {
  while (!unsent_.empty()) {
    const auto count =
        ::send(descriptor_.get(), unsent_.data(), unsent_.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && isWait(errno)) return true;
    if (count < 0) unsent_.clear();
    if (count >= 0) unsent_.erase(0, static_cast<std::size_t>(count));
  }
  return false;
}

void BoardSocket::end(bool isNonsense) {
  if (std::exchange(hasEnded_, true)) return;
  ears_.ended(isNonsense);
}

}  // namespace orvane::window
