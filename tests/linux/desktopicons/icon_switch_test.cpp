#include "linux/desktopicons/icon_switch.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <vector>

namespace orvane::host::desktopicons {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

// A desktop whose answers a test gives by hand.
class FakeDesktop {
 public:
  std::string style = "2";
  bool refuses = false;
  bool isSlow = false;  // what it does, it does not tell in time
  bool holds = false;
  Texts log;
  std::vector<std::function<void()>> held;
  std::string newStyle;   // of a screen that has come; empty: none has
  bool finishes = false;  // at the end, what is held is carried out

  [[nodiscard]] Outcome outcome() const {
    if (isSlow) return Outcome::unknown;
    return refuses ? Outcome::refused : Outcome::done;
  }
  void answer(std::function<void()> work) {
    if (!holds) return work();
    held.push_back(std::move(work));
  }
  void answerNext() {
    const auto work = std::move(held.front());
    held.erase(held.begin());
    work();
  }
};

class FakeBackend final : public IconBackend {
 public:
  explicit FakeBackend(FakeDesktop& desktop) : desktop_(desktop) {}

  [[nodiscard]] std::string name() const override { return "fake"; }
  void capture(std::function<void(std::optional<IconState>)> captured) override {
    desktop_.log.emplace_back("capture");
    desktop_.answer([this, captured] {
      captured(desktop_.refuses ? std::nullopt : std::optional(IconState{desktop_.style, "0"}));
    });
  }
  void captureNew(const IconState& known,
                  std::function<void(std::optional<NewIcons>)> captured) override {
    if (desktop_.newStyle.empty()) return captured(std::nullopt);
    captured(NewIcons{{desktop_.newStyle, "0"}, {known.before + desktop_.newStyle, "0"}});
  }
  void hide(const IconState& state, std::function<void(Outcome)> done) override {
    desktop_.log.push_back("hide " + state.written);
    desktop_.answer([this, state, done] {
      if (!desktop_.refuses) desktop_.style = state.written;
      done(desktop_.outcome());
    });
  }
  void giveBack(const IconState& state, std::function<void(Outcome)> done) override {
    desktop_.log.push_back("give back " + state.before);
    desktop_.answer([this, state, done] {
      if (!desktop_.refuses && desktop_.style == state.written) desktop_.style = state.before;
      done(desktop_.outcome());
    });
  }

  void finish() override {
    while (desktop_.finishes && !desktop_.held.empty()) desktop_.answerNext();
  }

 private:
  FakeDesktop& desktop_;
};

class IconSwitchTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "orvane-icons-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    restart();
  }
  void TearDown() override { fs::remove_all(folder_); }
  void restart() {
    switch_ =
        std::make_unique<IconSwitch>(std::make_unique<FakeBackend>(desktop_), IconMemory(file()));
  }
  [[nodiscard]] fs::path file() const { return folder_ / "state" / "desktop-icons"; }
  void hide() { switch_->request(IconWish::hide); }
  void show() { switch_->request(IconWish::show); }

  fs::path folder_;
  FakeDesktop desktop_;
  std::unique_ptr<IconSwitch> switch_;
};

TEST_F(IconSwitchTest, HidesAndGivesBackWhatWasThere) {
  desktop_.style = "1";
  hide();
  EXPECT_EQ(desktop_.style, "0");
  show();
  EXPECT_EQ(desktop_.style, "1");
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(IconSwitchTest, TheChoiceIsOnTheDiskBeforeTheChange) {
  desktop_.holds = true;
  hide();
  EXPECT_FALSE(fs::exists(file()));
  desktop_.answerNext();  // the capture
  EXPECT_EQ(desktop_.style, "2");
  EXPECT_EQ(IconMemory(file()).find("fake"), (IconState{"2", "0"}));
}

TEST_F(IconSwitchTest, ARepeatedHideRunsAgainAndKeepsTheFirstChoice) {
  hide();
  desktop_.style = "1";  // by a desktop that was restarted with a choice of its own
  hide();
  EXPECT_EQ(desktop_.style, "0");
  EXPECT_EQ(desktop_.log, (Texts{"capture", "hide 0", "hide 0"}));
  show();
  EXPECT_EQ(desktop_.style, "2");
}

TEST_F(IconSwitchTest, WhatHasComeIsRememberedBesideTheFirstChoice) {
  hide();
  desktop_.newStyle = "1";
  hide();
  EXPECT_EQ(IconMemory(file()).find("fake"), (IconState{"21", "0"}));
}

TEST_F(IconSwitchTest, WhatHasComeAloneIsHiddenWhereHiddenIsWished) {
  desktop_.newStyle = "1";
  switch_->lookForNew();
  hide();
  desktop_.style = "2";  // the user's, by now
  desktop_.log.clear();
  switch_->lookForNew();
  EXPECT_EQ(desktop_.log, Texts{"hide 0"});
  EXPECT_EQ(IconMemory(file()).find("fake"), (IconState{"21", "0"}));
  show();
  desktop_.log.clear();
  switch_->lookForNew();
  EXPECT_TRUE(desktop_.log.empty());
}

TEST_F(IconSwitchTest, WithoutARecordNothingThatHasComeIsHidden) {
  hide();
  fs::remove(file());
  desktop_.log.clear();
  desktop_.newStyle = "1";
  switch_->lookForNew();
  EXPECT_TRUE(desktop_.log.empty());
}

TEST_F(IconSwitchTest, AChoiceThatTheUserMadeMeanwhileStays) {
  hide();
  desktop_.style = "1";
  show();
  EXPECT_EQ(desktop_.style, "1");
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(IconSwitchTest, IconsThatWereHiddenBeforeStayHidden) {
  desktop_.style = "0";
  hide();
  show();
  EXPECT_EQ(desktop_.style, "0");
}

TEST_F(IconSwitchTest, ShowingWithoutARecordAsksNothing) {
  show();
  EXPECT_TRUE(desktop_.log.empty());
}

TEST_F(IconSwitchTest, ARunAfterACrashGivesBack) {
  hide();
  restart();
  show();
  EXPECT_EQ(desktop_.style, "2");
}

TEST_F(IconSwitchTest, ARunAfterACrashHidesOverTheOldRecord) {
  hide();
  restart();
  hide();
  show();
  EXPECT_EQ(desktop_.style, "2");
}

TEST_F(IconSwitchTest, WhatCannotBeRememberedIsNotHidden) {
  std::ofstream(folder_ / "state") << "in the way";
  hide();
  EXPECT_EQ(desktop_.style, "2");
  EXPECT_EQ(desktop_.log, Texts{"capture"});
}

TEST_F(IconSwitchTest, ADesktopThatDoesNotAnswerIsNotHidden) {
  desktop_.refuses = true;
  hide();
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(IconSwitchTest, WhatIsRefusedIsNotRemembered) {
  desktop_.holds = true;
  hide();
  desktop_.answerNext();  // the capture
  desktop_.refuses = true;
  desktop_.answerNext();
  EXPECT_EQ(desktop_.style, "2");
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(IconSwitchTest, ADesktopThatHidesLaterThanItShouldIsGivenBack) {
  desktop_.isSlow = true;
  hide();
  EXPECT_EQ(desktop_.style, "0");
  EXPECT_TRUE(fs::exists(file()));
  desktop_.isSlow = false;
  show();
  EXPECT_EQ(desktop_.style, "2");
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(IconSwitchTest, ADesktopThatDoesNotAnswerIsGivenBackLater) {
  hide();
  desktop_.refuses = true;
  show();
  EXPECT_TRUE(fs::exists(file()));
  desktop_.refuses = false;
  show();
  EXPECT_EQ(desktop_.style, "2");
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(IconSwitchTest, WishesAreCarriedOutInOrderAndOnlyTheLastThatWaitsCounts) {
  desktop_.holds = true;
  hide();
  show();
  hide();
  show();
  while (!desktop_.held.empty()) desktop_.answerNext();
  EXPECT_EQ(desktop_.log, (Texts{"capture", "hide 0", "give back 2"}));
  EXPECT_EQ(desktop_.style, "2");
}

TEST_F(IconSwitchTest, AnEndInTheMiddleIsQuiet) {
  desktop_.holds = true;
  hide();
  switch_.reset();
  desktop_.held.clear();
  EXPECT_EQ(desktop_.style, "2");
}

TEST_F(IconSwitchTest, WhatIsGivenBackAtTheEndIsNotRememberedAnyMore) {
  hide();
  desktop_.holds = desktop_.finishes = true;
  show();
  hide();  // waits, and is not begun any more
  EXPECT_TRUE(fs::exists(file()));
  switch_.reset();
  EXPECT_EQ(desktop_.style, "2");
  EXPECT_FALSE(fs::exists(file()));
  EXPECT_EQ(desktop_.log, (Texts{"capture", "hide 0", "give back 2"}));
}

TEST_F(IconSwitchTest, ADamagedRecordIsNoRecord) {
  fs::create_directories(file().parent_path());
  std::ofstream(file()) << "\x00\xff nonsense";
  hide();
  EXPECT_EQ(desktop_.style, "0");
  show();
  EXPECT_EQ(desktop_.style, "2");
}

TEST_F(IconSwitchTest, RecordsOfOtherDesktopsStay) {
  const IconMemory memory(file());
  EXPECT_TRUE(memory.remember("other", {"some \"text\"\nwith lines", "x"}));
  hide();
  show();
  EXPECT_EQ(memory.find("other"), (IconState{"some \"text\"\nwith lines", "x"}));
  memory.forget("other");
  EXPECT_FALSE(fs::exists(file()));
}

}  // namespace
}  // namespace orvane::host::desktopicons
