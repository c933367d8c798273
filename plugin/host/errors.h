// Every failure that the plugin reports, as an exception in the host's language.
//
// Raising does not unwind our own code: control comes back, and the routine then cleans up and
// returns the neutral value of its result.
#ifndef ZRB_PLUGIN_HOST_ERRORS_H
#define ZRB_PLUGIN_HOST_ERRORS_H

#include <cstdint>

/// Raises an instance of the host's exception class `className`, or of "RuntimeException" where the
/// host has no such class; raises nothing where it lacks both. `message` is text in the given host
/// encoding and may be null; an empty one leaves the exception without a message.
[[gnu::cold]] void RaiseException(const char* className, const char* message,
                                  std::uint32_t encoding);

// One function a failure. Sets and maps word theirs differently, and so do their iterators.
[[gnu::cold]] void raise_set_not_initialized();
[[gnu::cold]] void raise_map_not_initialized();
[[gnu::cold]] void raise_other_map_is_nil();
[[gnu::cold]] void raise_array_is_nil();
[[gnu::cold]] void raise_values_array_is_nil();
[[gnu::cold]] void raise_iterator_is_nil();           // set iterators
[[gnu::cold]] void raise_iterator_not_initialized();  // map iterators
[[gnu::cold]] void raise_other_iterator_is_nil();
[[gnu::cold]] void raise_key_not_found();

#endif
