#include "keys/bucket_walk.h"

#include <cstddef>

namespace {

constexpr std::ptrdiff_t buckets_ahead = 48;

}  // namespace

// In large tables asks for the first node of a chain four dozen buckets ahead, and for the second
// one when the first has come.
std::uint32_t BucketWalk::gather(NodeLink* links, std::uint32_t capacity) {
  const NodeLink* bucket = next_;
  NodeLink rest = rest_;
  const bool is_large = is_large_;  // the links could be written over the member
  std::uint32_t count = 0;
  for (;;) {
    for (; rest != no_node && count < capacity; rest = readable(rest).next) links[count++] = rest;
    if (count > capacity - 2 || bucket == end_) break;
    if (is_large && end_ - bucket > buckets_ahead) {
      prefetch(readable_node_at(bucket[buckets_ahead]));
      prefetch(readable_node_at(readable(bucket[buckets_ahead / 2]).next));
    }
    const NodeLink first = *bucket++;
    links[count] = first;
    count += first != no_node ? 1U : 0U;
    const NodeLink second = readable(first).next;
    links[count] = second;
    count += second != no_node ? 1U : 0U;
    rest = readable(second).next;
  }
  next_ = bucket;
  rest_ = rest;
  return count;
}
