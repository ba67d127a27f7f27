// Stands in for a disk or a server that does not answer: preloaded into a program, it lets nothing
// be written for good as long as there is the file that ORVANE_HANGING_DISK names.
#include <stdlib.h>
#include <sys/syscall.h>
#include <unistd.h>

int fsync(int descriptor) {
  const char* sign = getenv("ORVANE_HANGING_DISK");
  while (sign && access(sign, F_OK) == 0) pause();
  return (int)syscall(SYS_fsync, descriptor);
}
