// Shared libraries as files, looked at before the loader maps them.
#ifndef ZRB_STANDIN_RUNTIME_LIBRARY_FILE_H
#define ZRB_STANDIN_RUNTIME_LIBRARY_FILE_H

#include <string>

namespace standin {

// Whether a library of this program's word size ends before what its header promises. The loader
// does not check that: it would be stopped by a signal when it touches what is missing. False for
// every other file, about which the loader itself can tell.
bool is_cut_short(const std::string& path);

}  // namespace standin

#endif
