// A sequence as a program in the host's language.
#ifndef ZRB_TESTS_MODEL_PROGRAM_PRINTER_H
#define ZRB_TESTS_MODEL_PROGRAM_PRINTER_H

#include <string>
#include <vector>

#include "model/performed.h"

namespace model {

/// A program that does the same to a container of the class, and prints for each step "ok" with
/// what came, or "not ok" with what was expected and what came. The heading becomes its first
/// comment.
///
/// Locks, and the identity of equal objects, are out of a program's sight; the console's --ledger
/// shows the former. An instance without storage cannot be had in the language: steps with one
/// check nothing there.
std::string program(const support::ContainerClass& container_class,
                    const std::vector<Performed>& steps, const std::string& heading);

}  // namespace model

#endif
