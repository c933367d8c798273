// What keys and values hold, apart from any host: contents in schemes that strain the containers in
// different ways.
#ifndef ZRB_TESTS_MODEL_CONTENTS_H
#define ZRB_TESTS_MODEL_CONTENTS_H

#include <cstdint>
#include <string>
#include <vector>

#include "support/container_classes.h"
#include "support/elements.h"

namespace model {

enum class ContentKind { nil, integer, int64, half, boolean, text };

struct Content {
  ContentKind kind = ContentKind::nil;
  std::int64_t number = 0;  // integers, Booleans (0 or 1); Doubles counted in halves
  std::string text;         // UTF-8

  friend bool operator==(const Content&, const Content&) = default;
};

/// How the keys of a sequence are made.
enum class Scheme {
  dense,      // neighbouring integers around zero
  colliding,  // integers 193 apart: one bucket of a new table
  wide,       // integers from all 32 bits, both ends included
  plain,      // ASCII texts of one length
  rich,       // texts of all lengths, "" included, prefixes of each other, ASCII and not
  halves,     // Doubles
  mixed       // variants of all these types, Nil and Booleans; without a lasting order
};
const char* name(Scheme scheme);

/// The schemes that suit a class.
std::vector<Scheme> schemes_for(const support::ContainerClass& container_class);

/// Distinct contents in ascending order (any order where the scheme has none).
std::vector<Content> keys(Scheme scheme, int count);
/// Values of a type, most of them distinct; Nil where the type has it, and "".
std::vector<Content> values(support::ElementType type, int count);

/// A new host object (or an integer). The other form is another one with the same text: UTF-16
/// instead of UTF-8, and nil instead of an empty string.
support::Element make_element(support::ElementType type, const Content& content, bool other_form);

/// What an element holds, as a program prints it: an integer's digits, a string's text, a variant's
/// type code and text.
std::string shown(support::ElementType type, const Content& content);
std::string shown(const support::Element& element);

}  // namespace model

#endif
