#include "diagnosis/findings.h"

#include <string>

#include "host/binary_interface.h"
#include "host/errors.h"

namespace diagnosis {
namespace {

void raise(Call call, const std::string& finding) {
  const std::string message = std::string(call.class_name) + "." + call.operation + ": " + finding;
  RaiseException("RuntimeException", message.c_str(), host_encoding::ascii);
}

const char* reason(Loss loss) {
  switch (loss) {
    case Loss::none:
      break;
    case Loss::element_removed:
      return "its element was removed. To remove while walking, step on first.";
    case Loss::container_cleared:
      return "its container was cleared. Ask the container for a new iterator.";
    case Loss::content_replaced:
      return "its container was constructed again, assigned or converted. Ask the container for a "
             "new iterator.";
    case Loss::container_destroyed:
      return "its container is gone. Keep the container as long as its iterators.";
  }
  return "";
}

}  // namespace

void raise_stale(Call call, Loss loss) {
  raise(call, std::string("the iterator is stale: ") + reason(loss));
}

void raise_other_container(Call call) {
  raise(call,
        "the iterator belongs to another container. Ask the container that is to be changed for "
        "one.");
}

void raise_different_containers(Call call) {
  raise(call,
        "the iterators belong to two different containers. Compare iterators of one container "
        "alone.");
}

void raise_step_past_the_end(Call call) {
  raise(call,
        "the iterator is at the end, there is nothing behind it. Compare it with last before each "
        "step.");
}

void raise_step_before_the_first(Call call) {
  raise(call,
        "the iterator is at the first element, there is nothing before it. Compare it with first "
        "before each step.");
}

void raise_nothing_to_read(Call call) {
  raise(call,
        "the iterator is at the end, there is no element. Compare it with last before; find gives "
        "last for an absent key.");
}

void raise_nothing_to_remove(Call call) {
  raise(call,
        "the iterator is at the end, there is no element to remove. Compare it with last before; "
        "find gives last for an absent key.");
}

}  // namespace diagnosis
