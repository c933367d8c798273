#include "diagnosis/iterator_book.h"

#include <new>
#include <utility>

namespace diagnosis {

IteratorBook& IteratorBook::instance() {
  static IteratorBook book;
  return book;
}

void IteratorBook::place(const void* iterator, Place place) noexcept {
  strike_out(iterator);
  try {
    entries_.insert({iterator, {place, Loss::none}});
    in_storage_[place.storage].insert(iterator);
    if (place.element != nullptr) at_element_[place.element].insert(iterator);
  } catch (const std::bad_alloc&) {
    strike_out(iterator);
  }
}

Loss IteratorBook::loss(const void* iterator) const {
  const auto entry = entries_.find(iterator);
  return entry == entries_.end() ? Loss::none : entry->second.loss;
}

void IteratorBook::element_ends(const void* element) noexcept {
  const auto found = at_element_.find(element);
  if (found == at_element_.end()) return;
  while (!found->second.empty()) {
    const void* iterator = *found->second.begin();
    found->second.erase(found->second.begin());
    lose(iterator, Loss::element_removed);
  }
  at_element_.erase(found);
}

void IteratorBook::elements_end(const void* storage) noexcept {
  const auto found = in_storage_.find(storage);
  if (found == in_storage_.end()) return;
  for (auto iterator = found->second.begin(); iterator != found->second.end();) {
    Entry& entry = entries_.at(*iterator);
    if (entry.place.element == nullptr) {
      ++iterator;
      continue;
    }
    forget(at_element_, entry.place.element, *iterator);
    entry.loss = Loss::container_cleared;
    iterator = found->second.erase(iterator);
  }
}

void IteratorBook::storage_ends(const void* storage, Loss loss) noexcept {
  const auto found = in_storage_.find(storage);
  if (found == in_storage_.end()) return;
  for (const void* iterator : found->second) {
    Entry& entry = entries_.at(iterator);
    forget(at_element_, entry.place.element, iterator);
    entry.loss = loss;
  }
  in_storage_.erase(found);
}

void IteratorBook::lose(const void* iterator, Loss loss) noexcept {
  Entry& entry = entries_.at(iterator);
  forget(in_storage_, entry.place.storage, iterator);
  entry.loss = loss;
}

void IteratorBook::strike_out(const void* iterator) noexcept {
  const auto entry = entries_.find(iterator);
  if (entry == entries_.end()) return;
  if (entry->second.loss == Loss::none) {
    forget(at_element_, entry->second.place.element, iterator);
    forget(in_storage_, entry->second.place.storage, iterator);
  }
  entries_.erase(entry);
}

void IteratorBook::forget(std::unordered_map<const void*, Iterators>& index, const void* named,
                          const void* iterator) noexcept {
  const auto found = index.find(named);
  if (found == index.end()) return;
  found->second.erase(iterator);
  if (found->second.empty()) index.erase(found);
}

}  // namespace diagnosis
