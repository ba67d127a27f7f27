#include <gtest/gtest.h>

#include <cmath>

#include "dashboard/empty_state_view.h"
#include "dashboard/eta_pill.h"
#include "dashboard/event_row.h"
#include "dashboard/glass_panel.h"
#include "dashboard/panel_header.h"
#include "dashboard/reminder_row.h"
#include "dashboard/source_pill.h"
#include "dashboard/time_rail.h"
#include "dashboard/visual_effect_view.h"
#include "fakes/cell_measurer.h"
#include "fakes/memory_app_service.h"
#include "fakes/memory_user_defaults.h"
#include "fakes/plain_locale.h"
#include "themes.h"
#include "view/layout.h"

namespace orvane {
namespace {

const Date now{1'795'167'660};  // 9:41 AM

class ComponentsTest : public testing::Test {
 protected:
  DashboardAppearance appearance = themed(DashboardThemeMode::dark);
  fakes::PlainLocale locale;

  template <class Component>
  DisplayList list(const Component& component, Size size = {320, 100}) {
    return layout(component.body({appearance, locale}), size, fakes::CellMeasurer()).list;
  }
  template <class Component>
  std::string dump(const Component& component, Size size = {320, 100}) {
    return describe(list(component, size));
  }
  static bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }
};

TEST_F(ComponentsTest, GlassPanelInTheDarkTheme) {
  const View content = text("x").font({10});
  EXPECT_EQ(dump(GlassPanel{content}, {300, 52}),
            "shadow (0.0 0.0 300.0 52.0) continuous 8, black at 0.18, radius 22, offset 0 12\n"
            "group (0.0 0.0 300.0 52.0) at 0.82 clip continuous 8\n"
            "  fill (0.0 0.0 300.0 52.0) rectangle, material rgb 0.04 0.04 0.06 at 0.96, shown at "
            "0.82\n"
            "  fill (0.0 0.0 300.0 52.0) rectangle, gradient [rgb 0.2392 0.3608 0.949 at 0.28] "
            "[black at 0.18] [white at 0.06], shown at 0.82\n"
            "end\n"
            "text (20.0 20.0 5.0 12.0) \"x\" 10, white\n"
            "stroke (0.0 0.0 300.0 52.0) continuous 8 1, white at 0.18\n");
}

TEST_F(ComponentsTest, GlassPanelInTheLightTheme) {
  appearance = themed(DashboardThemeMode::light);
  const std::string panel = dump(GlassPanel{text("x").font({10})}, {300, 52});
  EXPECT_TRUE(contains(panel, "shadow (0.0 0.0 300.0 52.0) continuous 8, black at 0.08, radius 22"))
      << panel;
  EXPECT_TRUE(contains(panel, "[white at 0.78] [rgb 0.2392 0.3608 0.949 at 0.13] [white at 0.52]"))
      << panel;
  EXPECT_TRUE(contains(panel, "continuous 8 1, rgb 0.08 0.1 0.16 at 0.12")) << panel;
}

TEST_F(ComponentsTest, GlassPanelGradientInVividBlue) {
  const auto settings = themed(DashboardThemeMode::vividBlue);
  const LinearGradient expected{{Color::srgb(0.68, 0.75, 1.0, 0.66), settings.primary.opacity(0.32),
                                 Color::white().opacity(0.10)}};
  EXPECT_EQ(GlassPanel::panelGradient(settings), expected);
}

TEST_F(ComponentsTest, AnUnparsablePrimaryColourFallsBackInEveryTheme) {
  fakes::MemoryUserDefaults defaults;
  fakes::MemoryAppService service;
  DashboardSettings settings(defaults, service);
  settings.primaryColorHex = std::string("nonsense");
  const Color fallback = Color::srgb(0.24, 0.36, 0.95);
  for (const auto theme : allDashboardThemeModes) {
    settings.themeMode = theme;
    const auto stops = GlassPanel::panelGradient(appearanceOf(settings)).stops;
    const bool isFirst = theme == DashboardThemeMode::dark;
    const double opacity = isFirst ? 0.28 : theme == DashboardThemeMode::vividBlue ? 0.32 : 0.13;
    EXPECT_EQ(stops.at(isFirst ? 0 : 1), fallback.opacity(opacity));
  }
}

TEST_F(ComponentsTest, GlassOfNoStrengthKeepsBorderAndShadow) {
  appearance.glassOpacity = 0;
  for (const auto& item : list(GlassPanel{text("x")})) {
    const bool isGlass = std::holds_alternative<FillItem>(item.content);
    EXPECT_EQ(item.opacity, isGlass ? 0 : 1) << describe(item);
    const bool isMarker = std::holds_alternative<GroupBegin>(item.content) ||
                          std::holds_alternative<GroupEnd>(item.content);
    EXPECT_EQ(item.bounds().isEmpty(), isGlass || isMarker) << describe(item);
  }
}

TEST_F(ComponentsTest, GlassStrengthBeyondItsRangeIsTakenForTheNearest) {
  appearance.glassOpacity = 1.7;
  EXPECT_TRUE(contains(dump(GlassPanel{text("x")}), "group (0.0 22.2 320.0 55.6) clip continuous"));
  appearance.glassOpacity = -3;
  EXPECT_TRUE(contains(dump(GlassPanel{text("x")}), "at 0 clip continuous 8"));
}

TEST_F(ComponentsTest, VisualEffectViewHasNoContentOfItsOwn) {
  EXPECT_EQ(list(VisualEffectView{}).size(), 1U);
  VisualEffectView inactive;
  inactive.state = NSVisualEffectState::inactive;
  EXPECT_EQ(list(inactive).size(), 0U);
}

TEST_F(ComponentsTest, PanelHeader) {
  EXPECT_EQ(dump(PanelHeader{"Today", 8}, {320, 24}),
            "text (0.0 0.0 50.0 24.0) \"Today\" 20 bold, white\n"
            "fill (288.0 3.6 32.0 16.8) capsule, white at 0.13\n"
            "text (300.5 3.6 7.0 16.8) \"8\" 14 bold, white at 0.86, lines 1\n");
}

TEST_F(ComponentsTest, PanelHeaderGroupsLargeCountsAndKeepsThemOffTheEnds) {
  const std::string header = dump(PanelHeader{"Today", 1234}, {320, 24});
  EXPECT_TRUE(contains(header, "\"1,234\"")) << header;
  EXPECT_TRUE(contains(header, "fill (273.0 3.6 47.0 16.8) capsule")) << header;
}

TEST_F(ComponentsTest, EventRow) {
  const EventRow row{{"1", "Review", "Work", "w", now + 3600, now + 7200, false}, now};
  EXPECT_EQ(dump(row, {320, 100}),
            "text (0.0 42.8 52.8 14.4) \"10:41 AM\" 12 bold digits, white at 0.78, lines 1\n"
            "fill (68.0 36.0 2.0 28.0) rounded 1, cyan at 0.55\n"
            "text (82.0 29.6 45.0 18.0) \"Review\" 15 semibold, white, lines 2\n"
            "fill (274.3 29.2 45.7 21.2) capsule, white at 0.12\n"
            "text (282.3 33.2 29.7 13.2) \"1h 0m\" 11 bold digits, yellow at 0.95, lines 1\n"
            "text (82.0 56.4 24.0 14.4) \"Work\" 12 semibold, white at 0.68, lines 2\n");
}

TEST_F(ComponentsTest, AnAllDayEventRowSaysSoAndHasNoPill) {
  const EventRow row{{"1", "Fair", "Work", "w", now + 3600, now + 7200, true}, now};
  const std::string dumped = dump(row);
  EXPECT_TRUE(contains(dumped, "\"All day\"")) << dumped;
  EXPECT_FALSE(contains(dumped, "capsule")) << dumped;
}

TEST_F(ComponentsTest, TitlesOfEventRowsLineUp) {
  const auto titleLeft = [&](Date start, bool isAllDay) {
    const EventRow row{{"1", "T", "Work", "w", start, start, isAllDay}, now};
    for (const auto& item : list(row)) {
      const auto* text = std::get_if<TextItem>(&item.content);
      if (text && text->text == "T") return item.frame.x;
    }
    return -1.0;
  };
  EXPECT_NEAR(titleLeft(now, false), 82, 0.05);
  EXPECT_NEAR(titleLeft(now + 3 * 3600, false), 82, 0.05);
  EXPECT_NEAR(titleLeft(now, true), 82, 0.05);
}

// Relative luminance, as WCAG 2.1 defines it.
double luminance(const SRGB& color) {
  const auto linear = [](double c) {
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

TEST_F(ComponentsTest, SystemColorsCanBeReadOnLightGlass) {
  const DashboardAppearance light = themed(DashboardThemeMode::light);
  const double glass = luminance({0.85, 0.86, 0.92, 1});
  for (const auto name :
       {SystemColor::red, SystemColor::orange, SystemColor::yellow, SystemColor::cyan}) {
    const Color shown = light.shown(Color::system(name, 0.95));
    EXPECT_EQ(shown.opacity(), 0.95);
    EXPECT_GE((glass + 0.05) / (luminance(shown.resolved()) + 0.05), 2.7);
  }
}

TEST_F(ComponentsTest, DarkThemesAndPlainColorsAreShownAsTheyAre) {
  EXPECT_EQ(appearance.shown(Color::yellow()), Color::yellow());
  EXPECT_EQ(themed(DashboardThemeMode::light).shown(lightThemeTextColor), lightThemeTextColor);
}

TEST_F(ComponentsTest, TimeRailShrinksALongTime) {
  const auto items = list(TimeRail{"12:45 in the afternoon", Color::cyan()});
  EXPECT_EQ(std::get<TextItem>(items.at(0).content).style.font.size, 9);
  EXPECT_EQ(items.at(1).frame.size(), (Size{2, 28}));
  EXPECT_EQ(describe(items.at(1)).substr(0, 4), "fill");
}

TEST_F(ComponentsTest, ReminderRow) {
  const ReminderRow row{{"1", "Call", "Home", "h", now + 90000, 5}, now};
  EXPECT_EQ(dump(row, {320, 100}),
            "stroke (0.0 32.2 15.0 15.0) circle 2.2, orange at 0.9\n"
            "text (27.0 29.6 30.0 18.0) \"Call\" 15 semibold, white, lines 2\n"
            "fill (274.3 29.2 45.7 21.2) capsule, white at 0.12\n"
            "text (282.3 33.2 29.7 13.2) \"1d 1h\" 11 bold digits, white, lines 1\n"
            "text (27.0 56.4 24.0 14.4) \"Home\" 12 semibold, white at 0.68, lines 2\n"
            "text (59.0 56.4 144.0 14.4) \"Nov 21, 2026 at 10:41 AM\" 12 semibold, white at 0.68, "
            "lines 2\n");
}

TEST_F(ComponentsTest, AReminderRowWithoutDueDateSaysSoAndHasNoPill) {
  const std::string dumped = dump(ReminderRow{{"1", "Call", "Home", "h", std::nullopt, 0}, now});
  EXPECT_TRUE(contains(dumped, "\"No due date\"")) << dumped;
  EXPECT_FALSE(contains(dumped, "capsule")) << dumped;
}

TEST_F(ComponentsTest, TheRingShowsThePriority) {
  const auto ring = [&](std::int64_t priority) {
    const auto items = list(ReminderRow{{"1", "Call", "Home", "h", std::nullopt, priority}, now});
    return std::get<StrokeItem>(items.at(0).content);
  };
  EXPECT_EQ(ring(5), (StrokeItem{Shape::circle(), 2.2, Color::orange().opacity(0.9)}));
  EXPECT_EQ(ring(0).color, Color::white().opacity(0.9).opacity(0.9));
}

TEST_F(ComponentsTest, ETAPill) {
  EXPECT_EQ(dump(ETAPill{now + 1500, now}, {40, 22}),
            "fill (2.6 0.4 34.7 21.2) capsule, white at 0.12\n"
            "text (10.6 4.4 18.7 13.2) \"25m\" 11 bold digits, orange at 0.98, lines 1\n");
}

TEST_F(ComponentsTest, SourcePills) {
  const std::string calendar = dump(SourcePill{DashboardDeadlineSource::calendar});
  EXPECT_TRUE(contains(calendar, ") calendar 11 bold, white at 0.82")) << calendar;
  EXPECT_TRUE(contains(calendar, "\"Calendar\" 11 bold, white at 0.82")) << calendar;
  const std::string reminder = dump(SourcePill{DashboardDeadlineSource::reminder});
  EXPECT_TRUE(contains(reminder, ") checklist 11 bold, white at 0.82")) << reminder;
  EXPECT_TRUE(contains(reminder, "\"Reminder\" 11 bold, white at 0.82")) << reminder;
}

TEST_F(ComponentsTest, EmptyState) {
  EXPECT_EQ(
      dump(EmptyStateView{"No events today", "Your calendar is clear.", "calendar"}, {320, 50.6}),
      "symbol (2.1 6.0 19.8 21.6) calendar 18 semibold, white at 0.68\n"
      "text (32.0 6.0 112.5 18.0) \"No events today\" 15 semibold, white at 0.9\n"
      "text (32.0 29.0 149.5 15.6) \"Your calendar is clear.\" 13 semibold, white at 0.68, "
      "lines 2\n");
}

}  // namespace
}  // namespace orvane
