// The two routines that the plugin exports; nothing else of it is visible.
#ifndef ZRB_PLUGIN_HOST_EXPORT_H
#define ZRB_PLUGIN_HOST_EXPORT_H

#include "host/binary_interface.h"

#ifdef _WIN32
#define ZRB_EXPORT __declspec(dllexport)
#else
#define ZRB_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

/// Called by the host once, first of all: keeps the resolver, tells the host which plugin interface
/// we speak, reads the host's version and registers the classes. Returns what `PluginEntry` does.
ZRB_EXPORT std::int32_t REALPluginMain(HostResolver resolver);

/// Registers the thirty-six classes with the host, each container before its iterator. Returns 0.
ZRB_EXPORT std::int32_t PluginEntry();
}

#endif
