// The statements that do in a program what a step does.
#ifndef ZRB_TESTS_MODEL_STATEMENTS_H
#define ZRB_TESTS_MODEL_STATEMENTS_H

#include <string>
#include <vector>

#include "model/performed.h"

namespace model {

/// Writes the statements of one step. They work on the container `c`, the iterators `at0`, `at1`,
/// `at2`, the arrays `formerKeys`, `formerValues` and `heldKeys`, and leave the result in `got`.
class Statements {
 public:
  Statements(const support::ContainerClass& container_class, const Performed& performed)
      : class_(container_class), performed_(performed) {}

  std::string text();

 private:
  void by_key();
  void iterators();
  /// A statement that moves or sets an iterator, and where it stands then.
  void point(const std::string& statement);
  void arrays();
  void whole();
  void copies();
  void dictionaries();

  /// Adds a line. Its template uses {Class} and {Iterator}, {K} and {V} for types, {#} for the
  /// step's number (so that names differ), {slot} and {other} for iterators, {index}, and {key} and
  /// {value} for the first ones given.
  void line(const std::string& text_template);
  /// Assigns all the given keys their values.
  void assignments(const std::string& to);
  /// Declares an array and appends the given elements.
  void array(const std::string& name, support::ElementType type, const std::vector<Given>& items);
  std::string key_literal(const Given& given) const;
  std::string value_literal(const Given& given) const;

  const support::ContainerClass& class_;
  const Performed& performed_;
  std::string text_;
};

}  // namespace model

#endif
