// Host arrays of keys and values.
#ifndef ZRB_TESTS_SUPPORT_HOST_ARRAYS_H
#define ZRB_TESTS_SUPPORT_HOST_ARRAYS_H

#include <string>
#include <vector>

#include "runtime/handles.h"
#include "support/elements.h"

namespace support {

/// A host array that holds these elements, each with a lock of the array's own.
standin::ArrayRef host_array(ElementType type, const std::vector<Element>& elements);

/// What the array holds, each with a lock of its own.
std::vector<Element> elements_of(ElementType type, REALarray array);
std::vector<std::string> described(ElementType type, REALarray array);

void set_element(REALarray array, int index, const Element& element);

}  // namespace support

#endif
