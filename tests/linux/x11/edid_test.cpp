#include "linux/x11/edid.h"

#include <gtest/gtest.h>

namespace orvane::host::x11 {
namespace {

// A block of a monitor by "DEL" with product code 0xA0B1.
std::string block() {
  std::string bytes(128, '\0');
  bytes.replace(0, 8, std::string("\x00\xff\xff\xff\xff\xff\xff\x00", 8));
  bytes[8] = '\x10';
  bytes[9] = '\xac';
  bytes[10] = '\xb1';
  bytes[11] = '\xa0';
  return bytes;
}

std::string withName(std::size_t offset, const std::string& name) {
  auto bytes = block();
  std::string descriptor("\x00\x00\x00\xfc\x00", 5);
  descriptor += name;
  descriptor.resize(18, ' ');
  return bytes.replace(offset, 18, descriptor);
}

TEST(Edid, NamesMakerAndProductCode) {
  EXPECT_EQ(modelFromEdid(block()), (MonitorModel{"DEL", "0xA0B1"}));
}

TEST(Edid, PrefersTheProductsName) {
  for (const std::size_t offset : {54U, 72U, 90U, 108U}) {
    EXPECT_EQ(modelFromEdid(withName(offset, "U2720Q\n")), (MonitorModel{"DEL", "U2720Q"}));
  }
}

TEST(Edid, TakesANameThatFillsItsDescriptor) {
  EXPECT_EQ(modelFromEdid(withName(54, "Thirteen char")).model, "Thirteen char");
}

TEST(Edid, FallsBackToTheCodeWhenTheNameIsBlank) {
  EXPECT_EQ(modelFromEdid(withName(54, "  \n")).model, "0xA0B1");
}

TEST(Edid, TakesOnlyTheFirstBlockOfSeveral) {
  EXPECT_EQ(modelFromEdid(block() + std::string(128, '\x01')).make, "DEL");
}

TEST(Edid, AnythingElseNamesNothing) {
  EXPECT_EQ(modelFromEdid(""), MonitorModel());
  EXPECT_EQ(modelFromEdid(block().substr(0, 127)), MonitorModel());
  EXPECT_EQ(modelFromEdid(std::string(128, '\xff')), MonitorModel());
}

}  // namespace
}  // namespace orvane::host::x11
