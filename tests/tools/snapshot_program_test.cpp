// The program itself: its words, its status, and what it makes of folders.

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "linux/paint/png.h"
#include "support/scratch_folder.h"
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
    std::filesystem::create_directories(calendars());
    std::filesystem::create_directories(home());
  }

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

  // Each file and folder with its size and the time of its last change; the files that this test
  // itself has written to excepted.
  static std::map<std::string, std::string> treeOf(const path& folder) {
    std::map<std::string, std::string> tree;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      const auto name = entry.path().lexically_relative(folder).string();
      const bool isOurs = name == "stdout" || name == "stderr" || name == "dump.json";
      const auto size = entry.is_regular_file() ? entry.file_size() : 0;
      if (!isOurs) {
        tree[name] = std::to_string(size) + " " +
                     std::to_string(entry.last_write_time().time_since_epoch().count());
      }
    }
    return tree;
  }

  const ScratchFolder scratch;
  const path base = scratch.path();
  std::map<std::string, std::string> variables;  // of the environment of what is run

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
    for (const auto& [name, value] : variables) setenv(name.c_str(), value.c_str(), 1);
    if (freopen((base / "stdout").c_str(), "w", stdout) == nullptr) _exit(99);
    if (freopen((base / "stderr").c_str(), "w", stderr) == nullptr) _exit(99);
    execv(program.c_str(), const_cast<char* const*>(arguments.data()));
    _exit(98);
  }
};

struct WrongCall {
  std::vector<std::string> words;
  const char* told;  // a part of the line
};

// Behind arguments that are good.
std::vector<WrongCall> wrongCalls(const std::string& base) {
  return {
      {{"--nonsense"}, "\"--nonsense\""},
      {{"--with a\nline break"}, "?line break"},
      {{"a word"}, "\"a word\""},
      {{"--out"}, "--out needs a value"},
      {{"--dump="}, "--dump"},
      {{"--size", "big"}, "--size"},
      {{"--size", "16385x10"}, "--size"},
      {{"--size", "1e3x10"}, "--size"},
      {{"--size", "10x10x10"}, "--size"},
      {{"--scale", "-1"}, "--scale"},
      {{"--scale", "9"}, "--scale"},
      {{"--out", base + "/p.png", "--size", "16384x16384", "--scale", "4"}, "too large"},
      {{"--set", "themeMode=purple"}, "vividBlue, dark or light"},
      {{"--set", "noSuchSetting=1"}, "noSuchSetting"},
      {{"--set", "focusMode=1"}, "true or false"},
      {{"--set", "focusMode"}, "--set"},
      {{"--set", "glassOpacity=much"}, "a number"},
      {{"--set", "displayMode=both"}, "main, all or selected"},
      {{"--deny", "everything"}, "--deny"},
      {{"--timezone", "Europe/Nowhere"}, "Europe/Nowhere"},
      {{"--timezone", ""}, "--timezone"},
      {{"--locale", "xx_YY"}, "xx_YY"},
      {{"--locale", ""}, "--locale"},
      {{"--now", "yesterday"}, "--now"},
      {{"--now", "2026-02-30T00:00:00"}, "--now"},
      {{"--now", "2026-11-20T25:00:00"}, "--now"},
      {{"--now", "2026-11-20T09:41:00Z"}, "--now"},
      {{"--background", "#12"}, "#12"},
      {{"--background", base + "/none.png"}, "none.png"},
      {{"--background", base}, base.c_str()},
      {{"--background", "/etc/hostname"}, "/etc/hostname"},
      {{"--background", base + "/pipe"}, "pipe"},
      {{"--calendars", base + "/none"}, "none"},
      {{"--calendars", "/etc/hostname"}, "/etc/hostname"},
      {{"--out", base + "/none/file.png"}, "none/file.png"},
      {{"--out", base}, base.c_str()},
      {{"--out", "/dev/full"}, "/dev/full"},
      {{"--dump", base + "/none/file.json"}, "none/file.json"},
      {{"--dump", base}, base.c_str()},
      {{"--dump", "/dev/full"}, "/dev/full"},
  };
}

TEST_F(SnapshotProgramTest, AWrongArgumentGetsOneLineAndStatusTwo) {
  const std::string base = this->base;
  ASSERT_EQ(mkfifo((base + "/pipe").c_str(), 0600), 0);
  for (const auto& call : wrongCalls(base)) {
    std::vector<std::string> words{"--calendars", calendars(), "--now", "2026-11-20T09:41:00"};
    words.insert(words.end(), call.words.begin(), call.words.end());
    const auto result = run(words);
    const std::string& errors = result.errors;
    EXPECT_EQ(result.status, 2) << call.words[0] << " " << call.words.back();
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    EXPECT_THAT(errors,
                testing::AllOf(testing::StartsWith("orvane-snapshot: "), HasSubstr(call.told)));
    EXPECT_EQ(result.output, "");
  }
  EXPECT_EQ(run({}).status, 2);
}

TEST_F(SnapshotProgramTest, ExtremeSizesAreDrawnOrRefused) {
  writeEvent("a/one.ics", "One", "20261120T120000Z");
  for (const auto& [size, scale] :
       {std::pair("1x1", "1"), std::pair("1x1", "0.25"), std::pair("1x1", "8"),
        std::pair("16384x1", "1"), std::pair("1x16384", "1")}) {
    EXPECT_THAT(dump({"--size", size, "--scale", scale, "--out", base / "p.png"})["events"],
                SizeIs(1))
        << size;
  }
  // What nobody sees costs nothing.
  EXPECT_THAT(dump({"--size", "16384x16384", "--scale", "8"})["events"], SizeIs(1));
}

TEST_F(SnapshotProgramTest, KnowsLocalesHoweverTheyAreSpelled) {
  const auto weekday = [this](const std::string& locale) {
    const auto all = texts(dump({"--locale", locale}));
    return all.empty() ? "" : all[0];
  };
  for (const char* plain : {"C", "POSIX", "C.UTF-8", "en_US.UTF-8"}) {
    EXPECT_EQ(weekday(plain), "Friday") << plain;
  }
  EXPECT_EQ(weekday("de_DE.UTF-8"), "Freitag");
  EXPECT_EQ(weekday("sr_RS@latin"), "petak");
  EXPECT_EQ(weekday("zh_Hant_TW"), "\u661f\u671f\u4e94");
}

TEST_F(SnapshotProgramTest, HelpIsNoMistake) {
  const auto result = run({"--help"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.output, HasSubstr("usage: orvane-snapshot"));
  EXPECT_EQ(result.errors, "");
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
  writeEvent("a/one.ics", "One", "20261120T120000Z");
  const auto alone = dump({"--out", base / "alone.png"});
  EXPECT_THAT(titles(alone["events"]), ElementsAre("One"));
  // Everything that the program itself would read.
  for (const char* place : {".calendars", ".local/share/orvane/calendars", "data/orvane/calendars",
                            "data/calendars", "data/khal/calendars", "data/vdirsyncer/calendars"}) {
    writeEvent("../home/" + std::string(place) + "/private/a.ics", "Private", "20261120T110000Z");
  }
  for (const char* place : {".config/orvane/defaults.json", "config/orvane/defaults.json"}) {
    write("../home/" + std::string(place),
          R"({"DashboardSettings.themeMode": "light", "DashboardSettings.focusMode": true})");
  }
  std::filesystem::create_directories(home() / "cache");
  std::filesystem::create_directories(home() / "runtime");
  variables = {{"XDG_DATA_HOME", home() / "data"},
               {"XDG_CONFIG_HOME", home() / "config"},
               {"XDG_CACHE_HOME", home() / "cache"},
               {"XDG_STATE_HOME", home() / "state"},
               {"XDG_RUNTIME_DIR", home() / "runtime"}};
  const auto before = treeOf(base);
  const auto tempted = dump({"--out", base / "tempted.png"});
  EXPECT_EQ(tempted, alone);
  EXPECT_EQ(contentOf(base / "tempted.png"), contentOf(base / "alone.png"));
  auto after = treeOf(base);
  EXPECT_EQ(after.erase("tempted.png"), 1U);
  EXPECT_EQ(after, before);
}

TEST_F(SnapshotProgramTest, ShowsTheSameWhateverTheEnvironmentSpeaks) {
  writeEvent("a/one.ics", "Gr\u00fc\u00dfe \U0001f382 \u4f60\u597d", "20261120T120000Z");
  write("a/displayname", "Pers\u00f6nlich");
  const auto wanted = dump({"--out", base / "wanted.png"});
  EXPECT_EQ(titles(wanted["calendarOptions"]), std::vector<std::string>{"Pers\u00f6nlich"});
  for (const char* locale : {"C", "POSIX", "de_DE.ISO-8859-1", "xx_YY", ""}) {
    variables = {{"LC_ALL", locale}, {"LANG", locale}};
    EXPECT_EQ(dump({"--out", base / "other.png"}), wanted) << locale;
    EXPECT_EQ(contentOf(base / "other.png"), contentOf(base / "wanted.png")) << locale;
  }
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
