// From a plugin's class records to classes.
#ifndef ZRB_STANDIN_RUNTIME_REGISTRATION_H
#define ZRB_STANDIN_RUNTIME_REGISTRATION_H

#include <memory>
#include <stdexcept>
#include <string>

#include "runtime/classes.h"

namespace standin {

// A record that the host cannot take: which class, which field or declaration, and what is
// expected.
class RegistrationError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Checks every field of the record, gives the class its place for instance data, and writes its
// offset into `forSystemUse`. The record and its tables must outlive the class. Methods and
// properties come later, with `bind_members`, since declarations may name classes that are
// registered afterwards.
std::unique_ptr<ClassInfo> make_class(REALclassDefinition& definition, const ClassInfo* super,
                                      std::size_t guard);

// Parses every declaration and binds routines to methods and properties. Refused are, besides
// unreadable texts: rows without routine or text, types that cannot be passed to a routine
// (anything but handles, Integer, Boolean, Color), more than four parameters, a setter without a
// result, two rows of one name with equal parameter types.
void bind_members(ClassInfo& class_info, const TypeResolver& resolver);

}  // namespace standin

#endif
