// What keys and values hold, apart from any host: contents in schemes that strain the containers in
// different ways.
#ifndef ZRB_TESTS_MODEL_CONTENTS_H
#define ZRB_TESTS_MODEL_CONTENTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/container_classes.h"
#include "support/elements.h"

namespace model {

// The last two are rows of the tables of odd contents.
enum class ContentKind { nil, integer, int64, half, boolean, text, odd_text, odd_variant };

struct Content {
  ContentKind kind = ContentKind::nil;
  std::int64_t number = 0;  // integers, Booleans (0 or 1); Doubles counted in halves
  std::string text;         // UTF-8; of an odd text what a key reads
  std::size_t row = 0;      // of odd contents
  bool is_single = false;   // only one host object of it may be a key: another would be unlike it

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
  mixed,      // variants of all these types, Nil and Booleans; without a lasting order
  odd_texts,  // texts of all encodings, ill-formed ones and zero bytes among them
  odd_reals,  // infinities, zeros and the like
  odd_mixed,  // all that is odd, and objects; without a lasting order
  unlike      // variants of which no two can be compared by value: the order is that of the handles
};
const char* name(Scheme scheme);
/// Whether the keys are odd; then the values are, too, and programs cannot write them.
bool is_odd(Scheme scheme);

/// The schemes that suit a class, but for the odd ones.
std::vector<Scheme> schemes_for(const support::ContainerClass& container_class);
/// The odd ones.
std::vector<Scheme> odd_schemes_for(const support::ContainerClass& container_class);

/// Distinct contents in ascending order (any order where the scheme has none); fewer if the scheme
/// has not so many.
std::vector<Content> keys(Scheme scheme, int count);
/// Values of a type, most of them distinct; Nil where the type has it, and "".
std::vector<Content> values(support::ElementType type, int count);
/// The same of odd contents, where the type has them.
std::vector<Content> odd_values(support::ElementType type, int count);

/// Which of the host objects of a content is meant: two alike, and one of the other form.
constexpr int copies = 3;

/// A new host object (or an integer). The last copy is of the other form: another object with the
/// same text, UTF-16 instead of UTF-8, and nil instead of an empty string. The copies of an odd
/// text differ as they can.
support::Element make_element(support::ElementType type, const Content& content, int copy);
/// Whether it is a NaN, which no Dictionary finds again.
bool is_nan(const Content& content);

/// What an element holds, as a program prints it: an integer's digits, a string's text, a variant's
/// type code and text. Odd contents are shown by elements of theirs.
std::string shown(support::ElementType type, const Content& content);
std::string shown(const support::Element& element);

}  // namespace model

#endif
