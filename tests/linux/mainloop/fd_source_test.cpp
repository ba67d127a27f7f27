#include "linux/mainloop/fd_source.h"

#include <glib.h>
#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <memory>

#include "linux/files/file_descriptor.h"

namespace orvane::host {
namespace {

// How many descriptors were ready when the loop last looked.
int readyAtLastLook = 0;

gint countReady(GPollFD* descriptors, guint count, gint timeout) {
  return readyAtLastLook = g_poll(descriptors, count, timeout);
}

class FdSources : public testing::Test {
 protected:
  FdSources() { g_main_context_set_poll_func(nullptr, countReady); }
  ~FdSources() override { g_main_context_set_poll_func(nullptr, nullptr); }

  void signal() { ASSERT_EQ(eventfd_write(descriptor_.get(), 1), 0); }
  void take() {
    eventfd_t value = 0;
    ASSERT_EQ(eventfd_read(descriptor_.get(), &value), 0);
    ++taken_;
  }
  void turn() { g_main_context_iteration(nullptr, FALSE); }

  FileDescriptor descriptor_{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
  int taken_ = 0;
};

TEST_F(FdSources, TellOfWhatCanBeRead) {
  const FdSource source(descriptor_.get(), SourcePriority::normal, [this] { take(); });
  turn();
  EXPECT_EQ(taken_, 0);
  signal();
  turn();
  EXPECT_EQ(taken_, 1);
}

TEST_F(FdSources, LeaveNothingToDoInTheNextTurn) {
  const FdSource source(descriptor_.get(), SourcePriority::urgent, [this] { take(); });
  turn();
  signal();
  turn();
  ASSERT_EQ(taken_, 1);
  turn();
  EXPECT_EQ(readyAtLastLook, 0);
}

TEST_F(FdSources, MayEndInTheirOwnCall) {
  std::unique_ptr<FdSource> source;
  source = std::make_unique<FdSource>(descriptor_.get(), SourcePriority::normal, [&] {
    ++taken_;
    source.reset();
  });
  signal();
  turn();
  turn();
  EXPECT_EQ(taken_, 1);
}

}  // namespace
}  // namespace orvane::host
