#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "linux/files/file_descriptor.h"
#include "linux/settingswindow/wire/message_stream.h"

namespace orvane::host {

enum class ChannelLoss {
  hungUp,   // the other end is closed
  nonsense  // the other end wrote something that is no message
};

// Our end of the socket to a program that shows a window. It neither blocks nor waits: what cannot
// be written at once is written by the default main context. Main thread only.
class MessageChannel {
 public:
  // Both are called in turns of the default main context. The channel may be destroyed inside; a
  // loss is told once, and nothing after it.
  struct Listener {
    std::function<void(const formwire::WindowMessage&)> received;
    std::function<void(ChannelLoss)> lost;
  };

  MessageChannel(FileDescriptor socket, Listener listener);
  MessageChannel(const MessageChannel&) = delete;
  MessageChannel& operator=(const MessageChannel&) = delete;
  ~MessageChannel();

  // A frame as encode() makes it.
  void write(std::string frame);
  // Hands on what has arrived and was not read yet.
  void readAll();

 private:
  // Whether there may be more to read.
  bool read();
  [[nodiscard]] bool handOn();
  void flush();
  void watchWriting();
  void lose(ChannelLoss loss);

  const FileDescriptor socket_;
  const std::shared_ptr<const Listener> listener_;  // outlives a call in which the channel ends
  formwire::WindowMessageStream arriving_;
  std::string leaving_;
  std::size_t written_ = 0;
  bool isLost_ = false;
  unsigned readWatch_ = 0;
  unsigned writeWatch_ = 0;
  const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace orvane::host
