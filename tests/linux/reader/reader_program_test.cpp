#include "linux/reader/reader_program.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>

#include "linux/reader/listing.h"
#include "support/scratch_folder.h"

namespace orvane::ical {
namespace {

using wire::ReadOutcome;

std::string event(const std::string& uid, const std::string& more = "") {
  return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nSUMMARY:" + uid + "\r\nDTSTART:20261120T100000Z\r\n" +
         more + "END:VEVENT\r\n";
}

std::string calendar(const std::string& items) {
  return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + items + "END:VCALENDAR\r\n";
}

class ReaderProgram : public testing::Test {
 protected:
  [[nodiscard]] std::string path(const std::string& name) const { return folder_ / name; }
  std::string file(const std::string& name, const std::string& text) {
    return folder_.write(name, text);
  }

  // The good files on both sides of a bad one are read, whatever it is.
  wire::FileAnswer answerBetweenGoodOnes(const std::string& bad) {
    const std::string before = file("before.ics", calendar(event("before")));
    const std::string after = file("after.ics", calendar(event("after")));
    run_ = runReader(std::vector<std::string>{before, bad, after});
    EXPECT_EQ(run_.exitStatus, 0);
    EXPECT_FALSE(run_.isStreamBroken);
    if (run_.answers.size() != 3) {
      ADD_FAILURE() << run_.answers.size() << " answers";
      return {};
    }
    EXPECT_EQ(run_.answers[0].events.size(), 1U);
    EXPECT_EQ(run_.answers[1].path, bad);
    EXPECT_EQ(run_.answers[2].events.size(), 1U);
    return run_.answers[1];
  }

  const ScratchFolder folder_;
  ReaderRun run_;
};

TEST_F(ReaderProgram, AnswersInTheOrderOfItsPaths) {
  std::vector<std::string> paths;
  for (int index = 0; index < 50; ++index) {
    const std::string name = std::to_string(index);
    paths.push_back(file(name, calendar(event(name))));
  }
  const ReaderRun run = runReader(paths);
  EXPECT_EQ(run.exitStatus, 0);
  ASSERT_EQ(run.answers.size(), 50U);
  for (std::size_t index = 0; index < 50; ++index) {
    EXPECT_EQ(run.answers[index].path, paths[index]);
    ASSERT_EQ(run.answers[index].events.size(), 1U);
    EXPECT_EQ(run.answers[index].events[0].uid, std::to_string(index));
  }
}

TEST_F(ReaderProgram, WithoutPathsEndsWithoutAWord) {
  const ReaderRun run = runReader(std::vector<std::string>{});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_TRUE(run.answers.empty());
}

TEST_F(ReaderProgram, WhatIsNoRequestIsRefused) {
  for (const std::string input : {"", "hello", "BEGIN:VCALENDAR"}) {
    EXPECT_EQ(runReader(input).exitStatus, 2) << input;
  }
  std::string cut = wire::encode(requestFor({"/tmp"}));
  cut.pop_back();
  EXPECT_EQ(runReader(cut).exitStatus, 2);
}

TEST_F(ReaderProgram, AMissingFileIsUnreadable) {
  EXPECT_EQ(answerBetweenGoodOnes(path("missing.ics")).outcome, ReadOutcome::unreadable);
}

TEST_F(ReaderProgram, AFolderIsUnreadable) {
  EXPECT_EQ(answerBetweenGoodOnes(folder_.path()).outcome, ReadOutcome::unreadable);
}

TEST_F(ReaderProgram, APipeIsUnreadableAndNotWaitedFor) {
  ASSERT_EQ(mkfifo(path("pipe.ics").c_str(), 0600), 0);
  EXPECT_EQ(answerBetweenGoodOnes(path("pipe.ics")).outcome, ReadOutcome::unreadable);
}

TEST_F(ReaderProgram, ADeviceIsUnreadable) {
  EXPECT_EQ(answerBetweenGoodOnes("/dev/zero").outcome, ReadOutcome::unreadable);
}

TEST_F(ReaderProgram, ALoopOfLinksIsUnreadable) {
  std::filesystem::create_symlink(path("loop.ics"), path("loop.ics"));
  EXPECT_EQ(answerBetweenGoodOnes(path("loop.ics")).outcome, ReadOutcome::unreadable);
}

TEST_F(ReaderProgram, ALinkIsFollowed) {
  file("real.ics", calendar(event("real")));
  std::filesystem::create_symlink(path("real.ics"), path("link.ics"));
  EXPECT_EQ(answerBetweenGoodOnes(path("link.ics")).events.size(), 1U);
}

TEST_F(ReaderProgram, WhatIsNoCalendarIsSaidToBeNone) {
  for (const std::string text : {"", "\n\n", "hello", "BEGIN:VCARD\r\nEND:VCARD\r\n"}) {
    EXPECT_EQ(answerBetweenGoodOnes(file("bad.ics", text)).outcome, ReadOutcome::notCalendar)
        << text;
  }
  EXPECT_EQ(answerBetweenGoodOnes(file("bad.ics", std::string(100000, '\0'))).outcome,
            ReadOutcome::notCalendar);
}

TEST_F(ReaderProgram, AnEmptyCalendarIsGood) {
  const auto answer = answerBetweenGoodOnes(file("empty.ics", calendar("")));
  EXPECT_EQ(answer.outcome, ReadOutcome::good);
  EXPECT_FALSE(answer.holdsEvents);
}

TEST_F(ReaderProgram, AFileBeyondTheLimitIsTooLarge) {
  const std::string name = file("large.ics", calendar(event("a")));
  ASSERT_EQ(truncate(name.c_str(), 65 << 20), 0);
  EXPECT_EQ(answerBetweenGoodOnes(name).outcome, ReadOutcome::tooLarge);
}

TEST_F(ReaderProgram, AFileOf50MegabytesIsReadWithinBounds) {
  std::string filler = "BEGIN:VEVENT\r\nUID:old\r\nDTSTART:20010101T100000Z\r\nDESCRIPTION:";
  filler += std::string(1000, 'x') + "\r\nEND:VEVENT\r\n";
  std::string text = event("first");
  while (text.size() < 50'000'000) text += filler;
  const auto answer = answerBetweenGoodOnes(file("huge.ics", calendar(text + event("last"))));
  EXPECT_EQ(answer.outcome, ReadOutcome::good);
  EXPECT_EQ(answer.events.size(), 2U);
  EXPECT_LT(run_.processorSeconds, 10);
  EXPECT_LT(run_.peakKilobytes, 600'000);
}

TEST_F(ReaderProgram, ALineOfTenMegabytesCostsNoNeighbour) {
  const std::string longLine = std::string(10'000'000, 'x') + "\r\n";
  std::string folded = "DESCRIPTION:";
  for (int index = 0; index < 150'000; ++index) folded += std::string(64, 'y') + "\r\n ";
  const auto answer = answerBetweenGoodOnes(
      file("long.ics", calendar(event("a") + event("b", "SUMMARY:" + longLine) +
                                event("c", "ATTACH:" + longLine) + event("d", folded + "\r\n") +
                                event("e", "EXDATE:" + longLine) + event(longLine) + event("f"))));
  EXPECT_EQ(answer.events.size(), 7U);
  for (const auto& shown : answer.events) {
    EXPECT_LE(shown.title.value_or("").size(), 1000U);
    EXPECT_LE(shown.uid.size(), 255U);
  }
  EXPECT_LT(run_.processorSeconds, 10);
}

TEST_F(ReaderProgram, AHundredThousandItemsAreRead) {
  std::string items;
  for (int index = 0; index < 100'000; ++index) items += event(std::to_string(index));
  const auto answer = answerBetweenGoodOnes(file("many.ics", calendar(items)));
  EXPECT_EQ(answer.events.size(), 100'000U);
}

TEST_F(ReaderProgram, AGreedyRuleIsCutAndItsNeighboursAreShown) {
  std::string items;
  for (const char* rule : {"FREQ=SECONDLY", "FREQ=SECONDLY;COUNT=1000000000", "FREQ=MINUTELY",
                           "FREQ=SECONDLY;BYHOUR=9;COUNT=1000000000",
                           "FREQ=DAILY;BYHOUR=0,1,2,3,4,5;BYMINUTE=0,1,2,3;BYSECOND=0,1,2,3"}) {
    items += "BEGIN:VEVENT\r\nUID:" + std::string(rule) +
             "\r\nDTSTART:19700101T000000Z\r\nRRULE:" + rule + "\r\nEND:VEVENT\r\n";
  }
  const auto answer = answerBetweenGoodOnes(file("greedy.ics", calendar(items + event("good"))));
  std::map<std::string, std::size_t> counts;
  for (const auto& shown : answer.events) ++counts[shown.uid];
  EXPECT_EQ(counts["FREQ=SECONDLY"], 10'080U);
  EXPECT_EQ(counts["FREQ=MINUTELY"], 10'080U);
  EXPECT_EQ(counts["good"], 1U);
  for (const auto& [uid, count] : counts) EXPECT_LE(count, 10'080U) << uid;
  EXPECT_LT(run_.processorSeconds, 10);
}

TEST_F(ReaderProgram, TwentyEverySecondAreAllShown) {
  std::string items;
  for (int index = 0; index < 20; ++index) {
    items += "BEGIN:VEVENT\r\nUID:" + std::to_string(index) +
             "\r\nDTSTART:19700101T000000Z\r\nRRULE:FREQ=SECONDLY\r\nEND:VEVENT\r\n";
  }
  const auto answer = answerBetweenGoodOnes(file("often.ics", calendar(items + event("good"))));
  std::map<std::string, std::size_t> counts;
  for (const auto& shown : answer.events) ++counts[shown.uid];
  EXPECT_EQ(counts["good"], 1U);
  for (int index = 0; index < 20; ++index) EXPECT_EQ(counts[std::to_string(index)], 10'080U);
  EXPECT_LT(run_.processorSeconds, 10);
}

TEST_F(ReaderProgram, AHundredGreedyRulesDoNotCrowdOutWhatFollows) {
  std::string items;
  for (int index = 0; index < 100; ++index) {
    items += "BEGIN:VEVENT\r\nUID:" + std::to_string(index) +
             "\r\nDTSTART:19700101T000000Z\r\nRRULE:FREQ=MINUTELY;BYHOUR=0,1,2,3,4,5,6,7,8,9;"
             "COUNT=1000000000\r\nEND:VEVENT\r\n";
  }
  items +=
      "BEGIN:VEVENT\r\nUID:good\r\nDTSTART:19700101T100000Z\r\n"
      "RRULE:FREQ=DAILY;COUNT=100000\r\nEND:VEVENT\r\n";
  const auto answer = answerBetweenGoodOnes(file("often.ics", calendar(items + event("last"))));
  std::map<std::string, std::size_t> counts;
  for (const auto& shown : answer.events) ++counts[shown.uid];
  EXPECT_EQ(counts["last"], 1U);
  EXPECT_EQ(counts["good"], 14U);
  EXPECT_GT(counts["0"], 1000U);
  EXPECT_LT(run_.processorSeconds, 10);
}

TEST_F(ReaderProgram, ManyGreedyRulesStayWithinTheTimeOfAFile) {
  std::string items = event("good");
  for (int index = 0; index < 2000; ++index) {
    items += "BEGIN:VEVENT\r\nUID:" + std::to_string(index) +
             "\r\nDTSTART:19700101T000000Z\r\nRRULE:FREQ=SECONDLY;BYHOUR=9;COUNT=1000000000\r\n"
             "END:VEVENT\r\n";
  }
  const auto answer = answerBetweenGoodOnes(file("greedy.ics", calendar(items)));
  ASSERT_FALSE(answer.events.empty());
  EXPECT_EQ(answer.events[0].uid, "good");
  EXPECT_LT(run_.processorSeconds, 10);
}

TEST_F(ReaderProgram, AnAnswerStaysWithinAMessage) {
  std::string items;
  for (int index = 0; index < 200; ++index) {
    items += event(std::to_string(index) + std::string(200, 'u'),
                   "SUMMARY:" + std::string(900, 's') + "\r\nRRULE:FREQ=SECONDLY\r\n");
  }
  const auto answer = answerBetweenGoodOnes(file("wide.ics", calendar(items)));
  EXPECT_GT(answer.events.size(), 10'080U);
  EXPECT_LT(wire::encode(answer).size(), wire::kMostMessageBytes);
}

TEST_F(ReaderProgram, AFileCutInTheMiddleShowsItsWholeItems) {
  const std::string whole = calendar(event("one") + event("two"));
  const std::size_t two = whole.rfind("BEGIN:VEVENT");
  for (std::size_t size = two; size < whole.rfind("END:VEVENT") + 10; ++size) {
    const std::vector<std::string> paths{file("cut.ics", whole.substr(0, size))};
    if (size % 7 != 0) continue;
    const ReaderRun run = runReader(paths);
    ASSERT_EQ(run.answers.size(), 1U);
    ASSERT_EQ(run.answers[0].events.size(), 1U) << size;
    EXPECT_EQ(run.answers[0].events[0].uid, "one");
  }
}

TEST_F(ReaderProgram, LimitsItself) {
  const std::string limits = limitsOfWaitingReader();
  EXPECT_NE(limits.find("limited: yes"), std::string::npos) << limits;
  EXPECT_NE(limits.find("Max core file size        0                    0 "), std::string::npos)
      << limits;
}

TEST_F(ReaderProgram, ShowsAsManyOccurrencesAsItMayOfTheShownDays) {
  const auto often = [](const std::string& uid, const std::string& frequency) {
    return "BEGIN:VEVENT\r\nUID:" + uid +
           "\r\nDTSTART:19700101T000000Z\r\nRRULE:FREQ=" + frequency + "\r\nEND:VEVENT\r\n";
  };
  auto request = requestFor({file("often.ics", calendar(often("s", "SECONDLY") + event("once")) +
                                                   calendar(often("m", "MINUTELY")))});
  request.windowStart = instant("2026-11-18T00:00:00Z");
  request.windowEnd = instant("2026-12-04T00:00:00Z");
  request.shownStart = instant("2026-11-20T00:00:00Z");
  request.shownEnd = instant("2026-11-27T00:00:00Z");
  const auto run = runReader(wire::encode(request));
  ASSERT_EQ(run.answers.size(), 1U);
  EXPECT_TRUE(run.answers[0].isForShownOnly);
  std::map<std::string, std::vector<double>> starts;
  for (const auto& found : run.answers[0].events) starts[found.uid].push_back(found.start);
  ASSERT_EQ(starts["s"].size(), 10'080U);
  EXPECT_EQ(starts["s"].front(), request.shownStart);
  EXPECT_EQ(starts["s"].back(), request.shownStart + 10'079);
  ASSERT_EQ(starts["m"].size(), 10'080U);
  EXPECT_EQ(starts["m"].front(), request.shownStart);
  EXPECT_EQ(starts["m"].back(), request.shownEnd - 60);
  EXPECT_EQ(starts["once"].size(), 1U);
}

TEST_F(ReaderProgram, HeedsEveryDateOfALongList) {
  std::string dates;
  for (int number = 0; number < 2000; ++number) {
    char day[20];
    std::snprintf(day, sizeof day, "%04d%02d%02d,", 2000 + number / 336, 1 + number / 28 % 12,
                  1 + number % 28);
    dates += day;
  }
  const std::string item =
      event("long", "RRULE:FREQ=DAILY;COUNT=3\r\nEXDATE;VALUE=DATE:" + dates + "20261121\r\n");
  const auto run = runReader(std::vector<std::string>{file("long.ics", calendar(item))});
  ASSERT_EQ(run.answers.size(), 1U);
  ASSERT_EQ(run.answers[0].events.size(), 2U);
  EXPECT_EQ(run.answers[0].events[1].start, instant("2026-11-22T10:00:00Z"));
}

}  // namespace
}  // namespace orvane::ical
