#include "settings/settings_view.h"

#include <utility>

#include "dashboard/appearance.h"
#include "settings/color_hex.h"

namespace orvane {
namespace {

FormHeader header() {
  return {
      "calendar.badge.clock",
      {"Orvane", FormTextStyle::title, true},
      {"Ambient ETA wallpaper powered by Apple Calendar and Reminders.", FormTextStyle::callout}};
}

FormFooter footer() {
  return {
      {"Calendar and Reminder data stays local on this Mac.", FormTextStyle::callout, false, true},
      {"done", "Done", true, true, true}};
}

}  // namespace

std::shared_ptr<SettingsView> SettingsView::create(std::shared_ptr<DashboardSettings> settings,
                                                   std::shared_ptr<TaskManager> taskManager,
                                                   Environment environment) {
  std::shared_ptr<SettingsView> view(
      new SettingsView(std::move(settings), std::move(taskManager), environment));
  view->followChanges();
  return view;
}

SettingsView::SettingsView(std::shared_ptr<DashboardSettings> settings,
                           std::shared_ptr<TaskManager> taskManager, Environment environment)
    : settings_(std::move(settings)),
      taskManager_(std::move(taskManager)),
      environment_(environment),
      workingColor_(appearanceOf(*settings_).primary) {}

Form SettingsView::form() const {
  Form form{{760, 620}, 20, 16, 12, 16, header(), selectedTab_, {}, footer()};
  form.tabs = {sourcesTab(), displayTab(), smartNextTab(), styleTab()};
  return form;
}

// Two colours of one stored text are one colour, so that a picker which is finer than the store is
// not moved under the user's hand.
Color SettingsView::workingColor() const {
  const Color stored = appearanceOf(*settings_).primary;
  return hexFromColor(stored) == hexFromColor(workingColor_) ? workingColor_ : stored;
}

Subscription SettingsView::onChange(std::function<void()> observer) {
  return changed_.subscribe(std::move(observer));
}

void SettingsView::followChanges() {
  const auto announce = [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->announceLater();
  };
  cancellables_.push_back(settings_->objectWillChange().subscribe(announce));
  cancellables_.push_back(taskManager_->objectWillChange().subscribe(announce));
  cancellables_.push_back(environment_.notificationCenter.addObserver(
      NSApplicationDidChangeScreenParametersNotification, announce));
}

// An announcement comes before the change is in place, and seldom alone.
void SettingsView::announceLater() {
  if (std::exchange(announcementPending_, true)) return;
  environment_.mainActor.post([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    self->announcementPending_ = false;
    self->changed_.send();
  });
}

}  // namespace orvane
