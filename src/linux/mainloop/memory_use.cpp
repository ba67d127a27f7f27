#include "linux/mainloop/memory_use.h"

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <string_view>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace orvane::host {
namespace {

// Pages that nobody can have written to are what is in the file.
bool isOnlyRead(const ElfW(Phdr) & segment) {
  return segment.p_type == PT_LOAD && (segment.p_flags & PF_W) == 0;
}

// The pages that lie wholly within the segment. They are looked up at random later, so the kernel
// need not bring their neighbours along.
void letGo(std::uintptr_t begin, std::size_t size) {
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto first = (begin + page - 1) / page * page;
  const auto last = (begin + size) / page * page;
  if (first >= last) return;
  auto* const start = reinterpret_cast<void*>(first);
  madvise(start, last - first, MADV_RANDOM);
  madvise(start, last - first, MADV_DONTNEED);
}

bool isOfICU(const dl_phdr_info& library) {
  return std::string_view(library.dlpi_name).find("/libicu") != std::string_view::npos;
}

void letGoOf(const dl_phdr_info& library) {
  for (int index = 0; index < library.dlpi_phnum; ++index) {
    const auto& segment = library.dlpi_phdr[index];
    if (isOnlyRead(segment)) letGo(library.dlpi_addr + segment.p_vaddr, segment.p_memsz);
  }
}

// Calls `use` for each, in the order in which they were loaded.
template <class Use>
void forEachLibrary(Use use) {
  const auto call = [](dl_phdr_info* library, std::size_t, void* it) {
    (*static_cast<Use*>(it))(*library);
    return 0;
  };
  dl_iterate_phdr(call, &use);
}

}  // namespace

StartPages::StartPages() : libraries_(0) {
  forEachLibrary([this](const dl_phdr_info&) { ++libraries_; });
}

void StartPages::letGo() const {
  forEachLibrary([this, number = std::size_t{0}](const dl_phdr_info& library) mutable {
    if (number++ >= libraries_ || isOfICU(library)) letGoOf(library);
  });
}

void giveMemoryBackEarly() {
#ifdef __GLIBC__
  constexpr int largestRemainder = 64 * 1024;  // bytes
  mallopt(M_ARENA_MAX, 1);
  mallopt(M_TRIM_THRESHOLD, largestRemainder);
  mallopt(M_MMAP_THRESHOLD, largestRemainder);
#endif
}

}  // namespace orvane::host
