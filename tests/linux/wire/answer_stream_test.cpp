#include <gtest/gtest.h>

#include "linux/wire/example_messages.h"
#include "linux/wire/reader_messages.h"

namespace orvane::wire {
namespace {

void append(AnswerStream& stream, const std::string& bytes) {
  stream.append(bytes.data(), bytes.size());
}

TEST(AnswerStream, AnAnswerSurvivesTheWay) {
  AnswerStream stream;
  append(stream, encode(exampleAnswer()));
  EXPECT_EQ(stream.next(), exampleAnswer());
  EXPECT_EQ(stream.next(), std::nullopt);
  EXPECT_FALSE(stream.isBroken());
}

TEST(AnswerStream, EveryOutcomeSurvivesTheWay) {
  AnswerStream stream;
  for (const auto outcome : {ReadOutcome::good, ReadOutcome::unreadable, ReadOutcome::notCalendar,
                             ReadOutcome::tooLarge}) {
    append(stream, encode(answerFor("a", outcome)));
    const auto answer = stream.next();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->outcome, outcome);
  }
}

TEST(AnswerStream, AnswersMayArriveByteByByte) {
  FileAnswer second = exampleAnswer();
  second.path = "second";
  AnswerStream stream;
  std::vector<FileAnswer> answers;
  for (const char byte : encode(exampleAnswer()) + encode(second) + encode(FileAnswer{})) {
    stream.append(&byte, 1);
    while (const auto answer = stream.next()) answers.push_back(*answer);
  }
  EXPECT_EQ(answers, (std::vector<FileAnswer>{exampleAnswer(), second, FileAnswer{}}));
  EXPECT_FALSE(stream.isBroken());
}

TEST(AnswerStream, ManyAnswersMayArriveAtOnce) {
  std::string bytes;
  for (int index = 0; index < 2000; ++index) {
    bytes += encode(answerFor(std::to_string(index)));
  }
  AnswerStream stream;
  append(stream, bytes);
  for (int index = 0; index < 2000; ++index) EXPECT_EQ(stream.next()->path, std::to_string(index));
  EXPECT_EQ(stream.next(), std::nullopt);
}

TEST(AnswerStream, WhatIsNoAnswerBreaksTheStreamForGood) {
  AnswerStream stream;
  append(stream, encode(exampleAnswer()) + "Segmentation fault");
  EXPECT_EQ(stream.next(), exampleAnswer());
  EXPECT_EQ(stream.next(), std::nullopt);
  EXPECT_TRUE(stream.isBroken());
  append(stream, encode(exampleAnswer()));
  EXPECT_EQ(stream.next(), std::nullopt);
}

TEST(AnswerStream, ALengthBeyondTheLimitBreaksTheStreamAtOnce) {
  std::string bytes = encode(FileAnswer{}).substr(0, 8);
  bytes[7] = '\x7f';
  AnswerStream stream;
  append(stream, bytes);
  EXPECT_EQ(stream.next(), std::nullopt);
  EXPECT_TRUE(stream.isBroken());
}

TEST(AnswerStream, AnOutcomeThatDoesNotExistBreaksTheStream) {
  std::string bytes = encode(answerFor("", ReadOutcome::tooLarge));
  bytes[12] = 4;  // behind the frame and the empty path
  AnswerStream stream;
  append(stream, bytes);
  EXPECT_EQ(stream.next(), std::nullopt);
  EXPECT_TRUE(stream.isBroken());
}

TEST(AnswerStream, ACutAnswerIsNotBroken) {
  const std::string bytes = encode(exampleAnswer());
  AnswerStream stream;
  append(stream, bytes.substr(0, bytes.size() - 1));
  EXPECT_EQ(stream.next(), std::nullopt);
  EXPECT_FALSE(stream.isBroken());
}

}  // namespace
}  // namespace orvane::wire
