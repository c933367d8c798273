// Storage that may be changed, cleared or destroyed while one of its own operations runs.
//
// An operation calls the host: to lock, to hash, to compare. A host can run code of the program
// meanwhile, which can change the container or let it die. So whoever calls an operation that calls
// the host holds an InUse on the storage meanwhile; what goes through all elements holds one of its
// own. Until the outermost one ends, elements that are taken out under another one are not
// destroyed, so that every handle stays locked that an operation may be looking at; node memory is
// not given back; and a storage that was destroyed is only emptied. Whether something changed
// meanwhile, an operation learns from the count of changes.
#ifndef ZRB_PLUGIN_KEYS_IN_USE_H
#define ZRB_PLUGIN_KEYS_IN_USE_H

#include <cstdint>
#include <memory>

/// How often a search is begun again because the storage changed under it. A host that changes it
/// every time gets the answer "not there" in the end, rather than a plugin that never returns.
inline constexpr int search_attempts = 16;

/// What a storage keeps to be usable that way: its base class. The storage itself has a member
/// `finish_work`, which destroys the elements that were put off.
class Usable {
 public:
  /// Rises with every element that is added or taken out, and with every growth.
  std::uint32_t changes() const { return changes_; }

 protected:
  void count_change() noexcept { ++changes_; }

  /// Whether an operation runs around the one that asks, for which an InUse is held already.
  bool is_used_by_several() const { return uses_ > 1; }

  /// Something is left for the end of the outermost operation.
  void put_off_work() { has_work_ = true; }

 private:
  using Step = void (*)(Usable& storage);

  template <class Storage>
  [[gnu::noinline]] static void destroy(Usable& usable) {
    // Not a delete expression, which would test for a null that never comes.
    std::default_delete<Storage>()(&static_cast<Storage&>(usable));
  }

  // Ends the outermost use: does what was put off, by `finish_work`, and destroys a doomed storage.
  // For the destructor of an InUse; see `release_in_destructor`.
  void end_last_use(Step finish_work, Step destroy_doomed);

  template <class Storage>
  friend class InUse;
  template <class Storage>
  friend void destroy_storage(Storage* storage);

  std::uint32_t uses_ = 0;
  std::uint32_t changes_ = 0;
  bool has_work_ = false;
  bool doomed_ = false;
};

template <class Storage>
class InUse {
 public:
  explicit InUse(Storage& storage) : storage_(storage) { ++usable().uses_; }
  InUse(const InUse&) = delete;
  InUse& operator=(const InUse&) = delete;

  /// Does what was put off, when this is the outermost; see `release_in_destructor`.
  ~InUse() noexcept(false) {
    if (usable().has_work_ && usable().uses_ == 1) [[unlikely]] {
      usable().end_last_use([](Usable& storage) { static_cast<Storage&>(storage).finish_work(); },
                            Usable::destroy<Storage>);
    } else {
      --usable().uses_;
    }
  }

 private:
  Usable& usable() { return storage_; }

  Storage& storage_;
};

/// In place of an InUse where nobody is called.
struct NotInUse {
  template <class Storage>
  explicit NotInUse(const Storage&) {}
};

/// Destroys a storage with all its elements; one that is in use is emptied, and the rest happens
/// when its outermost operation ends. What the host throws passes on, when all elements are gone.
template <class Storage>
void destroy_storage(Storage* storage) {
  Usable& usable = *storage;
  if (usable.uses_ == 0) return Usable::destroy<Storage>(usable);
  usable.doomed_ = usable.has_work_ = true;
  storage->clear();
}

#endif
