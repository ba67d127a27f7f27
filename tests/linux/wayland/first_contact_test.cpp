// What a program that starts meets at the compositor's door.

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <vector>

#include "linux/wayland/desk.h"

namespace orvane::host::wayland {
namespace {

using namespace std::chrono_literals;

// A place where a compositor would listen, named by the environment.
class FirstContactTest : public testing::Test {
 protected:
  FirstContactTest() {
    setenv("WAYLAND_DISPLAY", path().c_str(), 1);
    address_.sun_family = AF_UNIX;
    const auto name = path();
    std::copy(name.begin(), name.end(), address_.sun_path);
  }
  ~FirstContactTest() override {
    closeAll();
    std::filesystem::remove_all(folder_);
    unsetenv("WAYLAND_DISPLAY");
  }

  [[nodiscard]] std::string path() const { return folder_ + "/display"; }
  int newSocket() {
    open_.push_back(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    return open_.back();
  }
  // Names are left behind.
  void closeAll() {
    for (const int fd : open_) close(fd);
    open_.clear();
  }
  // Lets as many in, and one more, as a queue of that length holds.
  int listenAtIt(int queue = 8) {
    const int fd = newSocket();
    if (bind(fd, name(), sizeof address_) != 0 || listen(fd, queue) != 0) {
      throw std::runtime_error("cannot listen");
    }
    return fd;
  }
  [[nodiscard]] const sockaddr* name() const {
    return reinterpret_cast<const sockaddr*>(&address_);
  }
  std::string connectWith(Duration patience, std::function<bool()> isInVain = {}) {
    return makeWaylandDesktop({actor_,
                               schedule_,
                               notifications_,
                               measurer_,
                               painter_,
                               {},
                               patience,
                               std::move(isInVain)})
        .failure;
  }

 private:
  static std::string makeFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "orvane-wayland-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no scratch folder");
    return name;
  }

  const std::string folder_ = makeFolder();
  sockaddr_un address_{};
  std::vector<int> open_;
  fakes::ManualMainActor actor_;
  ManualSchedule schedule_;
  NotificationCenter notifications_;
  fakes::CellMeasurer measurer_;
  desktop::BlockPainter painter_;
};

TEST_F(FirstContactTest, NobodyListens) {
  EXPECT_EQ(connectWith(10s), "There is no Wayland compositor: No such file or directory.");
  listenAtIt();
  closeAll();
  EXPECT_EQ(connectWith(10s), "There is no Wayland compositor: Connection refused.");
}

TEST_F(FirstContactTest, TheNameIsTooLongOrRelativeToNothing) {
  setenv("WAYLAND_DISPLAY", ("/" + std::string(200, 'x')).c_str(), 1);
  EXPECT_EQ(connectWith(10s), "There is no Wayland compositor: File name too long.");
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  const std::string kept = runtime ? runtime : "";
  unsetenv("XDG_RUNTIME_DIR");
  setenv("WAYLAND_DISPLAY", "display", 1);
  EXPECT_EQ(connectWith(10s), "There is no Wayland compositor: No such file or directory.");
  if (runtime) setenv("XDG_RUNTIME_DIR", kept.c_str(), 1);
}

TEST_F(FirstContactTest, ACompositorThatNeverAnswersIsNotWaitedForForEver) {
  listenAtIt();
  EXPECT_EQ(connectWith(50ms), "The Wayland compositor does not answer.");
}

TEST_F(FirstContactTest, ACompositorWithTooManyAtItsDoorIsNotWaitedFor) {
  listenAtIt(0);
  while (connect(newSocket(), name(), sizeof(sockaddr_un)) == 0) {
  }
  ASSERT_EQ(errno, EAGAIN);
  EXPECT_EQ(connectWith(10s), "There is no Wayland compositor: Resource temporarily unavailable.");
}

TEST_F(FirstContactTest, ACompositorThatHangsUpIsNotWaitedFor) {
  const int fd = listenAtIt();
  std::thread compositor([&] {
    int client = -1;
    while ((client = accept(fd, nullptr, nullptr)) < 0) {
    }
    close(client);
  });
  EXPECT_EQ(connectWith(10s), "The Wayland compositor hung up.");
  compositor.join();
}

TEST_F(FirstContactTest, ACompositorThatNeverAnswersIsWaitedForAsLongAsThereIsUseInIt) {
  listenAtIt();
  int asked = 0;
  EXPECT_EQ(connectWith(1h, [&] { return ++asked == 2; }),
            "The Wayland compositor does not answer.");
  EXPECT_EQ(asked, 2);
}

// A signal is heard by the loop, and the loop waits for us.
TEST_F(FirstContactTest, ASignalEndsTheWait) {
  listenAtIt();
  struct sigaction action {};
  struct sigaction previous {};
  action.sa_handler = [](int) {};
  action.sa_flags = SA_RESTART;
  sigaction(SIGUSR1, &action, &previous);
  std::atomic<bool> ended = false;
  std::thread sender([&ended, waiting = pthread_self()] {
    while (!ended) pthread_kill(waiting, SIGUSR1);
  });
  EXPECT_EQ(connectWith(1h), "The Wayland compositor does not answer.");
  ended = true;
  sender.join();
  sigaction(SIGUSR1, &previous, nullptr);
}

}  // namespace
}  // namespace orvane::host::wayland
