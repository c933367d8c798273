// Random sequences: a container grows, lives for a while, and shrinks, again and again.
#ifndef ZRB_TESTS_MODEL_GENERATOR_H
#define ZRB_TESTS_MODEL_GENERATOR_H

#include "model/choices.h"
#include "model/steps.h"

namespace model {

struct Size {
  int key_count;  // how many different keys there are
  int steps;
  int largest_many;  // how many keys come or go in one step
};

/// The same sequence for the same arguments, everywhere. About
/// every third seed may abandon storage.
Sequence generate(const support::ContainerClass& container_class, unsigned seed, Size size);

/// As many steps as the size says, or as there are choices for.
Sequence generate(const support::ContainerClass& container_class, Scheme scheme, Choices& choices,
                  Size size);

}  // namespace model

#endif
