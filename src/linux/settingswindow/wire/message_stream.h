#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "linux/settingswindow/wire/messages.h"

namespace orvane::formwire {

// Cuts messages out of a stream of bytes that arrives in pieces. It never keeps more bytes than the
// longest message and what append() was given last.
template <class Message>
class MessageStream {
 public:
  using Decode = std::optional<Message> (*)(std::string_view);

  MessageStream(std::size_t mostBytes, Decode decode) : mostBytes_(mostBytes), decode_(decode) {}

  void append(const char* bytes, std::size_t count) {
    if (isBroken_) return;
    buffer_.erase(0, consumed_);
    consumed_ = 0;
    buffer_.append(bytes, count);
  }

  // The next whole message; nothing while it is incomplete, and after the stream broke.
  [[nodiscard]] std::optional<Message> next() {
    const std::string_view rest = std::string_view(buffer_).substr(consumed_);
    if (isBroken_ || rest.size() < kLengthBytes) return std::nullopt;
    const std::size_t length = lengthIn(rest);
    if (length == 0 || length > mostBytes_) return broken();
    if (rest.size() - kLengthBytes < length) return std::nullopt;
    auto message = decode_(rest.substr(kLengthBytes, length));
    consumed_ += kLengthBytes + length;
    return message ? message : broken();
  }

  // Something arrived that is no message; nothing more can be read.
  [[nodiscard]] bool isBroken() const { return isBroken_; }

 private:
  static constexpr std::size_t kLengthBytes = 4;

  static std::size_t lengthIn(std::string_view bytes) {
    std::size_t length = 0;
    for (std::size_t index = 0; index < kLengthBytes; ++index) {
      length |= std::size_t{static_cast<unsigned char>(bytes[index])} << (8 * index);
    }
    return length;
  }
  std::optional<Message> broken() {
    isBroken_ = true;
    buffer_ = {};
    consumed_ = 0;
    return std::nullopt;
  }

  const std::size_t mostBytes_;
  const Decode decode_;
  std::string buffer_;
  std::size_t consumed_ = 0;
  bool isBroken_ = false;
};

// What the window reads.
class BoardMessageStream : public MessageStream<BoardMessage> {
 public:
  BoardMessageStream() : MessageStream(kMostBoardBytes, decodeBoardMessage) {}
};

// What the board reads.
class WindowMessageStream : public MessageStream<WindowMessage> {
 public:
  WindowMessageStream() : MessageStream(kMostWindowBytes, decodeWindowMessage) {}
};

}  // namespace orvane::formwire
