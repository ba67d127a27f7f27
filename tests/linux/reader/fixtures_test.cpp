#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <vector>

#include "linux/reader/listing.h"
#include "linux/reader/reading_session.h"
#include "support/test_paths.h"

namespace orvane::ical {
namespace {

// A fixture is NAME.ics with NAME.expected beside it: first a line "in ZONE from INSTANT to
// INSTANT", then the listing.
struct Fixture {
  std::string path;  // without its extension
  friend void PrintTo(const Fixture& fixture, std::ostream* out) { *out << fixture.path; }
};

std::vector<Fixture> fixtures() {
  std::vector<Fixture> found;
  for (const char* folder : {"reader", "exports"}) {
    const auto place = std::filesystem::path(testDataFolder()) / folder;
    for (const auto& entry : std::filesystem::directory_iterator(place)) {
      const auto name = std::filesystem::path(folder) / entry.path().filename();
      if (name.extension() == ".ics")
        found.push_back({(name.parent_path() / name.stem()).string()});
    }
  }
  return found;
}

wire::ReadRequest requestFrom(const std::string& expectation) {
  std::istringstream words(expectation);
  std::string in, from, to, start, end;
  wire::ReadRequest request;
  words >> in >> request.localTimeZone >> from >> start >> to >> end;
  if (in != "in" || from != "from" || to != "to") throw std::invalid_argument("no window");
  request.windowStart = instant(start);
  request.windowEnd = instant(end);
  return request;
}

class FixtureTest : public testing::TestWithParam<Fixture> {};

TEST_P(FixtureTest, IsReadAsExpected) {
  const std::string expected = readData(GetParam().path + ".expected");
  wire::ReadRequest request = requestFrom(expected);
  request.paths = {testDataFolder() + "/" + GetParam().path + ".ics"};
  std::string actual;
  readFiles(
      request, [] {},
      [&](const wire::FileAnswer& answer) {
        actual += listing(answer);
        return true;
      });
  EXPECT_EQ(expected.substr(expected.find('\n') + 1), actual);
}

std::string testName(const testing::TestParamInfo<Fixture>& info) {
  std::string name = info.param.path;
  for (char& letter : name) {
    if (!std::isalnum(static_cast<unsigned char>(letter))) letter = '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Fixtures, FixtureTest, testing::ValuesIn(fixtures()), testName);

}  // namespace
}  // namespace orvane::ical
