#pragma once

#include <gtest/gtest.h>

#include <string>

#include "picture_comparison.h"

namespace orvane::testing_pictures {

// Compares with the stored picture DIRECTORY/NAME.png. When it does not match, or is not there,
// NAME-actual.png, NAME-expected.png and NAME-difference.png are left in `golden-failures` under
// the working directory.
[[nodiscard]] ::testing::AssertionResult matchesReference(const std::string& directory,
                                                          const std::string& name,
                                                          const host::Picture& actual);

// The same with the project's stored pictures. With ORVANE_BLESS_GOLDEN=1 in the environment the
// picture is stored instead, and becomes what is expected from then on.
[[nodiscard]] ::testing::AssertionResult matchesGolden(const std::string& name,
                                                       const host::Picture& actual);

}  // namespace orvane::testing_pictures
