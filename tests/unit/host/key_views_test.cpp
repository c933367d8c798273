// What the host is asked of one key: everything once, and nothing of nil.
#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>

#include "host/resolver.h"
#include "keys/text_view.h"
#include "keys/variant_key.h"
#include "runtime/host.h"
#include "runtime/strings.h"
#include "runtime/variants.h"
#include "with_faults.h"

namespace {

class KeyViews : public testing::Test {
 protected:
  KeyViews() { keep_resolver(standin::Host::resolver()); }

  standin::Host host_{with_faults()};
};

TEST_F(KeyViews, ask_for_a_text_once_however_short_it_is) {
  for (const std::string_view bytes : {"", "a"}) {
    const standin::StringRef string = standin::make_string(bytes, host_encoding::utf8);
    rbText text(string.get());
    host_.calls().reset();
    EXPECT_EQ(text.GetUTF8(), bytes);
    EXPECT_EQ(text.LengthUTF8(), static_cast<std::int32_t>(bytes.size()));
    EXPECT_EQ(host_.calls().of("PluginGetStringData"), 1U) << bytes;
  }
}

TEST_F(KeyViews, ask_nothing_of_a_text_that_is_nil) {
  rbText nil(nullptr);
  host_.calls().reset();
  EXPECT_EQ(nil.GetUTF8(), std::string_view());
  EXPECT_EQ(nil.LengthUTF8(), 0);
  EXPECT_EQ(host_.calls().total(), 0U);
}

TEST_F(KeyViews, ask_for_the_type_of_a_variant_once) {
  const standin::ObjectRef variant = standin::variant_from_integer(5);
  VariantView view(variant.get());
  host_.calls().reset();
  EXPECT_EQ(view.type(), VariantType::integer);
  EXPECT_EQ(view.type(), VariantType::integer);
  EXPECT_EQ(host_.calls().of("VarType(value As Variant) As Int32"), 1U);
}

TEST_F(KeyViews, compare_nil_without_asking_for_its_type) {
  const standin::ObjectRef variant = standin::variant_from_integer(0);
  VariantView nil(nullptr);
  VariantView zero(variant.get());
  host_.calls().reset();
  // By address. In 32 bits that is the sign of the difference, so an address in the upper half of
  // the address space comes before nil.
  const auto address = reinterpret_cast<std::uintptr_t>(variant.get());
  const bool nil_first = sizeof address > 4 || address < 0x80000000;
  EXPECT_EQ(Compare(nil, zero) < 0, nil_first);
  EXPECT_EQ(Compare(zero, nil) > 0, nil_first);
  EXPECT_EQ(Compare(nil, nil), 0);
  EXPECT_EQ(host_.calls().total(), 0U);
}

// An address alone: a comparison with nil looks at no object.
TEST_F(KeyViews, compare_addresses_that_have_half_of_their_bits_in_common) {
  for (const std::uintptr_t high : {1U, 2U, 0x7FFFU}) {
    for (const std::uintptr_t low : {0x0U, 0x1000U, 0x7FFFF000U, 0x80000000U, 0xFFFFF000U}) {
      const std::uintptr_t address = sizeof(high) > 4 ? (high << 16 << 16) | low : low / 2;
      if (address == 0) continue;
      VariantView nil(nullptr);
      VariantView far(reinterpret_cast<REALobject>(address));
      EXPECT_LT(Compare(nil, far), 0) << address;
      EXPECT_GT(Compare(far, nil), 0) << address;
    }
  }
}

}  // namespace
