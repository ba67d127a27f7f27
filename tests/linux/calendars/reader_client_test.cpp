#include "linux/calendars/reader_client.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cerrno>
#include <map>
#include <thread>

#include "calendar_folder.h"

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ReaderClientTest : public testing::Test {
 protected:
  // Titles of the first events by file name, "dead" for files that cost the reader its life.
  std::map<std::string, std::string> read(const std::vector<std::string>& names) {
    ReadJob job{0, 1000, "Europe/Berlin", {}};
    job.leavesSuspects = leavesSuspects;
    for (const auto& name : names) job.paths.push_back((folder.root() / name).string());
    std::map<std::string, std::string> found;
    const auto sink = [&](std::size_t index, wire::FileAnswer* answer) {
      EXPECT_FALSE(found.contains(names[index])) << names[index] << " was answered twice";
      found[names[index]] = describe(answer);
    };
    report = ReaderClient(program, limits).read(job, sink, [this] { return pace; });
    return found;
  }
  static std::string describe(const wire::FileAnswer* answer) {
    if (answer == nullptr) return "dead";
    if (answer->outcome != wire::ReadOutcome::good) {
      return "outcome " + std::to_string(static_cast<int>(answer->outcome));
    }
    return answer->events.empty() ? "empty" : answer->events[0].title.value_or("none");
  }
  void good(const std::string& name) { folder.calendar(name, "EVENT u||" + name + "|0|10"); }

  CalendarFolder folder;
  std::string program = folder.reader().string();
  ReaderLimits limits;
  bool leavesSuspects = false;
  ReadPace pace = ReadPace::goOn;
  ReaderClient::Report report;
};

TEST_F(ReaderClientTest, ReadsFiles) {
  good("a");
  good("b");
  folder.write("c", "rubbish");
  using Found = std::map<std::string, std::string>;
  EXPECT_EQ(read({"a", "b", "c", "none"}),
            (Found{{"a", "a"}, {"b", "b"}, {"c", "outcome 2"}, {"none", "outcome 1"}}));
  EXPECT_THAT(report.unread, IsEmpty());
  EXPECT_FALSE(report.programFailed);
}

TEST_F(ReaderClientTest, ReadsManyFilesInSeveralProcesses) {
  limits.filesPerProcess = 30;
  std::vector<std::string> names;
  for (int i = 0; i < 200; ++i) good(names.emplace_back("f" + std::to_string(i)));
  const auto found = read(names);
  ASSERT_THAT(found, SizeIs(200));
  for (const auto& [name, title] : found) EXPECT_EQ(name, title);
}

TEST_F(ReaderClientTest, ACrashCostsOneFile) {
  for (const char* name : {"a", "b", "d", "e"}) good(name);
  folder.calendar("c", "CRASH");
  const auto found = read({"a", "b", "c", "d", "e"});
  EXPECT_EQ(found.at("c"), "dead");
  for (const char* name : {"a", "b", "d", "e"}) EXPECT_EQ(found.at(name), name);
  EXPECT_FALSE(report.programFailed);
}

TEST_F(ReaderClientTest, ManyCrashesCostThoseFiles) {
  std::vector<std::string> names;
  for (int i = 0; i < 10; ++i)
    folder.calendar(names.emplace_back("x" + std::to_string(i)), "CRASH");
  good(names.emplace_back("good"));
  const auto found = read(names);
  ASSERT_THAT(found, SizeIs(11));
  EXPECT_EQ(found.at("good"), "good");
  EXPECT_FALSE(report.programFailed);
}

TEST_F(ReaderClientTest, AHangCostsOneFile) {
  limits.perFile = limits.perLoneFile = milliseconds(300);
  good("a");
  folder.calendar("b", "HANG");
  good("c");
  const auto found = read({"a", "b", "c"});
  EXPECT_EQ(found.at("a"), "a");
  EXPECT_EQ(found.at("b"), "dead");
  EXPECT_EQ(found.at("c"), "c");
}

TEST_F(ReaderClientTest, SuspectsMayBeLeftToAnotherTime) {
  limits.perFile = milliseconds(300);
  leavesSuspects = true;
  good("a");
  folder.calendar("b", "HANG");
  good("c");
  folder.calendar("d", "CRASH");
  using Found = std::map<std::string, std::string>;
  EXPECT_EQ(read({"a", "b", "c", "d"}), (Found{{"a", "a"}, {"c", "c"}}));
  EXPECT_THAT(report.unread, ElementsAre(1U, 3U));
  EXPECT_FALSE(report.programFailed);
  EXPECT_EQ(read({"b"}), Found{}) << "also where it was asked for alone";
  EXPECT_THAT(report.unread, ElementsAre(0U));
}

TEST_F(ReaderClientTest, TheLastFileOfAProcessIsTriedAloneToo) {
  limits.perFile = limits.perLoneFile = milliseconds(300);
  good("a");
  folder.calendar("b", "HANG");
  EXPECT_EQ(read({"a", "b"}).at("b"), "dead");
  EXPECT_THAT(folder.takeReads(), SizeIs(3)) << "a once, b among others and alone";
}

TEST_F(ReaderClientTest, NonsenseCostsOneFile) {
  folder.calendar("a", "BABBLE");
  good("b");
  const auto found = read({"a", "b"});
  EXPECT_EQ(found.at("a"), "dead");
  EXPECT_EQ(found.at("b"), "b");
}

TEST_F(ReaderClientTest, AMissingProgramIsToldAndNothingIsBlamed) {
  program = (folder.base() / "no reader").string();
  good("a");
  EXPECT_THAT(read({"a"}), IsEmpty());
  EXPECT_TRUE(report.programFailed);
  EXPECT_THAT(report.unread, ElementsAre(0U));
}

TEST_F(ReaderClientTest, AProgramThatAlwaysDiesIsToldAfterAFewTries) {
  program = "/bin/false";
  std::vector<std::string> names;
  for (int i = 0; i < 2000; ++i) names.push_back("f" + std::to_string(i));
  limits.filesPerProcess = 1;
  EXPECT_THAT(read(names), IsEmpty());
  EXPECT_TRUE(report.programFailed);
  EXPECT_THAT(report.unread, SizeIs(2000));
}

TEST_F(ReaderClientTest, StoppingReturnsAtOnce) {
  folder.calendar("a", "HANG");
  good("b");
  limits.filesPerProcess = 1;
  pace = ReadPace::stop;
  EXPECT_THAT(read({"a", "b"}), IsEmpty());
  EXPECT_THAT(report.unread, SizeIs(2));
}

TEST_F(ReaderClientTest, WindingUpFinishesTheFileAtHandAndKeepsTheRest) {
  ReadJob job{0, 1000, "UTC", {}};
  for (int i = 0; i < 40; ++i) {
    const auto name = "f" + std::to_string(i);
    good(name);
    job.paths.push_back((folder.root() / name).string());
  }
  std::size_t answered = 0;
  limits.filesPerProcess = 10;
  const auto report = ReaderClient(program, limits)
                          .read(
                              job, [&](std::size_t, wire::FileAnswer*) { ++answered; },
                              [&] { return answered == 0 ? ReadPace::goOn : ReadPace::windUp; });
  EXPECT_GT(answered, 0U);
  EXPECT_LT(answered, 40U);
  EXPECT_EQ(answered + report.unread.size(), 40U);
}

TEST_F(ReaderClientTest, LeavesNoProcessBehind) {
  limits.perFile = limits.perLoneFile = milliseconds(200);
  folder.calendar("a", "CRASH");
  folder.calendar("b", "HANG");
  good("c");
  read({"a", "b", "c"});
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(ReaderClientTest, TakesARequestThatFillsTheChannel) {
  std::vector<std::string> names;
  for (int i = 0; i < 3000; ++i) {
    names.push_back(std::string(100, '/') + "none" + std::to_string(i) + ".ics");
  }
  limits.filesPerProcess = 3000;
  EXPECT_THAT(read(names), SizeIs(3000));
}

}  // namespace
}  // namespace orvane::host
