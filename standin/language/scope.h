// Names of variables and constants, block by block, and the slots that variables live in.
#ifndef ZRB_STANDIN_LANGUAGE_SCOPE_H
#define ZRB_STANDIN_LANGUAGE_SCOPE_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "language/code.h"
#include "language/source.h"

namespace standin::language {

struct Symbol {
  enum class Kind : std::uint8_t {
    local,
    reference,  // a ByRef parameter
    static_,
    constant,
    broken,  // its declaration was in error, which has been reported
  };
  Kind kind = Kind::local;
  std::string name;
  Type type;
  int slot = 0;           // of `local` and `reference`
  std::size_t index = 0;  // of `static_`
  Value value;            // of `constant`
};

// Of one routine. Slots are not used twice.
class Scope {
 public:
  Scope() { open(); }

  void open() { levels_.emplace_back().first_slot = next_slot_; }
  // Tells the block which of its slots to empty when it is left.
  void close(Block& block);

  std::size_t depth() const { return levels_.size(); }
  // Closes what an error left open.
  void give_up_to(std::size_t depth) { levels_.resize(depth); }

  // Throws SourceError if a variable or constant of that name is visible.
  const Symbol& declare(Symbol symbol, Position position);
  // A slot without a name, for the checker's own use.
  int hidden_slot(const Type& type);
  // Null if there is none.
  const Symbol* find(std::string_view name) const;

  int slot_count() const { return next_slot_; }

 private:
  struct Level {
    std::map<std::string, Symbol> symbols;  // by lower name
    int first_slot = 0;
    bool holds_handles = false;
  };
  int new_slot(const Type& type);

  std::vector<Level> levels_;
  int next_slot_ = 0;
};

// The code that reads a variable or constant; broken ones have none.
Code code_of(const Symbol& symbol);

}  // namespace standin::language

#endif
