// Memory that is used all over, in pages as large as the system has.
#ifndef ZRB_PLUGIN_KEYS_LARGE_PAGES_H
#define ZRB_PLUGIN_KEYS_LARGE_PAGES_H

#include <cstddef>

/// Asks the system to back memory that nobody has used yet by large pages, where whole ones lie in
/// it: so the processor needs fewer table entries to find an address far from the last one. Takes
/// no more memory, and does nothing on a system without such pages. `bytes`: at least 4 MiB, so
/// that there is a whole one.
void prefer_large_pages(void* memory, std::size_t bytes) noexcept;

#endif
