#pragma once

#include <functional>

namespace orvane::host {

enum class SourcePriority { urgent, normal };

// Calls `readable` from the default main context whenever the descriptor can be read, until it is
// destroyed, which may happen inside the call. The descriptor stays the caller's and must outlive
// the source. Main thread only.
class FdSource {
 public:
  FdSource(int descriptor, SourcePriority priority, std::function<void()> readable);
  FdSource(const FdSource&) = delete;
  FdSource& operator=(const FdSource&) = delete;
  ~FdSource();

 private:
  unsigned id_;
};

}  // namespace orvane::host
