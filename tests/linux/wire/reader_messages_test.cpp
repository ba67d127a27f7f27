#include "linux/wire/reader_messages.h"

#include <gtest/gtest.h>

#include <limits>

#include "linux/wire/example_messages.h"

namespace orvane::wire {
namespace {

TEST(ReaderMessages, ARequestSurvivesTheWay) {
  EXPECT_EQ(decodeRequest(encode(exampleRequest())), exampleRequest());
  EXPECT_EQ(decodeRequest(encode(ReadRequest{})), ReadRequest{});
}

TEST(ReaderMessages, NoPrefixOfARequestIsARequest) {
  const std::string whole = encode(exampleRequest());
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(decodeRequest(whole.substr(0, size))) << size;
  }
}

TEST(ReaderMessages, BytesBehindARequestSpoilIt) {
  EXPECT_FALSE(decodeRequest(encode(exampleRequest()) + '\0'));
}

TEST(ReaderMessages, AnAnswerIsNoRequest) { EXPECT_FALSE(decodeRequest(encode(exampleAnswer()))); }

TEST(ReaderMessages, AWindowWithoutNumbersIsNoRequest) {
  ReadRequest request = exampleRequest();
  request.windowEnd = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(decodeRequest(encode(request)));
  request.windowEnd = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(decodeRequest(encode(request)));
}

TEST(ReaderMessages, ACountBeyondTheBytesIsRefused) {
  std::string bytes = encode(ReadRequest{});
  for (std::size_t index = bytes.size() - 4; index < bytes.size(); ++index) bytes[index] = '\xff';
  EXPECT_FALSE(decodeRequest(bytes));
}

TEST(ReaderMessages, NoFlippedByteCrashesDecoding) {
  const std::string whole = encode(exampleRequest());
  int refused = 0;
  for (std::size_t index = 0; index < whole.size(); ++index) {
    std::string bytes = whole;
    bytes[index] = static_cast<char>(~bytes[index]);
    const auto decoded = decodeRequest(bytes);
    EXPECT_NE(decoded, exampleRequest()) << index;
    if (!decoded) ++refused;
  }
  EXPECT_GE(refused, 8);  // each byte of the frame at least
}

}  // namespace
}  // namespace orvane::wire
