#pragma once

#include <cstddef>

namespace orvane::host {

// Has the allocator give memory back to the system that a burst of work leaves behind, and share
// one heap among all threads: the program idles for hours between bursts, and workers run too
// rarely to be worth heaps of their own. To be called once, before anything else. Without effect
// where the C library's allocator cannot be told so.
void giveMemoryBackEarly();

// The pages of libraries that a start touches and nobody needs again; what is needed after all
// comes back from the file when it is used. Those are ICU's, of which a start reads much with what
// lies around, and all of libraries that are loaded while the program runs: what the desktop's
// services need is at work for a moment, and then when something has changed.
class StartPages {
 public:
  // Libraries that are loaded from here on were not there from the start.
  StartPages();
  // To be called some time after a start, of the program or of a library. Without effect where
  // there are no such libraries.
  void letGo() const;

 private:
  std::size_t libraries_;
};

}  // namespace orvane::host
