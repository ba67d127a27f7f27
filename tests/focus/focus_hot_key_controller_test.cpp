#include "focus/focus_hot_key_controller.h"

#include <gtest/gtest.h>

#include "fakes/manual_main_actor.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_apple_scripts.h"
#include "fakes/memory_hot_keys.h"
#include "fakes/memory_user_defaults.h"
#include "focus/four_char_code.h"

namespace orvane {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kHide =
    "tell application \"System Events\"\n    set visible of process \"Finder\" to true\nend tell\n"
    "do shell script \"defaults write com.apple.finder CreateDesktop -bool false; killall Finder\"";
constexpr const char* kShow =
    "tell application \"System Events\"\n    set visible of process \"Finder\" to true\nend tell\n"
    "do shell script \"defaults write com.apple.finder CreateDesktop -bool true; killall Finder\"";

class FocusHotKeyControllerTest : public testing::Test {
 protected:
  FocusHotKeyControllerTest() {
    settings_->hideDesktopIconsInFocus = true;
    defaults_.writes.clear();
  }

  FocusHotKeyController& controller() {
    if (!controller_) {
      controller_ = FocusHotKeyController::create(settings_, {hotKeys_, scripts_, actor_});
    }
    return *controller_;
  }
  void press() {
    EXPECT_EQ(hotKeys_.press(), noErr);
    actor_.runUntilIdle();
  }

  fakes::ManualMainActor actor_;
  std::vector<std::string> log_;
  fakes::MemoryHotKeys hotKeys_{log_};
  fakes::MemoryAppleScripts scripts_{log_};
  fakes::MemoryUserDefaults defaults_;
  fakes::MemoryAppService service_;
  std::shared_ptr<DashboardSettings> settings_ =
      std::make_shared<DashboardSettings>(defaults_, service_);
  std::shared_ptr<FocusHotKeyController> controller_;
};

TEST(FourCharCodeTest, FoldsBytesFromTheFirstToTheLast) {
  EXPECT_EQ(fourCharCode("OVFZ"), 0x4F56465AU);
  EXPECT_EQ(fourCharCode("keyb"), 0x6B657962U);
  EXPECT_EQ(fourCharCode(""), 0U);
  EXPECT_EQ(fourCharCode("A"), 0x41U);
}

TEST(FourCharCodeTest, OfLongTextsTheLastFourBytesCount) {
  EXPECT_EQ(fourCharCode("xxOVFZ"), fourCharCode("OVFZ"));
}

TEST(FourCharCodeTest, BytesBeyondAsciiAreNotNegative) {
  EXPECT_EQ(fourCharCode("\xC3\xA9"), 0xC3A9U);
}

TEST_F(FocusHotKeyControllerTest, TheKeyIsRegisteredWithItsConstants) {
  controller();
  EXPECT_EQ(log_, (Texts{"install handler", "register hot key"}));
  const auto& handler = hotKeys_.handlers.begin()->second;
  EXPECT_EQ(handler.target, EventTargetRef::application);
  EXPECT_EQ(handler.type, (EventTypeSpec{0x6B657962, 5}));
  EXPECT_EQ(handler.userData, controller_.get());
  const auto& hotKey = hotKeys_.hotKeys.begin()->second;
  EXPECT_EQ(hotKey.keyCode, 6U);
  EXPECT_EQ(hotKey.modifiers, 0x300U);
  EXPECT_EQ(hotKey.id, (EventHotKeyID{0x4F56465A, 1}));
  EXPECT_EQ(hotKey.target, EventTargetRef::application);
  EXPECT_EQ(hotKey.options, 0U);
}

TEST_F(FocusHotKeyControllerTest, TheUserDataDoesNotRetainTheController) {
  controller();
  EXPECT_EQ(controller_.use_count(), 1);
}

TEST_F(FocusHotKeyControllerTest, AHandlerWithoutUserDataDoesNothing) {
  controller();
  EXPECT_EQ(hotKeys_.handlers.begin()->second.call(nullptr), noErr);
  EXPECT_EQ(actor_.pendingTurns(), 0U);
}

TEST_F(FocusHotKeyControllerTest, TheKeyTogglesInATurnOfItsOwn) {
  controller();
  EXPECT_EQ(hotKeys_.press(), noErr);
  EXPECT_FALSE(settings_->focusMode.get());
  actor_.runUntilIdle();
  EXPECT_TRUE(settings_->focusMode.get());
}

TEST_F(FocusHotKeyControllerTest, PressedTwiceFocusModeIsAsBeforeAndSavedEachTime) {
  controller();
  press();
  EXPECT_TRUE(settings_->focusMode.get());
  press();
  EXPECT_FALSE(settings_->focusMode.get());
  ASSERT_EQ(defaults_.writes.size(), 2U);
  EXPECT_EQ(defaults_.writes.front().second, DefaultsValue(true));
  EXPECT_EQ(defaults_.writes.back().second, DefaultsValue(false));
}

TEST_F(FocusHotKeyControllerTest, FocusModeRunsTheTwoScripts) {
  controller();
  settings_->focusMode = true;
  EXPECT_EQ(scripts_.run, Texts{kHide});
  EXPECT_TRUE(controller().iconsHiddenByApp());
  settings_->focusMode = false;
  EXPECT_EQ(scripts_.run, (Texts{kHide, kShow}));
  EXPECT_FALSE(controller().iconsHiddenByApp());
}

TEST_F(FocusHotKeyControllerTest, WithIconsLeftAloneNoScriptRuns) {
  settings_->hideDesktopIconsInFocus = false;
  controller();
  settings_->focusMode = true;
  settings_->focusMode = false;
  press();
  press();
  EXPECT_TRUE(scripts_.run.empty());
}

TEST_F(FocusHotKeyControllerTest, IconsThatOthersHidAreNotShown) {
  controller();
  settings_->focusMode = false;
  EXPECT_TRUE(scripts_.run.empty());
}

TEST_F(FocusHotKeyControllerTest, ALaunchInFocusModeHidesOnce) {
  settings_->focusMode = true;
  controller();
  EXPECT_EQ(scripts_.run, Texts{kHide});
  EXPECT_EQ(log_, (Texts{"install handler", "register hot key", "script"}));
}

TEST_F(FocusHotKeyControllerTest, EveryRepeatedDeliveryHidesAgain) {
  controller();
  settings_->focusMode = true;
  settings_->focusMode = true;
  EXPECT_EQ(scripts_.run, (Texts{kHide, kHide}));
}

TEST_F(FocusHotKeyControllerTest, TheIconSettingAloneDoesNothingUntilTheNextDelivery) {
  controller();
  settings_->focusMode = true;
  settings_->hideDesktopIconsInFocus = false;
  EXPECT_EQ(scripts_.run, Texts{kHide});
  settings_->focusMode = true;
  EXPECT_EQ(scripts_.run, (Texts{kHide, kShow}));
  EXPECT_FALSE(controller().iconsHiddenByApp());
}

TEST_F(FocusHotKeyControllerTest, AScriptThatFailsCountsAsRun) {
  scripts_.fails = true;
  controller();
  settings_->focusMode = true;
  EXPECT_TRUE(controller().iconsHiddenByApp());
}

TEST_F(FocusHotKeyControllerTest, AScriptThatIsNotUnderstoodCountsAsRun) {
  scripts_.understandsNothing = true;
  controller();
  settings_->focusMode = true;
  EXPECT_TRUE(scripts_.run.empty());
  EXPECT_TRUE(controller().iconsHiddenByApp());
}

TEST_F(FocusHotKeyControllerTest, ARefusedKeyLeavesEverythingElseWorking) {
  hotKeys_.refuses = true;
  controller();
  settings_->focusMode = true;
  EXPECT_EQ(scripts_.run, Texts{kHide});
  controller_.reset();
  EXPECT_EQ(log_, (Texts{"install handler", "register hot key", "script"}));
}

TEST_F(FocusHotKeyControllerTest, TheSettingsAreNotKeptAlive) {
  controller();
  const std::weak_ptr<DashboardSettings> weak = settings_;
  settings_.reset();
  EXPECT_TRUE(weak.expired());
  press();
  EXPECT_TRUE(scripts_.run.empty());
}

TEST_F(FocusHotKeyControllerTest, ItsEndGivesTheKeyBackAndLeavesTheIcons) {
  settings_->focusMode = true;
  controller();
  log_.clear();
  controller_.reset();
  EXPECT_EQ(log_, (Texts{"unregister hot key", "remove handler"}));
  EXPECT_TRUE(hotKeys_.hotKeys.empty());
  EXPECT_TRUE(hotKeys_.handlers.empty());
  settings_->focusMode = false;
  EXPECT_EQ(scripts_.run, Texts{kHide});
}

TEST_F(FocusHotKeyControllerTest, AKeyPressedJustBeforeTheEndStillToggles) {
  controller();
  EXPECT_EQ(hotKeys_.press(), noErr);
  controller_.reset();
  actor_.runUntilIdle();
  EXPECT_TRUE(settings_->focusMode.get());
}

}  // namespace
}  // namespace orvane
