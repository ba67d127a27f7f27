// The real timer, with a kernel that says of the clock what the test wants it to say.

#include "linux/mainloop/wall_timer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <vector>

#include "linux/mainloop/main_loop.h"
#include "linux/mainloop/periodic_schedule.h"

namespace {

// How often the next reads of a descriptor of eight bytes tell that the clock was set.
int jumps = 0;

}  // namespace

// In the place of the system's, for the whole of this program. Nobody here may set the clock, which
// is what it would take otherwise.
extern "C" ssize_t read(int descriptor, void* buffer, std::size_t size) {
  const auto count = syscall(SYS_read, descriptor, buffer, size);
  if (count == 8 && size == 8 && jumps > 0) {
    --jumps;
    errno = ECANCELED;
    return -1;
  }
  return count;
}

namespace orvane::host {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using testing::ElementsAre;

class WallTimerTest : public testing::Test {
 protected:
  ~WallTimerTest() override { jumps = 0; }
  // Until quit(0) is called, or in vain.
  void run() {
    const auto limit = loop->after(minutes(1), [this] { loop->quit(1); });
    ASSERT_EQ(loop->run(), 0);
  }
  std::unique_ptr<MainLoop> loop = makeMainLoop();
};

TEST_F(WallTimerTest, TellsAJumpOfTheClockAndCanBeArmedAnew) {
  const auto timer = makeWallTimer();
  std::vector<WallTimerEvent> events;
  jumps = 1;
  timer->arm(timer->now() + milliseconds(20), [&](WallTimerEvent event) {
    events.push_back(event);
    timer->arm(timer->now() + milliseconds(20), [&](WallTimerEvent next) {
      events.push_back(next);
      loop->quit(0);
    });
  });
  run();
  EXPECT_THAT(events, ElementsAre(WallTimerEvent::clockChanged, WallTimerEvent::reached));
}

TEST_F(WallTimerTest, OfAScheduleGoesOnAfterJumpsWithTheTimeThatItIsThen) {
  const auto schedule = makePeriodicSchedule();
  std::vector<double> ticks;
  jumps = 2;
  const auto ticking = schedule->everySecond([&](Date instant) {
    ticks.push_back(instant.secondsSince1970);
    EXPECT_LT(std::abs(loop->now() - instant), 30);
    if (ticks.size() == 3) loop->quit(0);
  });
  run();
  EXPECT_EQ(jumps, 0);
  for (std::size_t i = 1; i < ticks.size(); ++i) EXPECT_GT(ticks[i], ticks[i - 1]);
}

}  // namespace
}  // namespace orvane::host
