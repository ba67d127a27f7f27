#include "linux/settingswindow/form_conversation.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "example_form.h"
#include "noted_form.h"

namespace orvane::host {
namespace {

using formwire::Preview;
using formwire::Show;
using formwire::Update;

class FormConversationTest : public testing::Test {
 protected:
  void show() {
    conversation_.askToShow({});
    ASSERT_TRUE(conversation_.sayNext(view_));
  }
  void goOn() { ASSERT_TRUE(conversation_.sayNext(view_)); }
  // What was said since it was last asked for, as text.
  std::vector<std::string> said() { return std::exchange(said_, {}); }

  fakes::NotedForm view_;
  std::vector<std::string> said_;
  std::size_t mostSaid_ = 1000;
  FormConversation conversation_{
      [this](const formwire::BoardMessage& message) {
        if (said_.size() >= mostSaid_) return false;
        said_.push_back(std::visit([](const auto& one) { return textOf(one); }, message));
        return true;
      },
      [](const FormPreview& preview, double scale) {
        return PreviewPicture{static_cast<std::uint32_t>(preview.size.width * scale), 1, ""};
      }};

 private:
  static std::string textOf(const Show& show) {
    return std::to_string(show.sequence) + " show " + show.form.header.subtitle.text + ", edit " +
           std::to_string(show.lastEdit);
  }
  static std::string textOf(const Update& update) {
    return std::to_string(update.sequence) + " update " +
           (update.form ? update.form->header.subtitle.text : "-") + ", edit " +
           std::to_string(update.lastEdit);
  }
  static std::string textOf(const Preview& preview) {
    return std::to_string(preview.sequence) + " preview " + preview.key + " " +
           std::to_string(preview.width);
  }
};

using Said = std::vector<std::string>;

TEST_F(FormConversationTest, NothingIsSaidUnasked) {
  goOn();
  EXPECT_EQ(said(), Said());
  EXPECT_FALSE(conversation_.isWaiting());
  EXPECT_FALSE(conversation_.isShowing());
  EXPECT_FALSE(conversation_.wasShown());
}

TEST_F(FormConversationTest, AShowingIsOverWhenItIsAcknowledged) {
  view_.order("a");
  show();
  EXPECT_EQ(said(), Said{"1 show a, edit 0"});
  EXPECT_TRUE(conversation_.isWaiting());
  EXPECT_TRUE(conversation_.isShowing());
  EXPECT_FALSE(conversation_.wasShown());
  EXPECT_TRUE(conversation_.acknowledged(1));
  EXPECT_FALSE(conversation_.isWaiting());
  EXPECT_FALSE(conversation_.isShowing());
  EXPECT_TRUE(conversation_.wasShown());
}

TEST_F(FormConversationTest, OfAThousandChangesASlowWindowIsToldTheLast) {
  show();
  for (int change = 0; change < 1000; ++change) {
    view_.order(std::to_string(change));
    conversation_.formChanged();
    goOn();
  }
  EXPECT_EQ(said(), Said{"1 show , edit 0"});
  EXPECT_TRUE(conversation_.acknowledged(1));
  goOn();
  EXPECT_EQ(said(), Said{"2 update 999, edit 0"});
}

TEST_F(FormConversationTest, AFormThatIsTheSameAgainIsNotSaid) {
  show();
  EXPECT_TRUE(conversation_.acknowledged(1));
  said();
  conversation_.formChanged();
  goOn();
  EXPECT_EQ(said(), Said());
  EXPECT_FALSE(conversation_.isWaiting());
}

TEST_F(FormConversationTest, EveryEditIsAnsweredAlsoWhereNothingCameOfIt) {
  show();
  EXPECT_TRUE(conversation_.acknowledged(1));
  said();
  EXPECT_TRUE(conversation_.edited(1));
  goOn();
  EXPECT_EQ(said(), Said{"2 update -, edit 1"});
  EXPECT_TRUE(conversation_.edited(2));
  EXPECT_TRUE(conversation_.edited(3));
  view_.order("b");
  EXPECT_TRUE(conversation_.acknowledged(2));
  goOn();
  EXPECT_EQ(said(), Said{"3 update b, edit 3"});
}

TEST_F(FormConversationTest, AShowingAlsoAnswersEdits) {
  show();
  EXPECT_TRUE(conversation_.acknowledged(1));
  EXPECT_TRUE(conversation_.edited(1));
  show();
  EXPECT_TRUE(conversation_.acknowledged(2));
  said();
  goOn();
  EXPECT_EQ(said(), Said());
}

TEST_F(FormConversationTest, WhatWasNeverSaidCannotBeAcknowledged) {
  EXPECT_FALSE(conversation_.acknowledged(0));
  EXPECT_FALSE(conversation_.acknowledged(1));
  show();
  EXPECT_FALSE(conversation_.acknowledged(2));
  EXPECT_TRUE(conversation_.acknowledged(1));
  EXPECT_FALSE(conversation_.acknowledged(1));
}

TEST_F(FormConversationTest, EditsThatDoNotCountUpMakeNoSense) {
  EXPECT_FALSE(conversation_.edited(0));
  EXPECT_TRUE(conversation_.edited(5));
  EXPECT_FALSE(conversation_.edited(5));
  EXPECT_FALSE(conversation_.edited(4));
}

TEST_F(FormConversationTest, PicturesAreSaidOnlyWhereTheyAreSeenAndWhenTheyChanged) {
  view_.setForm(fakes::exampleForm());
  view_.order("a");
  show();
  EXPECT_TRUE(conversation_.acknowledged(1));
  goOn();
  EXPECT_EQ(said(), Said{"1 show a, edit 0"});
  conversation_.previewScale(2);
  goOn();
  EXPECT_EQ(said(), Said{"2 preview preview 840"});
  EXPECT_TRUE(conversation_.isWaiting());
  EXPECT_TRUE(conversation_.acknowledged(2));
  view_.order("b");
  conversation_.formChanged();
  goOn();
  EXPECT_EQ(said(), Said{"3 update b, edit 0"});
  EXPECT_TRUE(conversation_.acknowledged(3));
  view_.setPreview(text("other"));
  conversation_.formChanged();
  goOn();
  EXPECT_EQ(said(), (Said{"4 update b, edit 0", "5 preview preview 840"}));
  EXPECT_TRUE(conversation_.acknowledged(4));
  EXPECT_TRUE(conversation_.isWaiting());
  EXPECT_TRUE(conversation_.acknowledged(5));
  conversation_.previewScale(0);
  view_.setPreview(text("unseen"));
  conversation_.formChanged();
  goOn();
  EXPECT_EQ(said(), Said{"6 update b, edit 0"});
}

TEST_F(FormConversationTest, APictureThatIsTooLargeIsLeftOut) {
  view_.setForm(fakes::exampleForm());
  show();
  EXPECT_TRUE(conversation_.acknowledged(1));
  conversation_.previewScale(1);
  mostSaid_ = 1;
  goOn();
  EXPECT_FALSE(conversation_.isWaiting());
}

TEST_F(FormConversationTest, AFormThatIsTooLargeEndsTheTalk) {
  mostSaid_ = 0;
  conversation_.askToShow({});
  EXPECT_FALSE(conversation_.sayNext(view_));
}

}  // namespace
}  // namespace orvane::host
