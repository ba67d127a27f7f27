// agenda/ keeps the user's day: plain records of events and reminders, the rule that picks the next
// deadline among them, and the task manager that fetches them from the calendar store and keeps
// them current.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/date.h"
#include "platform/ek_event_store.h"

namespace orvane {

// One calendar event as shown. Rows of a list are told apart by `id`.
struct DashboardEvent {
  std::string id;
  std::string title;
  std::string calendarTitle;
  std::string calendarIdentifier;
  Date startDate;
  Date endDate;
  bool isAllDay = false;

  friend bool operator==(const DashboardEvent&, const DashboardEvent&) = default;
};

// One open reminder as shown. Rows of a list are told apart by `id`.
struct DashboardReminder {
  std::string id;
  std::string title;
  std::string calendarTitle;
  std::string calendarIdentifier;
  std::optional<Date> dueDate;
  std::int64_t priority = 0;

  friend bool operator==(const DashboardReminder&, const DashboardReminder&) = default;
};

enum class DashboardDeadlineSource : std::uint8_t { calendar, reminder };

[[nodiscard]] constexpr std::string_view rawValue(DashboardDeadlineSource source) {
  return source == DashboardDeadlineSource::calendar ? "calendar" : "reminder";
}

// Exact comparison; nothing for any other text.
[[nodiscard]] constexpr std::optional<DashboardDeadlineSource> deadlineSourceFromRawValue(
    std::string_view text) {
  for (const auto source : {DashboardDeadlineSource::calendar, DashboardDeadlineSource::reminder}) {
    if (rawValue(source) == text) return source;
  }
  return std::nullopt;
}

// What the countdown points at. The `id` is that of the event or reminder behind "event-" or
// "reminder-", so that the two kinds never share one.
struct DashboardDeadline {
  std::string id;
  std::string title;
  std::string subtitle;  // the title of the calendar or list
  Date date;
  DashboardDeadlineSource source = DashboardDeadlineSource::calendar;

  friend bool operator==(const DashboardDeadline&, const DashboardDeadline&) = default;
};

// A calendar or reminder list that the user may select.
struct EventKitSourceOption {
  std::string id;  // the calendar's identifier, as it stands in the selection
  std::string title;
  EKEntityType type = EKEntityType::event;

  friend bool operator==(const EventKitSourceOption&, const EventKitSourceOption&) = default;
};

// Whether one kind of calendar items may be read; a refusal carries a sentence for the user.
class EventKitAuthorizationState {
 public:
  enum class Kind : std::uint8_t { denied, unknown, authorized };

  static EventKitAuthorizationState denied(std::string message) {
    return {Kind::denied, std::move(message)};
  }
  static EventKitAuthorizationState unknown() { return {Kind::unknown, {}}; }
  static EventKitAuthorizationState authorized() { return {Kind::authorized, {}}; }

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] bool isAuthorized() const { return kind_ == Kind::authorized; }
  // Empty unless denied.
  [[nodiscard]] const std::string& message() const { return message_; }

  friend bool operator==(const EventKitAuthorizationState&,
                         const EventKitAuthorizationState&) = default;

 private:
  EventKitAuthorizationState(Kind kind, std::string message)
      : kind_(kind), message_(std::move(message)) {}

  Kind kind_;
  std::string message_;
};

}  // namespace orvane
