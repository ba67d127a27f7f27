#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "linux/locale/calendar.h"
#include "linux/locale/locale.h"
#include "linux/mainloop/main_loop.h"
#include "linux/mainloop/periodic_schedule.h"
#include "linux/paint/fonts.h"
#include "linux/paint/painter.h"
#include "linux/paint/text_measurer.h"

// main.cpp and the files whose names begin like it are the composition of the program: the only
// ones that name adapters.
namespace orvane {

inline constexpr int kSuccess = 0;

// Nothing for one that is empty, too.
[[nodiscard]] std::optional<std::string> environmentVariable(const std::string& name);

// Of the program itself; empty where the system does not tell.
[[nodiscard]] std::filesystem::path programPath();

// What stands from the first line to the last. What workers and suspended work may still use stands
// before the loop, so that it ends after.
struct Base {
  // First of all, since the fonts' configuration is read in the background from here on.
  const std::shared_ptr<host::Typesetter> typesetter = host::makeTypesetter();
  const std::unique_ptr<host::SystemCalendar> calendar = host::makeCalendar();
  const std::unique_ptr<host::SystemLocale> locale = host::makeLocale();
  const std::unique_ptr<host::MainLoop> loop = host::makeMainLoop();

  [[nodiscard]] std::function<void()> quitting() const {
    return [&loop = *loop] { loop.quit(kSuccess); };
  }
};

// By what the board is drawn, and when.
struct Drawing {
  explicit Drawing(const Base& base)
      : measurer(host::makeTextMeasurer(base.typesetter)),
        painter(host::makePainter(base.typesetter)) {}

  const std::unique_ptr<PeriodicSchedule> schedule = host::makePeriodicSchedule();
  const std::unique_ptr<TextMeasurer> measurer;
  const std::unique_ptr<Painter> painter;
};

}  // namespace orvane
