#include "linux/session/bus_address.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane::host {
namespace {

TEST(BusAddressTest, OnlySocketsOfThisMachineAreKnown) {
  struct Case {
    std::string address;
    std::optional<std::string> socket;
  };
  const std::vector<Case> cases = {
      {"unix:path=/run/user/1000/bus", "/run/user/1000/bus"},
      {"unix:path=/run/user/1000/bus,guid=1234", "/run/user/1000/bus"},
      {"unix:guid=1234,path=/run/bus", "/run/bus"},
      {"unix:abstract=/tmp/dbus-x,guid=1", '\0' + std::string("/tmp/dbus-x")},
      {"unix:path=/tmp/a%20b%2Fc", "/tmp/a b/c"},
      {"tcp:host=localhost,port=1;unix:path=/b", "/b"},
      {"unix:path=/a;unix:path=/b", "/a"},
      {"unix:path=", std::nullopt},
      {"unix:path=/a%2", std::nullopt},
      {"unix:path=/a%zz", std::nullopt},
      {"unix:runtime=yes", std::nullopt},
      {"unix", std::nullopt},
      {"autolaunch:", std::nullopt},
      {"tcp:host=localhost", std::nullopt},
      {";;:,=", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& [address, socket] : cases) EXPECT_EQ(localBusSocket(address), socket) << address;
}

}  // namespace
}  // namespace orvane::host
