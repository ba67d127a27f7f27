#include "view/text_fitting.h"

#include <gtest/gtest.h>

#include <cmath>

#include "fakes/cell_measurer.h"

namespace orvane::detail {
namespace {

const Font digits{10, FontWeight::bold, FontDesign::standard, true};

FittedText fit(const std::string& content, Font font, double width, int lineLimit = 0,
               double minimumScale = 1) {
  TextNode node{content, {font, false, lineLimit}};
  node.minimumScale = minimumScale;
  return fitText(node, width, fakes::CellMeasurer());
}

TEST(TextFitting, WrapsWithoutALimit) {
  const auto fitted = fit("aaaa bbbb cccc", {10}, 45);
  EXPECT_EQ(fitted.extent.size, (Size{45, 24}));
  EXPECT_FALSE(fitted.extent.truncated);
}

TEST(TextFitting, IsCutAfterItsLimit) {
  const auto fitted = fit("aaaa bbbb cccc", {10}, 20, 2);
  EXPECT_EQ(fitted.extent.size, (Size{20, 24}));
  EXPECT_TRUE(fitted.extent.truncated);
}

TEST(TextFitting, ShrinksToTheLargestSizeThatFitsBeforeItIsCut) {
  const auto whole = fit("aaaaaaaaaa", {10}, 50, 1, 0.5);
  EXPECT_EQ(whole.style.font.size, 10);
  const auto shrunken = fit("aaaaaaaaaa", {10}, 40, 1, 0.5);
  EXPECT_EQ(shrunken.style.font.size, 8);
  EXPECT_EQ(shrunken.extent.size.width, 40);
  EXPECT_FALSE(shrunken.extent.truncated);
  const auto cut = fit("aaaaaaaaaa", {10}, 20, 1, 0.5);
  EXPECT_EQ(cut.style.font.size, 5);
  EXPECT_TRUE(cut.extent.truncated);
}

TEST(TextFitting, ShrinksInWholeStepsAndNeverBelowTheLeast) {
  for (double width = 1; width < 60; width += 0.3) {
    const auto fitted = fit("aaaaaaaaaa", {10}, width, 1, 0.45);
    const double size = fitted.style.font.size;
    EXPECT_GE(size, 4.5);
    EXPECT_LE(fitted.extent.size.width, width + 1e-9);
    EXPECT_EQ(size * 4, std::round(size * 4));
    EXPECT_EQ(fitted.extent.truncated, width < 22.5 - 1e-6) << width;
  }
}

TEST(TextFitting, ShrinksSeveralLinesToo) {
  const auto fitted = fit("aaaa bbbb cccc", {10}, 40, 2, 0.5);
  EXPECT_EQ(fitted.style.font.size, 8.75);
  EXPECT_FALSE(fitted.extent.truncated);
}

TEST(TextFitting, TickingDigitsStandInCells) {
  const auto fitted = fit("12:34:56", digits, 100, 1);
  EXPECT_EQ(fitted.cells, (std::vector<double>{6, 6, 5, 6, 6, 5, 6, 6}));
  EXPECT_EQ(fitted.extent.size, (Size{46, 12}));
}

TEST(TextFitting, CellsShrinkToo) {
  const auto fitted = fit("12:34:56", digits, 23, 1, 0.45);
  EXPECT_EQ(fitted.style.font.size, 5);
  EXPECT_EQ(fitted.cells.at(0), 3);
  EXPECT_NEAR(fitted.extent.size.width, 23, 1e-9);
}

TEST(TextFitting, OnlyDigitsColonsAndDashesStandInCells) {
  EXPECT_EQ(fit("--:--:--", digits, 100).cells.size(), 8U);
  EXPECT_TRUE(fit("9:41 AM", digits, 100).cells.empty());
  EXPECT_TRUE(fit("", digits, 100).cells.empty());
  EXPECT_TRUE(fit("12:34", {10}, 100).cells.empty());
}

TEST(TextFitting, DigitsThatDoNotFitOnOneLineAreOrdinaryText) {
  const auto fitted = fit("12:34:56", digits, 20);
  EXPECT_TRUE(fitted.cells.empty());
  EXPECT_EQ(fitted.extent.size.height, 36);
}

TEST(TextFitting, OfferedNothingItTakesNothingButALine) {
  EXPECT_EQ(fit("abc", {10}, 0).extent.size, (Size{0, 12}));
  EXPECT_EQ(fit("abc", {10}, -5, 1, 0.5).extent.size, (Size{0, 12}));
}

}  // namespace
}  // namespace orvane::detail
