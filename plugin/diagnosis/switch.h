// The one switch of the diagnostic build.
//
// That is the same plugin, in a file of its own, which keeps a book of every iterator and raises an
// exception where a program uses one wrongly. Whatever serves it alone is behind `enabled`, so that
// nothing of it is left in the plugin that programs are shipped with.
#ifndef ZRB_PLUGIN_DIAGNOSIS_SWITCH_H
#define ZRB_PLUGIN_DIAGNOSIS_SWITCH_H

namespace diagnosis {

#ifdef ZRB_DIAGNOSE
inline constexpr bool enabled = true;
#else
inline constexpr bool enabled = false;
#endif

}  // namespace diagnosis

#endif
