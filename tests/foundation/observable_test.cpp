#include "foundation/observable.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace orvane {
namespace {

struct Model : ObservableObject {
  Published<int> number{*this, 1};
  Published<std::string> text{*this, "a"};
};

TEST(Published, AnnouncesBeforeTheChangeIsInPlaceAndCarriesTheNewValue) {
  Model model;
  std::string seen;
  const auto ofObject = model.objectWillChange().subscribe(
      [&] { seen += "object sees " + std::to_string(*model.number) + "; "; });
  const auto ofProperty = model.number.subscribe([&](int value) {
    seen += std::to_string(value) + " told, " + std::to_string(*model.number) + " in place; ";
  });
  seen.clear();
  model.number = 2;
  EXPECT_EQ(seen, "object sees 1; 2 told, 1 in place; ");
  EXPECT_EQ(*model.number, 2);
}

TEST(Published, SubscribingDeliversTheCurrentValueAtOnce) {
  Model model;
  model.number = 7;
  std::vector<int> seen;
  const auto watching = model.number.subscribe([&](int value) { seen.push_back(value); });
  EXPECT_EQ(seen, std::vector<int>{7});
}

TEST(Published, EqualValuesAnnounceToo) {
  Model model;
  int ofObject = 0;
  int ofProperty = 0;
  const auto first = model.objectWillChange().subscribe([&] { ++ofObject; });
  const auto second = model.number.subscribe([&](int) { ++ofProperty; });
  model.number = 1;
  model.number = 1;
  EXPECT_EQ(ofObject, 2);
  EXPECT_EQ(ofProperty, 3);
}

TEST(Published, OneObjectAnnouncesAllOfItsProperties) {
  Model model;
  int announced = 0;
  const auto watching = model.objectWillChange().subscribe([&] { ++announced; });
  model.number = 2;
  model.text = "b";
  EXPECT_EQ(announced, 2);
}

TEST(Published, DidSetRunsLastAndMayAssignAgain) {
  struct Clamped : ObservableObject {
    Published<int> number{*this, 0, [this](int value) {
                            if (value > 10) number = 10;
                          }};
  } model;
  std::vector<int> seen;
  const auto watching = model.number.subscribe([&](int value) { seen.push_back(value); });
  model.number = 12;
  EXPECT_EQ(*model.number, 10);
  EXPECT_EQ(seen, (std::vector<int>{0, 12, 10}));
}

TEST(Published, ExchangeAnnouncesAndHandsBackTheOldValue) {
  Model model;
  std::vector<int> seen;
  const auto watching = model.number.subscribe([&](int value) { seen.push_back(value); });
  EXPECT_EQ(model.number.exchange(5), 1);
  EXPECT_EQ(*model.number, 5);
  EXPECT_EQ(seen, (std::vector<int>{1, 5}));
}

TEST(Published, AnEndedSubscriptionHearsNothingMore) {
  Model model;
  int heard = 0;
  auto watching = model.number.subscribe([&](int) { ++heard; });
  watching.cancel();
  model.number = 2;
  EXPECT_EQ(heard, 1);
  EXPECT_FALSE(watching);
}

TEST(Published, ASubscriptionMayOutliveItsObject) {
  auto model = std::make_unique<Model>();
  int heard = 0;
  auto watching = model->number.subscribe([&](int) { ++heard; });
  model.reset();
  watching.cancel();
  EXPECT_EQ(heard, 1);
  EXPECT_FALSE(watching);
}

TEST(CombineLatest, DeliversThePairAtOnceAndOnEveryChangeOfEither) {
  Model model;
  std::string seen;
  const auto watching = combineLatest<int, std::string>(
      model.number, model.text, [&](const int& number, const std::string& text) {
        seen += std::to_string(number) + text + " ";
      });
  EXPECT_EQ(seen, "1a ");
  model.text = "b";
  model.number = 2;
  model.number = 2;
  EXPECT_EQ(seen, "1a 1b 2b 2b ");
}

TEST(CombineLatest, ThePairHoldsTheAssignedValueBeforeItIsInPlace) {
  Model model;
  std::string seen;
  const auto watching = combineLatest<int, std::string>(
      model.number, model.text, [&](const int& number, const std::string&) {
        seen += std::to_string(number) + "/" + std::to_string(*model.number) + " ";
      });
  model.number = 5;
  EXPECT_EQ(seen, "1/1 5/1 ");
}

TEST(CombineLatest, EndsWithItsSubscriptionAlsoFromWithin) {
  Model model;
  int heard = 0;
  Subscription watching;
  watching = combineLatest<int, std::string>(model.number, model.text,
                                             [&](const int& number, const std::string&) {
                                               ++heard;
                                               if (number == 2) watching.cancel();
                                             });
  model.number = 2;
  model.number = 3;
  model.text = "b";
  EXPECT_EQ(heard, 2);
}

}  // namespace
}  // namespace orvane
