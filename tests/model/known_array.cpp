// Accounts for arrays.
#include "model/known_array.h"

namespace model {

KnownArray::KnownArray(LockBook& book, std::vector<const Object*> items)
    : book_(book), items_(std::move(items)) {
  for (const Object* item : items_) book_.add(item->element, 1);
}

KnownArray::~KnownArray() {
  for (const Object* item : items_) book_.add(item->element, -1);
}

void KnownArray::set(std::size_t index, const Object& object) {
  book_.add(object.element, 1);
  book_.add(items_[index]->element, -1);
  items_[index] = &object;
}

}  // namespace model
