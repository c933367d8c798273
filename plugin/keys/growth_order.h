// The order that growth gives to the elements of a bucket, told without growing.
//
// A table that is filled one by one grows several times, and each growth step goes through the
// buckets in order and puts every element at the head of its new chain. So of two elements in one
// bucket the newer comes first if it came after the last step; else the one that the step met
// later: that is the one from the higher of the former buckets, and of two from one former bucket
// the one that came second there.
#ifndef ZRB_PLUGIN_KEYS_GROWTH_ORDER_H
#define ZRB_PLUGIN_KEYS_GROWTH_ORDER_H

#include <array>
#include <cstdint>

#include "keys/bucket_sizes.h"
#include "keys/remainder.h"

class GrowthOrder {
 public:
  /// Of a table with `bucket_count` buckets, one of `bucket_sizes`, that is empty and gets so many
  /// elements.
  GrowthOrder(std::uint32_t bucket_count, std::uint32_t elements) : final_count_(bucket_count) {
    while (final_count_ < elements) {
      former_counts_[steps_++] = final_count_;
      final_count_ = bucket_size_for(final_count_ + 1);
    }
    if (steps_ != 0) last_former_bucket_ = Remainder(former_counts_[steps_ - 1]);
  }

  /// How many buckets there are in the end.
  std::uint32_t final_count() const { return final_count_; }

  /// How many elements there are at the last step; those that come later come first.
  std::uint32_t elements_at_last_step() const {
    return steps_ == 0 ? 0 : former_counts_[steps_ - 1];
  }

  /// Whether an element comes before an older one that ends in the same bucket. `number`: how many
  /// elements came before the newer one. O(1), O(steps) for hashes that stay together.
  bool is_newer_first(std::uint32_t number, std::uint32_t newer_hash,
                      std::uint32_t older_hash) const {
    bool newer_first = true;
    for (std::uint32_t step = steps_; step > 0; --step) {
      // A step is taken when there are as many elements as buckets.
      const std::uint32_t count = former_counts_[step - 1];
      if (number >= count) break;
      const Remainder former_bucket = step == steps_ ? last_former_bucket_ : Remainder(count);
      const std::uint32_t newer = former_bucket(newer_hash);
      const std::uint32_t older = former_bucket(older_hash);
      if (newer != older) return (newer > older) == newer_first;
      newer_first = !newer_first;
    }
    return newer_first;
  }

 private:
  std::array<std::uint32_t, bucket_sizes.size()> former_counts_;  // before each of the steps
  std::uint32_t steps_ = 0;
  std::uint32_t final_count_;
  Remainder last_former_bucket_{bucket_sizes[0]};
};

#endif
