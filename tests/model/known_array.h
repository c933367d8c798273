// An array that the plugin made, as it should be.
#ifndef ZRB_TESTS_MODEL_KNOWN_ARRAY_H
#define ZRB_TESTS_MODEL_KNOWN_ARRAY_H

#include <string>
#include <vector>

#include "host/binary_interface.h"
#include "model/lock_book.h"
#include "model/objects.h"

namespace model {

/// Lives as long as the host's array should; keeps account of the locks on its elements.
class KnownArray {
 public:
  KnownArray(LockBook& book, std::vector<const Object*> items);
  ~KnownArray();
  KnownArray(const KnownArray&) = delete;
  KnownArray& operator=(const KnownArray&) = delete;

  const std::vector<const Object*>& items() const { return items_; }
  void set(std::size_t index, const Object& object);

  /// The host's array, once it was seen; null before.
  REALarray handle = nullptr;

 private:
  LockBook& book_;
  std::vector<const Object*> items_;
};

}  // namespace model

#endif
