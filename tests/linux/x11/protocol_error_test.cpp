#include "linux/x11/protocol_error.h"

#include <gtest/gtest.h>

namespace orvane::host::x11 {
namespace {

TEST(ProtocolError, NamesWhatWasAskedAndWhyItWasRefused) {
  xcb_generic_error_t error{};
  error.major_code = XCB_CONFIGURE_WINDOW;
  error.error_code = XCB_MATCH;
  EXPECT_EQ(describe(error), "The X server refused ConfigureWindow: BadMatch.");
}

TEST(ProtocolError, NumbersWhatHasNoNameHere) {
  xcb_generic_error_t error{};
  error.major_code = 130;
  error.minor_code = 3;
  error.error_code = 128;
  EXPECT_EQ(describe(error), "The X server refused request 130.3: error 128.");
}

TEST(ProtocolError, NamesTheExtensionThatWasAsked) {
  const std::vector<Extension> extensions = {
      {"MIT-SHM", 130, 128}, {"RANDR", 140, 147}, {"MIT-SCREEN-SAVER", 144, 0}};
  xcb_generic_error_t error{};
  error.major_code = 140;
  error.minor_code = 42;
  error.error_code = XCB_VALUE;
  EXPECT_EQ(describe(error, extensions), "The X server refused RANDR request 42: BadValue.");
  error.error_code = 147;
  EXPECT_EQ(describe(error, extensions), "The X server refused RANDR request 42: BadOutput.");
  error.error_code = 156;
  EXPECT_EQ(describe(error, extensions), "The X server refused RANDR request 42: RANDR error 9.");
  error.major_code = 144;
  error.error_code = 128;
  EXPECT_EQ(describe(error, extensions),
            "The X server refused MIT-SCREEN-SAVER request 42: BadShmSeg.");
  error.major_code = 141;
  error.error_code = 127;
  EXPECT_EQ(describe(error, extensions), "The X server refused request 141.42: error 127.");
}

TEST(ProtocolError, OfTwoWindowsReadsTheSame) {
  xcb_generic_error_t one{};
  one.major_code = XCB_MAP_WINDOW;
  one.error_code = XCB_WINDOW;
  auto other = one;
  other.resource_id = 7;
  EXPECT_EQ(describe(one), describe(other));
}

}  // namespace
}  // namespace orvane::host::x11
