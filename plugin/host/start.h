// What the host told at start.
#ifndef ZRB_PLUGIN_HOST_START_H
#define ZRB_PLUGIN_HOST_START_H

/// Whether the host told a version before 2012: it gives a string's text by converting the string,
/// not by a record of its data. A host that told no version is taken for a newer one.
[[gnu::visibility("hidden")]] extern bool host_gives_no_string_data;

#endif
