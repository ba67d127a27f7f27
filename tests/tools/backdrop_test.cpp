#include "backdrop.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

namespace orvane::tools {
namespace {

using host::Picture;

TEST(BackdropTest, IsOneColour) {
  const auto backdrop = makeBackdrop("#20fF40", 3, 2);
  const auto& picture = std::get<Picture>(backdrop);
  EXPECT_EQ(picture.width, 3);
  EXPECT_EQ(picture.height, 2);
  for (const auto pixel : picture.pixels) EXPECT_EQ(pixel, 0xFF20FF40U);
}

TEST(BackdropTest, TellsWhatIsNeitherColourNorPicture) {
  for (const char* wrong : {"#12345", "#1234567", "#12345g", "#-12345", "no such file.png", "/"}) {
    const auto backdrop = makeBackdrop(wrong, 3, 2);
    ASSERT_TRUE(std::holds_alternative<std::string>(backdrop)) << wrong;
    EXPECT_EQ(std::get<std::string>(backdrop).find('\n'), std::string::npos);
  }
}

TEST(BackdropTest, APictureFillsTheWholeAndIsCutEvenly) {
  const auto path = std::filesystem::temp_directory_path() /
                    ("orvane-backdrop-" + std::to_string(getpid()) + ".png");
  // Red, green, green, blue beside each other: in a square only the middle stays.
  Picture source(4, 1);
  source.pixels = {0xFFFF0000U, 0xFF00FF00U, 0xFF00FF00U, 0xFF0000FFU};
  ASSERT_FALSE(host::writePNG(source, path.string()).has_value());
  const auto backdrop = makeBackdrop(path.string(), 8, 8);
  std::filesystem::remove(path);
  const auto& picture = std::get<Picture>(backdrop);
  ASSERT_EQ(picture.pixels.size(), 64U);
  EXPECT_EQ(picture.pixels[8 * 4 + 4], 0xFF00FF00U);
  for (const auto pixel : picture.pixels) {
    EXPECT_EQ(pixel >> 24, 0xFFU);
    EXPECT_GE((pixel >> 8) & 0xFF, 0x7FU) << std::hex << pixel;
  }
}

}  // namespace
}  // namespace orvane::tools
