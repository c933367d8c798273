// Variables, array elements, and what is assigned to them.
#ifndef ZRB_STANDIN_LANGUAGE_VARIABLES_H
#define ZRB_STANDIN_LANGUAGE_VARIABLES_H

#include <cstddef>

#include "language/code.h"

namespace standin::language {

// A ByRef parameter's slot holds the address of the caller's variable, which outlives the call.
Value reference_to(Value* variable);
Value* referred_to(const Value& slot);

// How a variable is found from a frame.
struct LocalPlace {
  int slot;
  Value& in(Frame& frame) const { return frame.slots[slot]; }
};
struct ReferencePlace {
  int slot;
  Value& in(Frame& frame) const { return *referred_to(frame.slots[slot]); }
};
struct StaticPlace {
  std::size_t index;
  Value& in(Frame& frame) const;
};

template <class Place>
class Variable final : public Expression {
 public:
  Variable(const Type& type, Place place) : Expression(type), place_(place) {}
  Value value(Frame& frame) const override { return place_.in(frame); }
  bool boolean(Frame& frame) const override { return place_.in(frame).as_boolean(); }
  std::int32_t integer(Frame& frame) const override { return place_.in(frame).as_integer(); }
  std::int64_t int64(Frame& frame) const override { return place_.in(frame).as_int64(); }
  double real(Frame& frame) const override { return place_.in(frame).as_double(); }
  Value* place(Frame& frame) const override { return &place_.in(frame); }
  bool is_variable() const override { return true; }

 private:
  Place place_;
};

// The array is a variable, the index an Integer or Int64; one out of range raises
// OutOfBoundsException.
Code make_array_element(Code array, Code index);

// A new array with an upper bound, an Int64.
Code make_new_array(const Type& array, Code upper_bound);

// The value is of the target's type; the target is a variable or an array element.
std::unique_ptr<Statement> make_assignment(Code target, Code value, Position position);
// Gives a local variable its first value; what it starts as when there is none to give.
std::unique_ptr<Statement> make_declaration(int slot, const Type& type, Code initial,
                                            Position position);
// The same, once only, for a static one. Its value is not void once that has happened.
std::unique_ptr<Statement> make_static_declaration(std::size_t index, const Type& type,
                                                   Code initial, Position position);
// The upper bound is an Int64.
std::unique_ptr<Statement> make_redim(Code array, Code upper_bound, Position position);

}  // namespace standin::language

#endif
