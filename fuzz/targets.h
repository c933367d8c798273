// What the fuzzers run: each function takes any bytes, and gives what is wrong, or "". The tests
// run the same functions on the committed corpora.
#ifndef ZRB_FUZZ_TARGETS_H
#define ZRB_FUZZ_TARGETS_H

#include <cstdint>
#include <span>
#include <string>

namespace fuzz {

using Bytes = std::span<const std::uint8_t>;

/// A sequence of calls on one of the container classes, beside the model: the bytes are the choices
/// of the generator of sequences.
std::string calls(Bytes bytes);

/// A declaration of a member, as plugins register them. What can be read, reads the same when it is
/// normalised.
std::string declarations(Bytes bytes);

/// A program's text, up to its syntax tree. Line ends of another platform change nothing.
std::string lexer_parser(Bytes bytes);

/// A program, run with the plugin for a limited number of steps and with limited memory.
std::string evaluator(Bytes bytes);

}  // namespace fuzz

#endif
