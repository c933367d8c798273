// What the host told at start.
#ifndef ZRB_PLUGIN_HOST_START_H
#define ZRB_PLUGIN_HOST_START_H

/// The host's version, e.g. 2012.1; 0 when it told none.
double host_version();

#endif
