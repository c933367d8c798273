// Variants handed to the host: from integers, strings and what containers hold.
#include <gtest/gtest.h>

#include "host/resolver.h"
#include "keys/variant_key.h"
#include "runtime/host.h"
#include "runtime/strings.h"
#include "runtime/variants.h"
#include "with_faults.h"

namespace {

using standin::ObjectRef;
using standin::StringRef;

class NewVariants : public testing::Test {
 protected:
  NewVariants() { keep_resolver(standin::Host::resolver()); }
  standin::Host host_{with_faults()};
};

TEST_F(NewVariants, an_integer_becomes_a_variant_of_its_own) {
  const auto variant = ObjectRef::adopt(REALnewVariant(std::int32_t{-5}));
  EXPECT_EQ(standin::variant_type(variant.get()), VariantType::integer);
  EXPECT_EQ(standin::to_int32(variant.get()), -5);
  EXPECT_EQ(standin::lock_count(variant.get()), 1U);
}

TEST_F(NewVariants, a_string_is_held_by_its_variant) {
  const StringRef text = standin::make_string("text", host_encoding::utf8);
  {
    const auto variant = ObjectRef::adopt(REALnewVariant(text.get()));
    EXPECT_EQ(standin::lock_count(variant.get()), 1U);
    EXPECT_EQ(standin::lock_count(text.get()), 2U);
    const auto held = ObjectRef::adopt(REALnewVariant(RBString(text.get())));
    EXPECT_EQ(standin::to_string(held.get()).get(), text.get());
    EXPECT_EQ(standin::lock_count(text.get()), 3U);
  }
  EXPECT_EQ(standin::lock_count(text.get()), 1U);
}

TEST_F(NewVariants, a_stored_variant_is_itself_with_one_lock_more) {
  const ObjectRef variant = standin::variant_from_integer(5);
  {
    const auto same = ObjectRef::adopt(REALnewVariant(RBVariant(variant.get())));
    EXPECT_EQ(same.get(), variant.get());
    EXPECT_EQ(standin::lock_count(variant.get()), 2U);
  }
  EXPECT_EQ(standin::lock_count(variant.get()), 1U);
}

TEST_F(NewVariants, nil_stays_nil) {
  EXPECT_EQ(REALnewVariant(RBVariant(nullptr)), nullptr);
  EXPECT_EQ(REALnewVariant(RBString(nullptr)), nullptr);
}

}  // namespace
