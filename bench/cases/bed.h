// What the cases of one process share: the subject, its keys, and the map that they read.
#ifndef ZRB_CASES_BED_H
#define ZRB_CASES_BED_H

#include <malloc.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <utility>

#include "cases/workload.h"
#include "fasthost/blocks.h"
#include "subjects/subject.h"

// A number by which to tell a value that a subject returned; a string's lock is given back.
inline std::uint64_t consume(std::int32_t value) {
  return static_cast<std::uint32_t>(value);
}
inline std::uint64_t consume(REALstring string) {
  if (string == nullptr) return 0;
  const std::uint64_t tag = string->tag;
  fasthost::unlock(string);
  return tag + 1;
}

/// Everything is made when it is first asked for, outside of what is timed. A map that one case
/// leaves behind serves the next.
template <class K>
class Bed {
 public:
  Bed(std::function<Subject<K>()> make_subject, std::function<Workload<K>()> make_workload)
      : make_subject_(std::move(make_subject)), make_workload_(std::move(make_workload)) {}

  Subject<K>& subject() {
    if (!subject_) subject_ = make_subject_();
    return *subject_;
  }
  Workload<K>& workload() {
    if (!workload_) {
      workload_ = make_workload_();
      ::malloc_trim(0);  // what making it took and gave back is not for the map to find
    }
    return *workload_;
  }

  /// The map of all keys of the workload, inserted in its order.
  REALobject filled() {
    if (filled_ == nullptr) {
      filled_ = subject().create();
      fill(filled_);
    }
    return filled_;
  }

  void fill(REALobject map) {
    const auto& keys = workload().keys;
    const auto& values = workload().values;
    const auto assign = subject().assign;
    for (std::size_t i = 0; i < keys.size(); ++i) assign(map, keys[i], values[i]);
  }

  void adopt(REALobject map) { filled_ = map; }
  REALobject release() { return std::exchange(filled_, nullptr); }

  /// Searches every one of the keys in `map`; the sum of what is found.
  std::uint64_t search(REALobject map, std::span<const K> keys) {
    const auto lookup = subject().lookup;
    std::uint64_t sum = 0;
    for (const K key : keys) sum += consume(lookup(map, key, K{}));
    return sum;
  }

 private:
  std::function<Subject<K>()> make_subject_;
  std::function<Workload<K>()> make_workload_;
  std::optional<Subject<K>> subject_;
  std::optional<Workload<K>> workload_;
  REALobject filled_ = nullptr;
};

#endif
