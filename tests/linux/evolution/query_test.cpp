#include "linux/evolution/query.h"

#include <gtest/gtest.h>

namespace orvane::host {
namespace {

TEST(Query, AsksForEventsOfTheSpanAndADayAroundItAndForEverythingThatRecurs) {
  EXPECT_EQ(queryFor(EKEntityType::event, {1'795'000'000.5, 1'795'604'800}),
            "(or (has-recurrences?) (occur-in-time-range? (make-time \"20261117T110640Z\") "
            "(make-time \"20261126T110640Z\")))");
}

TEST(Query, AsksForTasksThatAreNotDoneWheneverTheyAre) {
  EXPECT_EQ(queryFor(EKEntityType::reminder, {0, 1}),
            "(or (has-recurrences?) (not (is-completed?)))");
}

TEST(Query, SaysInstantsBeyondTheCalendarAsNearAsItCan) {
  EXPECT_EQ(queryFor(EKEntityType::event, {-1e18, 1e18}),
            "(or (has-recurrences?) (occur-in-time-range? (make-time \"00010101T000000Z\") "
            "(make-time \"99991231T235959Z\")))");
}

}  // namespace
}  // namespace orvane::host
