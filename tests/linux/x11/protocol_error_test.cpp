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
