#include "dashboard/wallpaper_dashboard_view.h"

#include <cmath>
#include <utility>

#include "agenda/next_deadline.h"
#include "dashboard/board_metrics.h"
#include "dashboard/date_card.h"
#include "dashboard/events_card.h"
#include "dashboard/reminders_card.h"
#include "dashboard/today.h"
#include "view/text_measurer.h"

namespace orvane {
namespace {

View column(const char* name, double width, std::vector<View> cards) {
  return vstack({HorizontalAlignment::leading, cardSpacing}, std::move(cards))
      .frame(width, std::nullopt, Alignment::topLeading())
      .named(name);
}

}  // namespace

WallpaperDashboardView::WallpaperDashboardView(std::shared_ptr<TaskManager> taskManager,
                                               std::shared_ptr<DashboardSettings> settings,
                                               DashboardEnvironment environment)
    : taskManager_(std::move(taskManager)),
      settings_(std::move(settings)),
      environment_(std::move(environment)),
      countingChanges_(onWillChange([this] { ++changes_; })) {}

Subscription WallpaperDashboardView::onWillChange(std::function<void()> observer) {
  using Both = std::pair<Subscription, Subscription>;
  auto both = std::make_shared<Both>(taskManager_->objectWillChange().subscribe(observer),
                                     settings_->objectWillChange().subscribe(observer));
  return Subscription([both]() mutable { both.reset(); });
}

// The window itself has no fill: all that is seen of it are the cards.
View WallpaperDashboardView::body(Date now, Size size) {
  return zstack(Alignment::center(),
                {filled(Shape::rectangle(), Color::clear()), dashboard(now, size)})
      .frame(size.width, size.height, Alignment::topLeading());
}

View WallpaperDashboardView::dashboard(Date now, Size size) {
  const auto appearance = appearanceOf(*settings_);
  const CardEnvironment environment{appearance, environment_.locale};
  const auto [left, right] = columnWidths(size.width);
  // In focus mode the right column is only made invisible, so that the left one stays where it is.
  const bool isFocused = settings_->focusMode.get();
  return hstack({VerticalAlignment::top, cardSpacing},
                {leftColumn(now, left, environment),
                 rightColumn(now, right, environment).opacity(isFocused ? 0 : 1)})
      .padding(isFocused ? focusInset : 0)
      .frame({.maxWidth = unlimitedWidth,
              .maxHeight = unlimitedWidth,
              .alignment = Alignment::topLeading()})
      .padding(boardPadding(size));
}

std::optional<DashboardDeadline> WallpaperDashboardView::currentNextDeadline(Date now) const {
  return findNextDeadline(taskManager_->events.get(), taskManager_->reminders.get(), *settings_,
                          environment_.locale, now);
}

View WallpaperDashboardView::leftColumn(Date now, double width,
                                        const CardEnvironment& environment) {
  return column("leftColumn", width, {dateCard(now, environment), nextUpCard(now, environment)});
}

View WallpaperDashboardView::rightColumn(Date now, double width,
                                         const CardEnvironment& environment) {
  return column("rightColumn", width,
                {eventsCard(now, environment), remindersCard(now, environment)});
}

View WallpaperDashboardView::dateCard(Date now, const CardEnvironment& environment) {
  return dateCard_.at(stateAt(now), now, environment.appearance, [&] {
    const DateCard card{taskManager_->lastRefreshDate.get()};
    return std::pair(card.body(environment_.clock(), environment), std::vector<Date>{});
  });
}

View WallpaperDashboardView::nextUpCard(Date now, const CardEnvironment& environment) {
  return nextUpCard_.at(stateAt(now), now, environment, [&] { return currentNextDeadline(now); });
}

View WallpaperDashboardView::eventsCard(Date now, const CardEnvironment& environment) {
  return eventsCard_.at(stateAt(now), now, environment.appearance, [&] {
    auto events = eventsByDay(taskManager_->events.get(), now, environment_.calendar);
    const EventsCard card{"Today", std::move(events.today), std::move(events.later),
                          taskManager_->calendarAuthorizationState.get(), now};
    return std::pair(card.body(environment), card.countdownDates());
  });
}

View WallpaperDashboardView::remindersCard(Date now, const CardEnvironment& environment) {
  return remindersCard_.at(stateAt(now), now, environment.appearance, [&] {
    const RemindersCard card{taskManager_->reminders.get(),
                             taskManager_->reminderAuthorizationState.get(), now};
    return std::pair(card.body(environment), card.countdownDates());
  });
}

BoardState WallpaperDashboardView::stateAt(Date now) const {
  return {changes_, std::floor(now.secondsSince1970 / 60)};
}

}  // namespace orvane
