#include <vector>

#include "settings_view_fixture.h"

namespace orvane {
namespace {

// Looks at the form each time it is said to have changed.
class SettingsViewChangesTest : public SettingsViewFixture {
 protected:
  void SetUp() override {
    SettingsViewFixture::SetUp();
    observer_ = view().onChange([this] { seen_.push_back(view().form()); });
  }
  // How often it was said until nothing is left to do.
  std::size_t announced() {
    seen_.clear();
    actor_.runUntilIdle();
    return seen_.size();
  }

  std::vector<Form> seen_;
  Subscription observer_;
};

TEST_F(SettingsViewChangesTest, ASettingIsInPlaceWhenItIsAnnounced) {
  settings()->focusMode = true;
  EXPECT_TRUE(seen_.empty());
  ASSERT_EQ(announced(), 1U);
  const auto& display = seen_[0].tabs.at(1).sections.at(0).controls;
  EXPECT_TRUE(std::get<FormToggle>(display.at(4).content).isOn);
}

TEST_F(SettingsViewChangesTest, ManyChangesOfOneTurnAreAnnouncedOnce) {
  settings()->focusMode = true;
  settings()->glassOpacity = 0.5;
  offerCalendars({{"w", "Work"}});
  EXPECT_EQ(announced(), 1U);
  EXPECT_EQ(announced(), 0U);
  settings()->focusMode = false;
  EXPECT_EQ(announced(), 1U);
}

TEST_F(SettingsViewChangesTest, OptionsThatWereFoundAreAnnounced) {
  offerCalendars({{"w", "Work"}});
  ASSERT_EQ(announced(), 1U);
  EXPECT_EQ(std::get<FormSourceList>(seen_[0].tabs[0].sections[0].controls[0].content).rows.size(),
            1U);
}

TEST_F(SettingsViewChangesTest, ScreensThatComeAndGoAreAnnounced) {
  server_.attach("right", {1920, 0, 1280, 1024}, 12);
  center_.post(NSApplicationDidChangeScreenParametersNotification);
  ASSERT_EQ(announced(), 1U);
  EXPECT_EQ(std::get<FormPicker>(seen_[0].tabs[1].sections[0].controls[1].content).choices.size(),
            3U);
}

TEST_F(SettingsViewChangesTest, ARefusedLaunchAtLoginSpringsBack) {
  service_.refuses = true;
  edit("launchAtLogin", true);
  ASSERT_EQ(announced(), 1U);
  EXPECT_FALSE(contentOf<FormToggle>("launchAtLogin").isOn);
}

// The window may show the edit already, and has to hear that it did not come about.
TEST_F(SettingsViewChangesTest, AnEditThatIsNotCarriedOutIsAnnouncedToo) {
  edit("glassOpacity", 3.0);
  EXPECT_EQ(announced(), 1U);
}

TEST_F(SettingsViewChangesTest, AnotherTabIsAnnounced) {
  edit("selectedTab", std::string("style"));
  ASSERT_EQ(announced(), 1U);
  EXPECT_EQ(seen_[0].selectedTab, "style");
}

TEST_F(SettingsViewChangesTest, AnObserverMayEdit) {
  const auto editing = view().onChange([this] { edit("focusMode", true); });
  settings()->urgencyTinting = false;
  actor_.runOneTurn();
  actor_.runOneTurn();
  EXPECT_TRUE(settings()->focusMode.get());
}

TEST_F(SettingsViewChangesTest, AnEndedSubscriptionHearsNothing) {
  settings()->focusMode = true;
  observer_.cancel();
  EXPECT_EQ(announced(), 0U);
}

TEST_F(SettingsViewChangesTest, AViewThatIsGoneAnnouncesNothing) {
  settings()->focusMode = true;
  view_.reset();
  EXPECT_EQ(announced(), 0U);
  settings()->focusMode = false;
  EXPECT_EQ(announced(), 0U);
}

TEST_F(SettingsViewChangesTest, TwoViewsOfTheSameSettingsShowTheSame) {
  const auto other =
      SettingsView::create(settings(), manager(), {server_, center_, actor_, locale_});
  int heard = 0;
  const auto observer = other->onChange([&] { ++heard; });
  edit("primaryColorHex", Color::srgb(0.5, 0, 0));
  EXPECT_EQ(announced(), 1U);
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(other->workingColor(), Color::srgb(128 / 255.0, 0, 0));
}

}  // namespace
}  // namespace orvane
