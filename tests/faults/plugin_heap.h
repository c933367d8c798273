// The plugin's allocations, told from those of the host and the tests by who calls: counted, kept
// track of, and failing on demand.
//
// The plugin takes its memory from the C++ runtime, to which it is linked dynamically, so the
// operators that this program defines are the ones that it calls; the same goes for malloc and
// calloc, which a build with sanitizers leaves alone.
#ifndef ZRB_TESTS_FAULTS_PLUGIN_HEAP_H
#define ZRB_TESTS_FAULTS_PLUGIN_HEAP_H

#include <cstddef>

namespace faults::plugin_heap {

/// Attends to the plugin that contains this routine, from now on.
void attend_to(void* routine);

/// Blocks that the plugin allocated and nobody has freed.
std::size_t live_blocks();

/// Counts allocations from the next on, and lets the `nth` of them fail, once or with all that
/// follow; 0: none.
void fail_at(std::size_t nth, bool from_there_on);
/// Lets no more fail; how many allocations were asked for since `fail_at`.
std::size_t stop_failing();

}  // namespace faults::plugin_heap

#endif
