// The host of the process. The plugin is loaded into it once, since that takes longer than what
// most inputs do.
#ifndef ZRB_FUZZ_LOADED_HOST_H
#define ZRB_FUZZ_LOADED_HOST_H

#include "runtime/host.h"

namespace fuzz {

/// With the plugin loaded; made at the first call. Later calls disregard the options.
standin::Host& loaded_host(const standin::HostOptions& options = {});

/// Lets it go, so that there can be another.
void end_loaded_host();

}  // namespace fuzz

#endif
