#include "linux/gio/session_bus.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <map>

#include "private_bus.h"
#include "support/scratch_folder.h"

namespace orvane::host::gio {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using Variables = std::map<std::string, std::string>;

std::string addressIn(const Variables& variables) {
  return sessionBusAddress([&](const std::string& name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  });
}

// A socket that accepts connections into its queue, and never answers.
class SilentSocket {
 public:
  SilentSocket() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path().string().copy(address.sun_path, sizeof address.sun_path - 1);
    number_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ::bind(number_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::listen(number_, 5);
  }
  SilentSocket(const SilentSocket&) = delete;
  SilentSocket& operator=(const SilentSocket&) = delete;
  ~SilentSocket() { ::close(number_); }
  [[nodiscard]] fs::path path() const { return folder_ / "bus"; }
  [[nodiscard]] const fs::path& folder() const { return folder_.path(); }

 private:
  const ScratchFolder folder_;
  int number_ = -1;
};

TEST(SessionBusAddressTest, TheVariableComesFirst) {
  EXPECT_EQ(addressIn({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/a"}, {"XDG_RUNTIME_DIR", "/r"}}),
            "unix:path=/a");
}

TEST(SessionBusAddressTest, TheSocketOfTheSessionComesNext) {
  const SilentSocket socket;
  EXPECT_EQ(addressIn({{"XDG_RUNTIME_DIR", socket.folder().string()}}),
            "unix:path=" + socket.path().string());
}

TEST(SessionBusAddressTest, WithoutEitherThereIsNoBus) {
  EXPECT_EQ(addressIn({}), "");
  EXPECT_EQ(addressIn({{"XDG_RUNTIME_DIR", "/nowhere"}}), "");
  EXPECT_EQ(addressIn({{"XDG_RUNTIME_DIR", "relative"}}), "");
}

TEST(SessionBusTest, ConnectsToABusAndSurvivesItsEnd) {
  PrivateBus bus;
  const auto connection = bus.connect();
  ASSERT_TRUE(connection);
  EXPECT_EQ(g_dbus_connection_get_exit_on_close(connection.get()), FALSE);
  EXPECT_NE(g_dbus_connection_get_unique_name(connection.get()), nullptr);
  bus.stop();
  EXPECT_TRUE(eventually([&] { return g_dbus_connection_is_closed(connection.get()) != FALSE; }));
}

TEST(SessionBusTest, NothingAtTheAddressIsNoConnection) {
  EXPECT_FALSE(connectToBus("", milliseconds(100)));
  EXPECT_FALSE(connectToBus("unix:path=/nowhere/bus", milliseconds(100)));
  EXPECT_FALSE(connectToBus("no address at all", milliseconds(100)));
}

TEST(SessionBusTest, ABusThatNeverAnswersIsGivenUp) {
  const SilentSocket socket;
  const auto before = std::chrono::steady_clock::now();
  EXPECT_FALSE(connectToBus("unix:path=" + socket.path().string(), milliseconds(100)));
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(10));
}

}  // namespace
}  // namespace orvane::host::gio
