// What a step came to: enough to write it as a line of a program, and what should come of it.
#ifndef ZRB_TESTS_MODEL_PERFORMED_H
#define ZRB_TESTS_MODEL_PERFORMED_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "model/objects.h"
#include "model/steps.h"

namespace model {

/// A key or value as it was given, apart from the host object.
struct Given {
  Content content;
  bool other_form;
};

struct Performed {
  std::size_t number = 0;  // of the step, from 1
  Operation operation = Operation::put;
  std::vector<Given> keys;
  std::vector<Given> values;
  int slot = 0;  // of the iterators concerned
  int other_slot = 0;
  int index = 0;
  int variation = 0;
  std::optional<std::string> expected;  // what the step gives, as a program prints it
  int count = 0;                        // afterwards
  int bucket_count = 0;
  std::vector<std::string> order;  // the keys afterwards
};

/// The first thing that was not as it should be.
struct Disagreement {
  std::size_t step;  // from 1
  Operation operation;
  std::string what;
  std::string expected;
  std::string actual;

  std::string text() const;
};

}  // namespace model

#endif
