#include "linux/evolution/calendar_view.h"

#include <string>
#include <utility>

namespace orvane::host {

std::unique_ptr<CalendarView> CalendarView::start(ECalClient* client, const std::string& query,
                                                  GCancellable* cancellable) {
  gio::Failure failure;
  ECalClientView* made = nullptr;
  if (!e_cal_client_get_view_sync(client, query.c_str(), &made, cancellable, failure.out())) {
    return nullptr;
  }
  std::unique_ptr<CalendarView> view(new CalendarView(gio::ObjectPtr<ECalClientView>(made)));
  // The service always adds what tells items apart. That it sends what is there already cannot be
  // done without: it would not report the end of what it never sent.
  std::string uid = "UID";
  GSList fields{uid.data(), nullptr};
  e_cal_client_view_set_fields_of_interest(made, &fields, failure.out());
  if (!failure) e_cal_client_view_start(made, failure.out());
  return failure ? nullptr : std::move(view);
}

CalendarView::CalendarView(gio::ObjectPtr<ECalClientView> view)
    : view_(std::move(view)), handlers_(view_.get()) {
  handlers_.add("complete", [this] { hearComplete(); });
  for (const char* signal : {"objects-added", "objects-modified", "objects-removed"}) {
    handlers_.add(signal, [this] { hearChange(); });
  }
}

void CalendarView::hearComplete() {
  if (std::exchange(isComplete_, true)) return;
  const auto complete = signs_.complete;
  if (complete) complete();
}

void CalendarView::hearChange() {
  const auto changed = signs_.changed;
  if (isComplete_ && changed) changed();
}

}  // namespace orvane::host
