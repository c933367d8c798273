// What a compiler or processor cannot know by itself. Nothing here changes what a program does.
#ifndef ZRB_PLUGIN_KEYS_HINTS_H
#define ZRB_PLUGIN_KEYS_HINTS_H

#include <type_traits>

/// For functions that take no longer than their call; and for those that only prefetch: gcc takes a
/// call of one for a call without effect, and drops it before it is inlined. Without optimisation
/// there is no such call to lose, and one copy of the function can be stepped through and counted.
#if defined(__GNUC__) && defined(__OPTIMIZE__)
#define ZRB_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define ZRB_ALWAYS_INLINE inline
#endif

/// Tells the compiler that a condition is as often true as false: better to compute both outcomes
/// and choose than to branch.
ZRB_ALWAYS_INLINE bool unpredictable(bool condition) {
#if defined(__GNUC__)
  return __builtin_expect_with_probability(condition, 1, 0.5) != 0;
#else
  return condition;
#endif
}

/// The same value, of which the compiler knows nothing from here on: what it could conclude from a
/// choice would make a branch of it again.
template <class Value>
ZRB_ALWAYS_INLINE Value opaque(Value value) {
#if defined(__GNUC__)
  asm("" : "+r"(value));
#endif
  return value;
}

/// `condition ? yes : no` without a branch.
template <class Value>
ZRB_ALWAYS_INLINE Value choose(bool condition, Value yes, Value no) {
  return opaque(unpredictable(condition) ? yes : no);
}

/// For functions in which a search spends its time, such as a short loop: begins them with a line
/// of the cache.
#if defined(__GNUC__)
#define ZRB_CODE_LINE [[gnu::noinline, gnu::aligned(64)]]
#else
#define ZRB_CODE_LINE
#endif

/// For functions with an array on the stack that is not one of characters: puts a canary behind it.
#if defined(__has_cpp_attribute)
#if __has_cpp_attribute(gnu::stack_protect)
#define ZRB_PROTECT_STACK [[gnu::stack_protect]]
#endif
#endif
#if !defined(ZRB_PROTECT_STACK)
#define ZRB_PROTECT_STACK
#endif

/// Asks the processor to load what lies at `address`, which is about to be used. Any address will
/// do.
ZRB_ALWAYS_INLINE void prefetch(const void* address) noexcept {
#if defined(__GNUC__)
  __builtin_prefetch(address);
#else
  static_cast<void>(address);
#endif
}

/// The same for what an element or a host value refers to: an object or a string of the host, which
/// the host is about to touch. Nothing for an integer.
template <class Held>
ZRB_ALWAYS_INLINE void prefetch_held(const Held& held) noexcept {
  if constexpr (std::is_pointer_v<Held>) {
    prefetch(held);
  } else if constexpr (requires { held.get(); }) {
    prefetch(held.get());
  }
}

/// The same for what key and value of an entry refer to.
template <class Entry>
ZRB_ALWAYS_INLINE void prefetch_content(const Entry& entry) noexcept {
  prefetch_held(entry.key);
  if constexpr (requires { entry.value; }) prefetch_held(entry.value);
}

#endif
