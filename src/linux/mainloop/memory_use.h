#pragma once

namespace orvane::host {

// Has the allocator give memory back to the system that a burst of work leaves behind, and share
// one heap among all threads: the program idles for hours between bursts, and workers run too
// rarely to be worth heaps of their own. To be called once, before anything else. Without effect
// where the C library's allocator cannot be told so.
void giveMemoryBackEarly();

}  // namespace orvane::host
