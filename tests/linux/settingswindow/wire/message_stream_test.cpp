#include "linux/settingswindow/wire/message_stream.h"

#include <gtest/gtest.h>

#include <random>

#include "example_messages.h"

namespace orvane::formwire {
namespace {

template <class Message>
std::string framesOf(const std::vector<Message>& messages) {
  std::string bytes;
  for (const auto& message : messages) bytes += encode(message).value();
  return bytes;
}

template <class Stream, class Message>
std::vector<Message> readIn(Stream& stream, const std::string& bytes, std::size_t piece,
                            std::vector<Message> read = {}) {
  for (std::size_t begin = 0; begin < bytes.size(); begin += piece) {
    const std::string part = bytes.substr(begin, piece);
    stream.append(part.data(), part.size());
    while (auto message = stream.next()) read.push_back(*message);
  }
  return read;
}

TEST(FormWireStream, MessagesMayArriveInPiecesOfAnySize) {
  for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{1'000'000}}) {
    BoardMessageStream ofBoard;
    EXPECT_EQ((readIn<BoardMessageStream, BoardMessage>(ofBoard, framesOf(exampleBoardMessages()),
                                                        piece)),
              exampleBoardMessages());
    EXPECT_FALSE(ofBoard.isBroken());
    WindowMessageStream ofWindow;
    EXPECT_EQ((readIn<WindowMessageStream, WindowMessage>(
                  ofWindow, framesOf(exampleWindowMessages()), piece)),
              exampleWindowMessages());
    EXPECT_FALSE(ofWindow.isBroken());
  }
}

TEST(FormWireStream, WhatIsNoMessageBreaksTheStreamForGood) {
  WindowMessageStream stream;
  const std::string ack = encode(WindowMessage(Ack{1})).value();
  const std::string bytes = ack + std::string("\x02\0\0\0J{", 6) + ack;
  stream.append(bytes.data(), bytes.size());
  EXPECT_EQ(stream.next(), WindowMessage(Ack{1}));
  EXPECT_EQ(stream.next(), std::nullopt);
  EXPECT_TRUE(stream.isBroken());
  stream.append(ack.data(), ack.size());
  EXPECT_EQ(stream.next(), std::nullopt);
}

TEST(FormWireStream, ALengthOverTheLimitOrOfNothingBreaksItAtOnce) {
  for (const std::string& length : {std::string("\x01\0\x10\0", 4), std::string("\xff\xff\xff\xff"),
                                    std::string("\0\0\0\0", 4)}) {
    WindowMessageStream stream;
    stream.append(length.data(), length.size());
    EXPECT_EQ(stream.next(), std::nullopt);
    EXPECT_TRUE(stream.isBroken());
  }
}

TEST(FormWireStream, AMessageThatIsCutOffIsWaitedFor) {
  WindowMessageStream stream;
  const std::string ack = encode(WindowMessage(Ack{1})).value();
  stream.append(ack.data(), ack.size() - 1);
  EXPECT_EQ(stream.next(), std::nullopt);
  EXPECT_FALSE(stream.isBroken());
}

// Single bytes of good messages are changed, and what is random is put behind a good length.
TEST(FormWireStream, BytesOfAnyKindAreTakenWithoutHarm) {
  std::mt19937 random(5);
  const std::string ofBoard = framesOf(exampleBoardMessages());
  const std::string ofWindow = framesOf(exampleWindowMessages());
  for (int round = 0; round < 1000; ++round) {
    std::string bytes = round % 2 == 0 ? ofBoard : ofWindow;
    for (int change = 0; change <= round % 3; ++change) {
      bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    BoardMessageStream readsBoard;
    WindowMessageStream readsWindow;
    EXPECT_LE((readIn<BoardMessageStream, BoardMessage>(readsBoard, bytes, bytes.size()).size()),
              exampleBoardMessages().size());
    EXPECT_LE((readIn<WindowMessageStream, WindowMessage>(readsWindow, bytes, bytes.size()).size()),
              exampleWindowMessages().size());
  }
}

}  // namespace
}  // namespace orvane::formwire
