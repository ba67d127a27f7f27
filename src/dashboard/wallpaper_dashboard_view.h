#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "agenda/records.h"
#include "agenda/task_manager.h"
#include "dashboard/card_environment.h"
#include "dashboard/remembered_card.h"
#include "dashboard/remembered_next_up.h"
#include "settings/dashboard_settings.h"
#include "view/root_view.h"

namespace orvane {

// The whole board in a window: the date and the next deadline in a left column, today's events and
// the reminders in a right one, in the window's top-left corner.
class WallpaperDashboardView final : public RootView {
 public:
  WallpaperDashboardView(std::shared_ptr<TaskManager> taskManager,
                         std::shared_ptr<DashboardSettings> settings,
                         DashboardEnvironment environment);

  View body(Date now, Size size) override;
  Subscription onWillChange(std::function<void()> observer) override;

  // The columns in their place in a window of this size.
  [[nodiscard]] View dashboard(Date now, Size size);
  // Chosen anew at each instant among what is published, so that the countdown moves on when a
  // deadline passes.
  [[nodiscard]] std::optional<DashboardDeadline> currentNextDeadline(Date now) const;

 private:
  View leftColumn(Date now, double width, const CardEnvironment& environment);
  View rightColumn(Date now, double width, const CardEnvironment& environment);
  View dateCard(Date now, const CardEnvironment& environment);
  View nextUpCard(Date now, const CardEnvironment& environment);
  View eventsCard(Date now, const CardEnvironment& environment);
  View remindersCard(Date now, const CardEnvironment& environment);
  [[nodiscard]] BoardState stateAt(Date now) const;

  const std::shared_ptr<TaskManager> taskManager_;
  const std::shared_ptr<DashboardSettings> settings_;
  const DashboardEnvironment environment_;
  std::uint64_t changes_ = 0;
  RememberedCard dateCard_;
  RememberedNextUp nextUpCard_;
  RememberedCard eventsCard_;
  RememberedCard remindersCard_;
  Subscription countingChanges_;
};

}  // namespace orvane
