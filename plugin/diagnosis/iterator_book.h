// The book of all iterators: where each stands, and whether what it named is still there.
//
// It is kept beside the instances, whose layout is the same in every build, and knows everything by
// address alone: an iterator by that of its position, an element by that of its key, which never
// moves. The host does not tell when an iterator dies. Its entry stays until an iterator is made at
// the same address, so the book is as long as there were ever iterators at once.
//
// When there is no memory for an entry, the iterator is not in the book, and is taken for sound.
#ifndef ZRB_PLUGIN_DIAGNOSIS_ITERATOR_BOOK_H
#define ZRB_PLUGIN_DIAGNOSIS_ITERATOR_BOOK_H

#include <unordered_map>
#include <unordered_set>

namespace diagnosis {

/// Why an iterator is void.
enum class Loss {
  none,
  element_removed,
  container_cleared,
  content_replaced,  // by a constructor or a conversion
  container_destroyed,
};

struct Place {
  const void* storage;
  const void* element;  // null at the end
};

class IteratorBook {
 public:
  /// The book of this plugin.
  static IteratorBook& instance();

  /// An iterator was made, or moved, and stands here now.
  void place(const void* iterator, Place place) noexcept;

  /// Why the iterator is void; `none` when it is sound, or not in the book.
  Loss loss(const void* iterator) const;

  /// What happened to what iterators name: to one element, to all elements of a storage, to a
  /// storage and so to iterators at its end as well.
  void element_ends(const void* element) noexcept;
  void elements_end(const void* storage) noexcept;
  void storage_ends(const void* storage, Loss loss) noexcept;

 private:
  using Iterators = std::unordered_set<const void*>;

  struct Entry {
    Place place;
    Loss loss;
  };

  void strike_out(const void* iterator) noexcept;
  void lose(const void* iterator, Loss loss) noexcept;
  static void forget(std::unordered_map<const void*, Iterators>& index, const void* named,
                     const void* iterator) noexcept;

  std::unordered_map<const void*, Entry> entries_;
  // Which iterators name an element, or a position of a storage; none that is void.
  std::unordered_map<const void*, Iterators> at_element_;
  std::unordered_map<const void*, Iterators> in_storage_;
};

}  // namespace diagnosis

#endif
