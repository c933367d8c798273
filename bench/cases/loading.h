// How long the plugin takes to load.
#ifndef ZRB_CASES_LOADING_H
#define ZRB_CASES_LOADING_H

#include <string>

/// Registers the benchmark `loading/plugin`: one operation, from opening the binary to the last
/// class registered. It must be the first in its process that touches the plugin.
void register_loading(const std::string& plugin);

#endif
