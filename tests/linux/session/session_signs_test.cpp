#include "linux/session/session_signs.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <stdexcept>

#include "support/scratch_folder.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;

// Listens as long as it lives, and leaves its name behind as a server that was killed does.
class Listener {
 public:
  explicit Listener(const std::string& path) : fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    if (bind(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(fd_, 0) != 0) {
      throw std::runtime_error("cannot listen");
    }
  }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  ~Listener() { close(fd_); }

 private:
  int fd_;
};

class SessionSignsTest : public testing::Test {
 protected:
  SessionSignsTest() { fs::create_directory(folder_ / "run"); }

  [[nodiscard]] std::unique_ptr<SessionSigns> signs() const {
    return makeSessionSigns([this](const std::string& name) -> std::optional<std::string> {
      const auto found = environment_.find(name);
      if (found == environment_.end()) return std::nullopt;
      return found->second;
    });
  }
  [[nodiscard]] std::string busPath() const { return folder_ / "bus"; }

  const ScratchFolder folder_;
  std::map<std::string, std::string> environment_ = {
      {"XDG_RUNTIME_DIR", folder_ / "run"}, {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + busPath()}};
};

TEST_F(SessionSignsTest, ASessionWithAllItsSignsGoesOn) {
  const Listener bus(busPath());
  EXPECT_FALSE(signs()->hasEnded());
}

TEST_F(SessionSignsTest, EndsWithItsRuntimeFolder) {
  const Listener bus(busPath());
  const auto session = signs();
  fs::remove(folder_ / "run");
  EXPECT_TRUE(session->hasEnded());
}

TEST_F(SessionSignsTest, EndsWithItsBusAlsoWhenTheNameIsLeftBehind) {
  auto bus = std::make_unique<Listener>(busPath());
  const auto session = signs();
  EXPECT_FALSE(session->hasEnded());
  bus.reset();
  ASSERT_TRUE(fs::exists(busPath()));
  EXPECT_TRUE(session->hasEnded());
  fs::remove(busPath());
  EXPECT_TRUE(session->hasEnded());
}

TEST_F(SessionSignsTest, ABusThatIsTooBusyToAnswerIsThere) {
  const Listener bus(busPath());
  const auto session = signs();
  for (int question = 0; question < 20; ++question) EXPECT_FALSE(session->hasEnded());
}

TEST_F(SessionSignsTest, WhatWasNotThereAtFirstIsNotMissed) {
  fs::remove(folder_ / "run");
  EXPECT_FALSE(signs()->hasEnded());
  environment_ = {{"XDG_RUNTIME_DIR", ""}, {"DBUS_SESSION_BUS_ADDRESS", std::string(300, 'x')}};
  EXPECT_FALSE(signs()->hasEnded());
  environment_["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/" + std::string(300, 'x');
  EXPECT_FALSE(signs()->hasEnded());
  environment_.clear();
  EXPECT_FALSE(signs()->hasEnded());
}

}  // namespace
}  // namespace orvane::host
