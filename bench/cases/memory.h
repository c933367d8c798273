// What the process holds.
#ifndef ZRB_CASES_MEMORY_H
#define ZRB_CASES_MEMORY_H

/// Bytes in blocks of the heap, with what the allocator adds to each, and the resident bytes of
/// regions that a library reserved for a heap of its own.
double heap_bytes();

/// Bytes of the process that are in memory.
double resident_bytes();

#endif
