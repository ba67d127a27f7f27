// The program itself: its words, its status, and what it makes of folders.

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "linux/paint/png.h"
#include "support/test_paths.h"

namespace orvane::tools {
namespace {

using nlohmann::json;
using std::filesystem::path;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

std::string contentOf(const path& file) {
  std::stringstream content;
  content << std::ifstream(file).rdbuf();
  return content.str();
}

struct Result {
  int status;  // of the exit, or 1000 and the signal
  std::string output;
  std::string errors;
};

class SnapshotProgramTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvane-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    base = pattern;
    std::filesystem::create_directories(calendars());
    std::filesystem::create_directories(home());
  }
  void TearDown() override { std::filesystem::remove_all(base); }

  [[nodiscard]] path calendars() const { return base / "calendars"; }
  [[nodiscard]] path home() const { return base / "home"; }

  void write(const std::string& name, const std::string& content) const {
    std::filesystem::create_directories((calendars() / name).parent_path());
    std::ofstream(calendars() / name) << content;
  }
  void writeEvent(const std::string& name, const std::string& title,
                  const std::string& start) const {
    write(name,
          "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Orvane//Tests//EN\r\nBEGIN:VEVENT\r\n"
          "UID:" +
              title + "\r\nDTSTAMP:20260101T000000Z\r\nDTSTART:" + start +
              "\r\nDURATION:PT1H\r\nSUMMARY:" + title + "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
  }

  [[nodiscard]] Result run(const std::vector<std::string>& words) const {
    const pid_t child = fork();
    if (child == 0) execute(words);
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status),
            contentOf(base / "stdout"), contentOf(base / "stderr")};
  }
  // The usual words and some more; the dump.
  [[nodiscard]] json dump(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> words{
        "--calendars", calendars(), "--now",  "2026-11-20T09:41:00", "--timezone", "Europe/Berlin",
        "--locale",    "en_US",     "--dump", base / "dump.json"};
    words.insert(words.end(), more.begin(), more.end());
    const auto result = run(words);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    return json::parse(contentOf(base / "dump.json"), nullptr, false);
  }
  static std::vector<std::string> titles(const json& records) {
    std::vector<std::string> titles;
    for (const auto& record : records) titles.push_back(record["title"]);
    return titles;
  }
  static std::vector<std::string> texts(const json& dump) {
    std::vector<std::string> texts;
    for (const auto& item : dump["display"]) {
      if (item["kind"] == "text") texts.push_back(item["text"]);
    }
    return texts;
  }

  path base;

 private:
  [[noreturn]] void execute(const std::vector<std::string>& words) const {
    const std::string program = builtProgram("orvane-snapshot");
    std::vector<const char*> arguments{program.c_str()};
    for (const auto& word : words) arguments.push_back(word.c_str());
    arguments.push_back(nullptr);
    setenv("HOME", home().c_str(), 1);
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "TZ"}) {
      unsetenv(name);
    }
    if (freopen((base / "stdout").c_str(), "w", stdout) == nullptr) _exit(99);
    if (freopen((base / "stderr").c_str(), "w", stderr) == nullptr) _exit(99);
    execv(program.c_str(), const_cast<char* const*>(arguments.data()));
    _exit(98);
  }
};

TEST_F(SnapshotProgramTest, AWrongArgumentGetsOneLineAndStatusTwo) {
  const std::string folder = calendars();
  const std::vector<std::string> good{"--calendars", folder, "--now", "2026-11-20T09:41:00"};
  const std::vector<std::vector<std::string>> wrong{
      {"--nonsense"},
      {"--with a\nline break"},
      {"--size", "big"},
      {"--scale", "-1"},
      {"--set", "themeMode=purple"},
      {"--set", "noSuchSetting=1"},
      {"--set", "focusMode=1"},
      {"--deny", "everything"},
      {"--timezone", "Europe/Nowhere"},
      {"--locale", "xx_YY"},
      {"--now", "yesterday"},
      {"--now", "2026-02-30T00:00:00"},
      {"--now", "2026-11-20T25:00:00"},
      {"--background", "#12"},
      {"--background", folder + "/none.png"},
      {"--background", folder},
      {"--calendars", folder + "/none"},
      {"--calendars", "/etc/hostname"},
      {"--out"},
  };
  for (const auto& words : wrong) {
    auto all = good;
    all.insert(all.end(), words.begin(), words.end());
    const auto result = run(all);
    EXPECT_EQ(result.status, 2) << words[0] << " " << words.back();
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
    EXPECT_EQ(result.output, "");
  }
  EXPECT_EQ(run({}).status, 2);
}

TEST_F(SnapshotProgramTest, HelpIsNoMistake) {
  const auto result = run({"--help"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output, HasSubstr("usage: orvane-snapshot"));
  EXPECT_EQ(result.errors, "");
}

TEST_F(SnapshotProgramTest, AnUnwritableResultIsAFailure) {
  for (const char* option : {"--dump", "--out"}) {
    const auto result = run({"--calendars", calendars(), "--now", "2026-11-20T09:41:00", option,
                             base / "none" / "file"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
  }
}

TEST_F(SnapshotProgramTest, AnEmptyFolderIsAnEmptyBoard) {
  const auto dumped = dump();
  EXPECT_EQ(dumped["now"], 1795164060);
  EXPECT_THAT(dumped["events"], IsEmpty());
  EXPECT_THAT(dumped["reminders"], IsEmpty());
  EXPECT_TRUE(dumped["nextDeadline"].is_null());
  EXPECT_EQ(dumped["calendarAuthorizationState"], "authorized");
  EXPECT_EQ(dumped["reminderAuthorizationState"], "authorized");
  for (const char* name :
       {"leftColumn", "rightColumn", "DateCard", "NextUpCard", "EventsCard", "RemindersCard"}) {
    EXPECT_TRUE(dumped["frames"].contains(name)) << name;
  }
}

TEST_F(SnapshotProgramTest, ShowsExportsOfCommonServices) {
  for (const char* service : {"google", "icloud", "outlook", "nextcloud"}) {
    const auto file = std::string(service) + "-export.ics";
    std::filesystem::create_directory(calendars() / service);
    std::filesystem::copy(path(testDataFolder()) / "exports" / file, calendars() / service / file);
  }
  const auto dumped = dump();
  EXPECT_THAT(titles(dumped["calendarOptions"]),
              ElementsAre("google", "icloud", "nextcloud", "outlook"));
  EXPECT_THAT(titles(dumped["reminderListOptions"]), ElementsAre("icloud", "nextcloud"));
  const auto events = titles(dumped["events"]);
  for (const char* title : {"Dentist", "Weekend at the lake", "Choir (a day later)", "Rehearsal",
                            "Team meeting", "Release day"}) {
    EXPECT_THAT(events, Contains(title));
  }
  EXPECT_THAT(titles(dumped["reminders"]),
              UnorderedElementsAre("Call the landlord", "Water the plants", "Tax return"));
  EXPECT_EQ(dumped["nextDeadline"]["title"], "Dentist");
  EXPECT_THAT(texts(dumped), Contains("Release day"));
}

TEST_F(SnapshotProgramTest, ASingleExportIsACalendarOfThatName) {
  std::filesystem::copy(path(testDataFolder()) / "exports/google-export.ics",
                        calendars() / "download.ics");
  EXPECT_THAT(titles(dump()["calendarOptions"]), ElementsAre("Family"));
}

TEST_F(SnapshotProgramTest, SeveralFoldersAreOneBoard) {
  writeEvent("a/one.ics", "One", "20261120T120000Z");
  const auto other = base / "other";
  std::filesystem::create_directories(other / "b");
  std::filesystem::copy(calendars() / "a/one.ics", other / "b/one.ics");
  EXPECT_THAT(dump({"--calendars", other})["events"], SizeIs(2));
}

TEST_F(SnapshotProgramTest, ReadsOnlyTheFoldersItWasGivenAndWritesNothing) {
  for (const char* place : {"home/.local/share/orvane/calendars/x", "home/.calendars/y"}) {
    std::filesystem::create_directories(base / place);
  }
  writeEvent("../home/.calendars/y/a.ics", "Private", "20261120T120000Z");
  writeEvent("a/one.ics", "One", "20261120T120000Z");
  EXPECT_THAT(titles(dump({"--set", "themeMode=dark"})["events"]), ElementsAre("One"));
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(home())) {
    if (entry.is_regular_file() &&
        entry.path().string().find("/fontconfig/") == std::string::npos) {
      files.push_back(entry.path().filename());
    }
  }
  EXPECT_THAT(files, ElementsAre("a.ics"));
}

TEST_F(SnapshotProgramTest, DeniedKindsSaySo) {
  writeEvent("a/one.ics", "One", "20261120T120000Z");
  const auto events = dump({"--deny", "events"});
  EXPECT_EQ(events["calendarAuthorizationState"]["denied"], "Calendar access was not granted.");
  EXPECT_EQ(events["reminderAuthorizationState"], "authorized");
  EXPECT_THAT(events["events"], IsEmpty());
  EXPECT_THAT(texts(events), Contains("Calendar access was not granted."));
  const auto both = dump({"--deny", "events", "--deny", "reminders"});
  EXPECT_EQ(both["reminderAuthorizationState"]["denied"], "Reminders access was not granted.");
}

TEST_F(SnapshotProgramTest, SettingsApply) {
  writeEvent("a/one.ics", "One", "20261120T120000Z");
  writeEvent("b/two.ics", "Two", "20261120T110000Z");
  const auto all = dump();
  EXPECT_EQ(all["nextDeadline"]["title"], "Two");
  const std::string identifier = all["calendarOptions"][0]["id"];
  const auto selected = dump({"--set", "selectedCalendarIDs=" + identifier});
  EXPECT_THAT(titles(selected["events"]), ElementsAre("One"));
  EXPECT_THAT(selected["calendarOptions"], SizeIs(2));
  EXPECT_EQ(dump({"--set", "ignoredWordsText=two"})["nextDeadline"]["title"], "One");
  const auto focused = dump({"--set", "focusMode=true"});
  for (const auto& item : focused["display"]) {
    const bool isHeader = item["kind"] == "text" && item["text"] == "Today";
    EXPECT_TRUE(!isHeader || item["opacity"] == 0);
  }
}

TEST_F(SnapshotProgramTest, TheInstantIsLocalTimeInTheZone) {
  const auto at = [this](const std::string& zone) {
    return dump({"--timezone", zone})["now"].get<double>();
  };
  EXPECT_EQ(at("UTC"), 1795167660);
  EXPECT_EQ(at("Asia/Tokyo"), 1795167660 - 9 * 3600);
}

TEST_F(SnapshotProgramTest, PaintsAPictureOfTheSizeAtTheScale) {
  writeEvent("a/one.ics", "One", "20261120T120000Z");
  const auto dumped = dump({"--out", base / "picture.png", "--size", "640x400", "--scale", "1.5",
                            "--background", "#204060"});
  EXPECT_THAT(dumped["events"], SizeIs(1));
  auto picture = host::readPNG((base / "picture.png").string());
  ASSERT_TRUE(std::holds_alternative<host::Picture>(picture));
  const auto& pixels = std::get<host::Picture>(picture);
  EXPECT_EQ(pixels.width, 960);
  EXPECT_EQ(pixels.height, 600);
  EXPECT_EQ(pixels.pixels.front(), 0xFF204060U);
  const auto drawn = std::count_if(pixels.pixels.begin(), pixels.pixels.end(),
                                   [](auto pixel) { return pixel != 0xFF204060U; });
  EXPECT_GT(drawn, 50000);
}

TEST_F(SnapshotProgramTest, SurvivesWhateverTheFolderHolds) {
  writeEvent("good/good.ics", "Good", "20261120T120000Z");
  write("good/empty.ics", "");
  write("good/rubbish.ics", std::string(100000, '\xfe'));
  write("good/cut.ics", "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:cut\r\nDTSTART:2026");
  write("good/line.ics", "BEGIN:VCALENDAR\r\nX-LONG:" + std::string(10'000'000, 'x') + "\r\n");
  write("good/loop.ics",
        "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:loop\r\nDTSTART:19700101T000000Z\r\n"
        "RRULE:FREQ=SECONDLY\r\nSUMMARY:Each second\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
  write("good/\xff.ics", "");
  write("single.ics", "\x00\x01");
  ASSERT_EQ(mkfifo((calendars() / "good/pipe.ics").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo((calendars() / "pipe.ics").c_str(), 0600), 0);
  std::filesystem::create_symlink("/dev/zero", calendars() / "good/zero.ics");
  std::filesystem::create_directory_symlink(".", calendars() / "dot");
  std::filesystem::create_directory_symlink("round", calendars() / "round");
  std::filesystem::create_directories(calendars() / "folder.ics/inner.ics/more");
  const auto dumped = dump({"--out", base / "picture.png"});
  EXPECT_THAT(titles(dumped["events"]), Contains("Good"));
  EXPECT_EQ(dumped["calendarAuthorizationState"], "authorized");
}

}  // namespace
}  // namespace orvane::tools
