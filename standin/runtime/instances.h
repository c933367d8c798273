// The life of instances: the runtime's inner side of classes.
#ifndef ZRB_STANDIN_RUNTIME_INSTANCES_H
#define ZRB_STANDIN_RUNTIME_INSTANCES_H

#include <string>

#include "runtime/handles.h"

namespace standin {

// Runs the destructors of an instance whose last lock went, from its class up, and looks whether
// anyone wrote where they should not. The block remains. The description is for the ledger.
void end_instance(REALobject instance, const std::string& description) noexcept;

// Unlocks an array's elements and frees their vector.
void release_elements(REALarray array);

}  // namespace standin

#endif
