#include "app/main_start.h"

#include <cstdlib>

#include "app/main_base.h"

namespace orvane {
namespace {

std::string taken(const char* variable) {
  auto value = environmentVariable(variable).value_or("");
  ::unsetenv(variable);
  return value;
}

}  // namespace

StartMarks takeStartMarks() {
  StartMarks marks;
  marks.isByBus = !taken("DBUS_STARTER_ADDRESS").empty();
  (void)taken("DBUS_STARTER_BUS_TYPE");
  marks.isWithSession = taken("ORVANE_START") == "login";
  marks.activationToken = taken("XDG_ACTIVATION_TOKEN");
  const auto startupId = taken("DESKTOP_STARTUP_ID");
  if (marks.activationToken.empty()) marks.activationToken = startupId;
  return marks;
}

}  // namespace orvane
