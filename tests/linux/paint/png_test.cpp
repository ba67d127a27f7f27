#include "linux/paint/png.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace orvane::host {
namespace {

// A path of this process's own.
std::string scratch(const std::string& name) {
  return ::testing::TempDir() + "orvane-png-" + std::to_string(getpid()) + "-" + name;
}

TEST(PNG, AWrittenPictureReadsBack) {
  Picture picture(3, 2);
  picture.pixels = {0xFF010203, 0xFFFFFFFF, 0, 0x80402010, 0xFF000000, 0x01010101};
  const std::string path = scratch("round-trip.png");
  ASSERT_FALSE(writePNG(picture, path));
  const auto read = readPNG(path);
  std::remove(path.c_str());
  ASSERT_TRUE(std::holds_alternative<Picture>(read));
  EXPECT_EQ(std::get<Picture>(read).width, 3);
  EXPECT_EQ(std::get<Picture>(read).height, 2);
  EXPECT_EQ(std::get<Picture>(read).pixels[0], 0xFF010203);
  EXPECT_EQ(std::get<Picture>(read).pixels[2], 0U);
  EXPECT_EQ(std::get<Picture>(read).pixels[3], 0x80402010);
}

TEST(PNG, AMissingFileIsNamed) {
  const auto read = readPNG("/nowhere/at/all.png");
  ASSERT_TRUE(std::holds_alternative<PictureError>(read));
  EXPECT_NE(std::get<PictureError>(read).message.find("/nowhere/at/all.png"), std::string::npos);
}

TEST(PNG, AFileThatIsNoPictureIsAnError) {
  const std::string path = scratch("no-picture.png");
  std::ofstream(path) << "This is a letter.";
  const auto read = readPNG(path);
  std::remove(path.c_str());
  ASSERT_TRUE(std::holds_alternative<PictureError>(read));
  EXPECT_NE(std::get<PictureError>(read).message.find("no PNG"), std::string::npos);
}

TEST(PNG, AFileCutInTheMiddleIsAnError) {
  const std::string path = scratch("cut.png");
  ASSERT_FALSE(writePNG(Picture(64, 64), path));
  std::filesystem::resize_file(path, 60);
  EXPECT_TRUE(std::holds_alternative<PictureError>(readPNG(path)));
  std::remove(path.c_str());
}

TEST(PNG, APlaceThatCannotBeWrittenIsNamed) {
  const auto problem = writePNG(Picture(1, 1), "/nowhere/at/all.png");
  ASSERT_TRUE(problem);
  EXPECT_NE(problem->message.find("/nowhere/at/all.png"), std::string::npos);
}

TEST(PNG, AnEmptyPictureIsAnErrorAndNotACrash) {
  EXPECT_TRUE(writePNG(Picture(), scratch("empty.png")));
  EXPECT_EQ(Picture(-4, 7).pixels.size(), 0U);
}

}  // namespace
}  // namespace orvane::host
