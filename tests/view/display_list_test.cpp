#include "view/display_list.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

DisplayItem fill(Rect frame, double opacity = 1) {
  return {frame, opacity, FillItem{Shape::rectangle(), Color::red()}};
}

TEST(DisplayItemBounds, AFillIsItsFrame) {
  EXPECT_EQ(fill({1, 2, 3, 4}).bounds(), (Rect{1, 2, 3, 4}));
}

TEST(DisplayItemBounds, AShadowReachesAsFarAsItsBlur) {
  const DisplayItem shadow{
      {10, 20, 100, 50},
      1,
      ShadowItem{Shape::rectangle(), Color::black().opacity(0.2), 22, {0, 12}}};
  EXPECT_EQ(shadow.bounds(), (Rect{-12, 10, 144, 94}));
}

TEST(DisplayItemBounds, GlyphsMayReachPastTheirFrame) {
  const DisplayItem text{{10, 10, 50, 24}, 1, TextItem{"Åg", {{20}}, Color::white()}};
  EXPECT_EQ(text.bounds(), (Rect{5, 5, 60, 34}));
}

TEST(DisplayItemBounds, WhatIsNotSeenHasNone) {
  EXPECT_TRUE(fill({0, 0, 10, 10}, 0).bounds().isEmpty());
  EXPECT_TRUE(fill({0, 0, 0, 10}).bounds().isEmpty());
  const Rect frame{0, 0, 10, 10};
  EXPECT_EQ((DisplayItem{frame, 1, FillItem{Shape::rectangle(), Color::clear()}}).bounds(), Rect{});
  EXPECT_EQ((DisplayItem{frame, 1, TextItem{"", {}, Color::white()}}).bounds(), Rect{});
  EXPECT_EQ((DisplayItem{frame, 1, StrokeItem{Shape::circle(), 0, Color::white()}}).bounds(),
            Rect{});
  EXPECT_EQ((DisplayItem{frame, 1, FillItem{Shape::rectangle(), Material{}}}).bounds(), Rect{});
  EXPECT_EQ((DisplayItem{frame, 1, GroupBegin{}}).bounds(), Rect{});
}

TEST(DisplayListBounds, IsTheUnionOfAllThatIsDrawn) {
  EXPECT_EQ(boundsOf({fill({0, 0, 10, 10}), fill({20, 5, 10, 10}), fill({90, 90, 5, 5}, 0)}),
            (Rect{0, 0, 30, 15}));
  EXPECT_EQ(boundsOf({}), Rect{});
}

TEST(DisplayListBounds, AClipBoundsWhatIsWithinIt) {
  const DisplayItem outer{{0, 0, 20, 20}, 1, GroupBegin{1, Shape::rectangle()}};
  const DisplayItem inner{{10, 10, 50, 50}, 1, GroupBegin{1, Shape::circle()}};
  const DisplayItem end{{}, 1, GroupEnd{}};
  EXPECT_EQ(boundsOf({outer, inner, fill({0, 0, 100, 100}), end, end}), (Rect{10, 10, 10, 10}));
  EXPECT_EQ(boundsOf({outer, end, fill({30, 30, 5, 5})}), (Rect{30, 30, 5, 5}));
}

TEST(Describe, SaysEveryKindInOneLine) {
  const Font font{56, FontWeight::bold, FontDesign::rounded, true};
  const DisplayList list{
      {{0, 0, 100, 50}, 1, GroupBegin{0.82, Shape::roundedRectangle(8, true)}},
      {{0, 0, 100, 50}, 0.82, FillItem{Shape::rectangle(), Material{Color::black().opacity(0.3)}}},
      {{0, 0, 100, 50},
       0.82,
       FillItem{Shape::rectangle(),
                LinearGradient{{Color::srgb(0.68, 0.75, 1, 0.66), Color::red(), Color::white()}}}},
      {{0, 0, 100, 50}, 1, GroupEnd{}},
      {{1, 2, 30, 40.25}, 1, TextItem{"01:02", {font, true, 1}, Color::cyan(), 9, {1, 1, 1, 1, 1}}},
      {{0, -0.01, 5, 5}, 1, SymbolItem{"timer", {12}, Color::yellow()}},
      {{0, 0, 5, 5}, 1, StrokeItem{Shape::circle(), 2.2, Color::orange()}},
      {{0, 0, 5, 5}, 1, ShadowItem{Shape::capsule(), Color::black(), 22, {0, 12}}}};
  EXPECT_EQ(describe(list),
            "group (0.0 0.0 100.0 50.0) at 0.82 clip continuous 8\n"
            "  fill (0.0 0.0 100.0 50.0) rectangle, material black at 0.3, shown at 0.82\n"
            "  fill (0.0 0.0 100.0 50.0) rectangle, gradient [rgb 0.68 0.75 1 at 0.66] [red] "
            "[white], shown at 0.82\n"
            "end\n"
            "text (1.0 2.0 30.0 40.2) \"01:02\" 56 bold rounded digits, cyan, uppercase, lines 1, "
            "cells\n"
            "symbol (0.0 0.0 5.0 5.0) timer 12, yellow\n"
            "stroke (0.0 0.0 5.0 5.0) circle 2.2, orange\n"
            "shadow (0.0 0.0 5.0 5.0) capsule, black, radius 22, offset 0 12\n");
}

}  // namespace
}  // namespace orvane
