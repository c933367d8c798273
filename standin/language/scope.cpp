// Names of variables and constants, block by block, and the slots that variables live in.
#include "language/scope.h"

#include <algorithm>
#include <utility>

#include "language/variables.h"
#include "runtime/types.h"

namespace standin::language {

void Scope::close(Block& block) {
  // The slots of inner blocks lie between; they are empty by then.
  if (levels_.back().holds_handles) block.set_slots(levels_.back().first_slot, next_slot_);
  levels_.pop_back();
}

int Scope::new_slot(const Type& type) {
  if (type.is_handle()) levels_.back().holds_handles = true;
  return next_slot_++;
}

int Scope::hidden_slot(const Type& type) {
  return new_slot(type);
}

const Symbol& Scope::declare(Symbol symbol, Position position) {
  if (find(symbol.name) != nullptr) {
    throw SourceError(position, "\"" + symbol.name + "\" is declared already");
  }
  if (symbol.kind == Symbol::Kind::local) {
    symbol.slot = new_slot(symbol.type);
  } else if (symbol.kind == Symbol::Kind::reference) {
    symbol.slot = next_slot_++;
  }
  std::string key = lower_name(symbol.name);
  return levels_.back().symbols.emplace(std::move(key), std::move(symbol)).first->second;
}

const Symbol* Scope::find(std::string_view name) const {
  const std::string key = lower_name(name);
  for (auto level = levels_.rbegin(); level != levels_.rend(); ++level) {
    const auto found = level->symbols.find(key);
    if (found != level->symbols.end()) return &found->second;
  }
  return nullptr;
}

Code code_of(const Symbol& symbol) {
  switch (symbol.kind) {
    case Symbol::Kind::local:
      return std::make_unique<Variable<LocalPlace>>(symbol.type, LocalPlace{symbol.slot});
    case Symbol::Kind::reference:
      return std::make_unique<Variable<ReferencePlace>>(symbol.type, ReferencePlace{symbol.slot});
    case Symbol::Kind::static_:
      return std::make_unique<Variable<StaticPlace>>(symbol.type, StaticPlace{symbol.index});
    case Symbol::Kind::constant:
      return std::make_unique<Literal>(symbol.type, symbol.value);
    case Symbol::Kind::broken:
      break;
  }
  return nullptr;
}

}  // namespace standin::language
