#pragma once

namespace orvane::host {

// Has the allocator give memory back to the system that a burst of work leaves behind, and share
// one heap among all threads: the program idles for hours between bursts, and workers run too
// rarely to be worth heaps of their own. To be called once, before anything else. Without effect
// where the C library's allocator cannot be told so.
void giveMemoryBackEarly();

// Lets go of the pages of ICU's libraries that the start has touched: it reads much of them, with
// what lies around, that is not needed again, and what is needed comes back from the file when it
// is used. To be called some time after the start. Without effect where there are no such
// libraries.
void letGoOfStartPages();

}  // namespace orvane::host
