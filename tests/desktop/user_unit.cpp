// Loaded into Mutter before all else: lets it believe that the user's systemd started it, as it
// does in a real session. Only then does it start Xwayland when the first program asks for it.
#include <sys/types.h>

#include <cstring>

extern "C" __attribute__((visibility("default"))) int sd_pid_get_user_unit(pid_t, char** unit) {
  *unit = strdup("org.gnome.Shell@wayland.service");
  return *unit != nullptr ? 0 : -1;
}
