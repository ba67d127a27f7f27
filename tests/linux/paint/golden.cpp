#include "golden.h"

#include <cstdlib>
#include <filesystem>

#include "support/test_paths.h"

namespace orvane::testing_pictures {

namespace {

// Another release of the drawing libraries may round another way, here and there along an edge.
constexpr int perChannel = 6;
constexpr std::size_t pixelsPerAllowedDifference = 1000;

bool isBlessing() {
  const char* value = std::getenv("ORVANE_BLESS_GOLDEN");
  return value && std::string(value) == "1";
}

void leave(const std::string& name, const char* what, const host::Picture& picture) {
  std::filesystem::create_directories("golden-failures");
  const auto problem = host::writePNG(picture, "golden-failures/" + name + "-" + what + ".png");
  if (problem) ADD_FAILURE() << problem->message;
}

}  // namespace

::testing::AssertionResult matchesReference(const std::string& directory, const std::string& name,
                                            const host::Picture& actual) {
  const auto stored = host::readPNG(directory + "/" + name + ".png");
  if (const auto* error = std::get_if<host::PictureError>(&stored)) {
    leave(name, "actual", actual);
    return ::testing::AssertionFailure() << error->message;
  }
  const auto& expected = std::get<host::Picture>(stored);
  const int allowed = static_cast<int>(actual.pixels.size() / pixelsPerAllowedDifference);
  const Comparison result = compare(expected, actual, {perChannel, allowed});
  if (result.matches) return ::testing::AssertionSuccess();
  leave(name, "actual", actual);
  leave(name, "expected", expected);
  if (!result.difference.pixels.empty()) leave(name, "difference", result.difference);
  return ::testing::AssertionFailure()
         << name << ": " << result.differences << " pixels differ (" << allowed
         << " may), by up to " << result.largest << "; sizes " << expected.width << "x"
         << expected.height << " and " << actual.width << "x" << actual.height;
}

::testing::AssertionResult matchesGolden(const std::string& name, const host::Picture& actual) {
  if (!isBlessing()) return matchesReference(goldenFolder(), name, actual);
  const auto problem = host::writePNG(actual, goldenFolder() + "/" + name + ".png");
  if (problem) return ::testing::AssertionFailure() << problem->message;
  return ::testing::AssertionSuccess();
}

}  // namespace orvane::testing_pictures
