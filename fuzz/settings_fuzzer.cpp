// Any bytes as what the board and the program of the settings window say to each other.
#include <cstddef>
#include <cstdint>
#include <string>

#include "linux/settingswindow/wire/message_stream.h"

namespace {

using namespace orvane::formwire;

constexpr std::size_t kLengthBytes = 4;

// What was understood can be said, and is then understood as the same.
template <class Message>
void sayAgain(const Message& message, std::optional<Message> (*decode)(std::string_view)) {
  const auto frame = encode(message);
  if (!frame || decode(std::string_view(*frame).substr(kLengthBytes)) != message) {
    __builtin_trap();
  }
}

template <class Stream, class Message>
void take(const std::string& bytes, std::optional<Message> (*decode)(std::string_view)) {
  Stream stream;
  stream.append(bytes.data(), bytes.size());
  while (stream.next()) {
  }
  if (const auto message = decode(bytes)) sayAgain(*message, decode);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  take<BoardMessageStream>(bytes, decodeBoardMessage);
  take<WindowMessageStream>(bytes, decodeWindowMessage);
  return 0;
}
