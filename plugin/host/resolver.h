// The host's resolver, through which every service of the host is found by name.
#ifndef ZRB_PLUGIN_HOST_RESOLVER_H
#define ZRB_PLUGIN_HOST_RESOLVER_H

#include "host/binary_interface.h"

/// Stores the resolver that the host handed over at start; it is never changed afterwards.
void keep_resolver(HostResolver resolver);

/// The host's entry point of this name, or null when the host has none (or has not started us yet).
void* find_entry_point(const char* name);

#endif
