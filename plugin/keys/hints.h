// What a compiler or processor cannot know by itself. Nothing here changes what a program does.
#ifndef ZRB_PLUGIN_KEYS_HINTS_H
#define ZRB_PLUGIN_KEYS_HINTS_H

/// Tells the compiler that a condition is as often true as false: better to compute both outcomes
/// and choose than to branch.
inline bool unpredictable(bool condition) {
#if defined(__GNUC__)
  return __builtin_expect_with_probability(condition, 1, 0.5) != 0;
#else
  return condition;
#endif
}

/// For functions that only prefetch: gcc takes a call of one for a call without effect, and drops
/// it before it is inlined.
#if defined(__GNUC__)
#define ZRB_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define ZRB_ALWAYS_INLINE inline
#endif

/// Asks the processor to load what lies at `address`, which is about to be used. Any address will
/// do.
ZRB_ALWAYS_INLINE void prefetch(const void* address) {
#if defined(__GNUC__)
  __builtin_prefetch(address);
#else
  static_cast<void>(address);
#endif
}

#endif
