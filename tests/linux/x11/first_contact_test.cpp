#include "linux/x11/first_contact.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <stdexcept>
#include <string>
#include <thread>

namespace orvane::host::x11 {
namespace {

using namespace std::chrono_literals;

// A place where an X server would listen: a port of this machine, counted from 6000 on.
class X11FirstContactTest : public testing::Test {
 protected:
  X11FirstContactTest() : fd_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* name = reinterpret_cast<sockaddr*>(&address);
    if (bind(fd_, name, size) != 0 || listen(fd_, 8) != 0 || getsockname(fd_, name, &size) != 0) {
      throw std::runtime_error("cannot listen");
    }
    display_ = "127.0.0.1:" + std::to_string(ntohs(address.sin_port) - 6000);
  }
  ~X11FirstContactTest() override { close(fd_); }

  const int fd_;
  std::string display_;
};

TEST_F(X11FirstContactTest, AServerThatNeverAnswersIsNotWaitedForForEver) {
  const auto opened = openWithin(50ms, display_);
  EXPECT_EQ(opened.connection, nullptr);
  EXPECT_EQ(opened.reason, "The X display does not answer.");
}

TEST_F(X11FirstContactTest, AServerThatNeverAnswersIsWaitedForAsLongAsThereIsUseInIt) {
  int asked = 0;
  const auto opened = openWithin(1h, display_, [&] { return ++asked == 2; });
  EXPECT_EQ(opened.reason, "The X display does not answer.");
  EXPECT_EQ(asked, 2);
}

TEST_F(X11FirstContactTest, AServerThatHangsUpIsNotWaitedFor) {
  std::thread server([this] { close(accept(fd_, nullptr, nullptr)); });
  const auto opened = openWithin(1h, display_);
  EXPECT_EQ(opened.connection, nullptr);
  EXPECT_EQ(opened.reason, "The X display " + display_ + " cannot be opened.");
  server.join();
}

TEST_F(X11FirstContactTest, NobodyListens) {
  const auto opened = openWithin(1h, "127.0.0.1:-5999");  // port 1
  EXPECT_EQ(opened.reason, "The X display 127.0.0.1:-5999 cannot be opened.");
}

// A signal is heard by the loop, and the loop waits for us.
TEST_F(X11FirstContactTest, ASignalEndsTheWait) {
  struct sigaction action {};
  struct sigaction previous {};
  action.sa_handler = [](int) {};
  action.sa_flags = SA_RESTART;
  sigaction(SIGUSR1, &action, &previous);
  std::atomic<bool> ended = false;
  std::thread sender([&ended, waiting = pthread_self()] {
    while (!ended) pthread_kill(waiting, SIGUSR1);
  });
  EXPECT_EQ(openWithin(1h, display_).reason, "The X display does not answer.");
  ended = true;
  sender.join();
  sigaction(SIGUSR1, &previous, nullptr);
}

}  // namespace
}  // namespace orvane::host::x11
