#include "linux/evolution/calendar_view.h"

#include <string>
#include <utility>

#include "linux/gio/handles.h"

namespace orvane::host {

CalendarView::Handle CalendarView::ask(ECalClient* client, const std::string& query,
                                       GCancellable* cancellable) {
  gio::Failure failure;
  ECalClientView* made = nullptr;
  if (!e_cal_client_get_view_sync(client, query.c_str(), &made, cancellable, failure.out())) {
    return nullptr;
  }
  return {made, gio::ReleaseObject()};
}

bool CalendarView::begin(ECalClientView* handle) {
  // The service always adds what tells items apart. That it sends what is there already cannot be
  // done without: it would not report the end of what it never sent.
  std::string uid = "UID";
  GSList fields{uid.data(), nullptr};
  gio::Failure failure;
  e_cal_client_view_set_fields_of_interest(handle, &fields, failure.out());
  if (!failure) e_cal_client_view_start(handle, failure.out());
  return !failure;
}

CalendarView::CalendarView(const Handle& handle) : handlers_(handle.get()) {
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
