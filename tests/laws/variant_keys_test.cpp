// Variant keys: which variants are one key, and how ordered containers sort them.
#include <cmath>
#include <cstring>
#include <limits>

#include "runtime/date.h"
#include "runtime/variants.h"
#include "support/plugin_test.h"

namespace {

using standin::ObjectRef;
using support::Container;
using support::Element;
using support::ElementType;

constexpr float single_nan = std::numeric_limits<float>::quiet_NaN();
constexpr double double_nan = std::numeric_limits<double>::quiet_NaN();

/// A type of variant with values in ascending order; each call makes new objects.
struct Ascending {
  const char* type;
  std::vector<Element> (*make)();
};

template <class... Variants>
std::vector<Element> list(Variants... variants) {
  return {Element(std::move(variants))...};
}

const std::vector<Ascending>& types_with_an_order() {
  using namespace standin;
  static const std::vector<Ascending> types = {
      {"Integer",
       [] {
         return list(variant_from_integer(INT32_MIN), variant_from_integer(-5),
                     variant_from_integer(0), variant_from_integer(5),
                     variant_from_integer(INT32_MAX));
       }},
      {"Boolean", [] { return list(variant_from_boolean(false), variant_from_boolean(true)); }},
      {"Color",
       [] {
         return list(variant_from_color(0), variant_from_color(0xFF), variant_from_color(0xFF00),
                     variant_from_color(0xFFFFFF));
       }},
      {"Int64",
       [] {
         return list(variant_from_int64(INT64_MIN), variant_from_int64(-4294967296),
                     variant_from_int64(-1), variant_from_int64(5),
                     variant_from_int64(4294967296 + 5), variant_from_int64(INT64_MAX));
       }},
      {"Currency",
       [] {
         // Read as Int64, so whole units tell them apart.
         return list(variant_from_currency(-42949672960000), variant_from_currency(-10000),
                     variant_from_currency(0), variant_from_currency(10000),
                     variant_from_currency(50000));
       }},
      {"Single",
       [] {
         return list(variant_from_single(-1e30F), variant_from_single(-0.5F),
                     variant_from_single(0), variant_from_single(0.25F),
                     variant_from_single(1e30F));
       }},
      {"Double",
       [] {
         return list(variant_from_double(-1e300), variant_from_double(-0.5), variant_from_double(0),
                     variant_from_double(1e-300), variant_from_double(1e300));
       }},
      {"String",
       [] {
         return list(ObjectRef(std::get<ObjectRef>(support::variant_string(""))),
                     ObjectRef(std::get<ObjectRef>(support::variant_string("B"))),
                     ObjectRef(std::get<ObjectRef>(support::variant_string("a"))),
                     ObjectRef(std::get<ObjectRef>(support::variant_string("ab"))));
       }},
  };
  return types;
}

class VariantKeys : public support::ClassTest {
 protected:
  void put(const Container& container, const Element& key) const { container.put(key, value(1)); }
};
class OrderedVariantKeys : public VariantKeys {};
class HashedVariantKeys : public VariantKeys {};
ZRB_FOR_CLASSES(VariantKeys, support::classes_with_key(ElementType::variant));
ZRB_FOR_CLASSES(OrderedVariantKeys, support::classes_where([](const support::ContainerClass& c) {
                  return c.key == ElementType::variant && c.is_ordered();
                }));
ZRB_FOR_CLASSES(HashedVariantKeys, support::classes_where([](const support::ContainerClass& c) {
                  return c.key == ElementType::variant && c.is_hashed();
                }));

TEST_P(VariantKeys, equal_values_in_different_objects_are_one_key) {
  for (const Ascending& type : types_with_an_order()) {
    SCOPED_TRACE(type.type);
    const Container container = make();
    const std::vector<Element> stored = type.make();
    for (const Element& key : stored) put(container, key);
    EXPECT_EQ(container.count(), static_cast<std::int32_t>(stored.size()));
    for (const Element& key : type.make()) {
      EXPECT_TRUE(container.contains(key)) << support::describe(key);
      put(container, key);
    }
    EXPECT_EQ(container.count(), static_cast<std::int32_t>(stored.size()));
    for (const Element& key : type.make()) EXPECT_EQ(container.remove(key), 1);
    EXPECT_TRUE(container.empty());
  }
}

TEST_P(VariantKeys, equal_numbers_of_different_types_are_different_keys) {
  using namespace standin;
  const std::vector<Element> fives =
      list(variant_from_integer(5), variant_from_int64(5), variant_from_single(5),
           variant_from_double(5), variant_from_currency(50000), variant_from_color(5),
           ObjectRef(std::get<ObjectRef>(support::variant_string("5"))));
  for (const Element& stored : fives) {
    for (const Element& sought : fives) {
      const Container container = make();
      put(container, stored);
      EXPECT_EQ(container.contains(sought), support::handle(stored) == support::handle(sought))
          << support::describe(stored) << ", " << support::describe(sought);
    }
  }
}

TEST_P(VariantKeys, dates_and_objects_are_keys_by_identity) {
  const Element one = standin::make_date(1000);
  const Element twin = standin::make_date(1000);
  const Element object = host().new_instance("Dictionary");
  const Container container = make();
  put(container, one);
  put(container, object);
  EXPECT_TRUE(container.contains(one));
  EXPECT_TRUE(container.contains(object));
  EXPECT_FALSE(container.contains(twin));
  put(container, twin);
  EXPECT_EQ(container.count(), 3);
  EXPECT_EQ(container.remove(one), 1);
  EXPECT_TRUE(container.contains(twin));
}

TEST_P(VariantKeys, nil_equals_only_itself) {
  const Element nil = ObjectRef();
  const Container container = make();
  put(container, nil);
  EXPECT_TRUE(container.contains(nil));
  EXPECT_FALSE(container.contains(support::variant_integer(0)));
  EXPECT_FALSE(container.contains(support::variant_string("")));
  EXPECT_FALSE(container.contains(Element(standin::variant_from_boolean(false))));
}

TEST_P(HashedVariantKeys, a_nan_is_found_only_through_the_very_object) {
  for (const bool single : {true, false}) {
    const auto nan = [single]() -> Element {
      return single ? standin::variant_from_single(single_nan)
                    : standin::variant_from_double(double_nan);
    };
    const Element stored = nan();
    const Container container = make();
    put(container, stored);
    EXPECT_TRUE(container.contains(stored));
    EXPECT_FALSE(container.contains(nan()));
    put(container, nan());
    EXPECT_EQ(container.count(), 2);
    put(container, stored);
    EXPECT_EQ(container.count(), 2);
  }
}

TEST_P(OrderedVariantKeys, a_nan_is_equivalent_to_whatever_float_of_its_type_it_meets) {
  const Container container = make();
  put(container, Element(standin::variant_from_double(1)));
  put(container, Element(standin::variant_from_double(double_nan)));
  EXPECT_EQ(container.count(), 1);
  EXPECT_TRUE(container.contains(Element(standin::variant_from_double(double_nan))));
  EXPECT_FALSE(container.contains(Element(standin::variant_from_double(2))));
  EXPECT_EQ(container.remove(Element(standin::variant_from_double(double_nan))), 1);

  put(container, Element(standin::variant_from_single(single_nan)));
  EXPECT_TRUE(container.contains(Element(standin::variant_from_single(7))));
  put(container, Element(standin::variant_from_single(8)));
  EXPECT_EQ(container.count(), 1);
}

TEST_P(OrderedVariantKeys, keys_of_one_type_sort_by_value) {
  for (const Ascending& type : types_with_an_order()) {
    SCOPED_TRACE(type.type);
    const Container container = make();
    const std::vector<Element> ascending = type.make();
    for (auto key = ascending.rbegin(); key != ascending.rend(); ++key) put(container, *key);
    const std::vector<Element> visited = container.keys();
    ASSERT_EQ(visited.size(), ascending.size());
    for (std::size_t i = 0; i < ascending.size(); ++i) {
      EXPECT_EQ(support::handle(visited[i]), support::handle(ascending[i])) << "place " << i;
    }
  }
}

/// The order of two variants that have no order by value: by their handles.
bool sorts_first(const Element& a, const Element& b) {
  const auto number = [](const Element& element) {
    return reinterpret_cast<std::uintptr_t>(support::handle(element));
  };
  if constexpr (sizeof(std::uintptr_t) == 4) {
    return static_cast<std::int32_t>(number(a) - number(b)) < 0;
  } else {
    return number(a) < number(b);
  }
}

void expect_order_of_handles(const Container& container, std::size_t count) {
  const std::vector<Element> visited = container.keys();
  ASSERT_EQ(visited.size(), count);
  for (std::size_t i = 1; i < count; ++i) {
    EXPECT_TRUE(sorts_first(visited[i - 1], visited[i])) << "place " << i;
  }
}

TEST_P(OrderedVariantKeys, objects_sort_by_their_handles) {
  std::vector<Element> objects;
  for (int i = 0; i < 30; ++i) {
    objects.push_back(i % 2 == 0 ? standin::make_date(1000 - i)
                                 : host().new_instance("Dictionary"));
  }
  const Container container = make();
  for (std::size_t i = 0; i < objects.size(); ++i) put(container, objects[i * 7 % 30]);
  expect_order_of_handles(container, objects.size());
  for (const Element& object : objects) EXPECT_TRUE(container.contains(object));
}

TEST_P(OrderedVariantKeys, keys_of_different_types_sort_by_their_handles) {
  using namespace standin;
  const Container container = make();
  const std::vector<Element> mixed =
      list(variant_from_integer(5), variant_from_double(-3), variant_from_boolean(true),
           variant_from_int64(-7), make_date(5));
  for (const Element& key : mixed) put(container, key);
  expect_order_of_handles(container, mixed.size());
}

// Texts sort among themselves by content and among the rest by handle, which is no order at all:
// what is lost is that such a key is found, never the container.
TEST_P(OrderedVariantKeys, texts_among_other_types_may_be_missed_but_break_nothing) {
  std::vector<Element> mixed;
  for (int i = 0; i < 60; ++i) {
    mixed.push_back(i % 2 == 0 ? support::variant_string(std::to_string(97 * i % 60))
                               : support::variant_integer(i));
  }
  const Container container = make();
  for (const Element& key : mixed) put(container, key);
  const std::int32_t count = container.count();
  EXPECT_EQ(container.keys().size(), static_cast<std::size_t>(count));
  std::int32_t removed = 0;
  for (const Element& key : mixed) removed += container.remove(key);
  EXPECT_EQ(container.count(), count - removed);
  container.clear();
  EXPECT_TRUE(container.empty());
}

TEST_P(OrderedVariantKeys, nil_sorts_as_handle_number_0) {
  const Element nil = ObjectRef();
  const Element five = support::variant_integer(5);
  const Container container = make();
  put(container, five);
  put(container, nil);
  EXPECT_EQ(support::is_neutral(container.first().key()), sorts_first(nil, five));
}

TEST_P(HashedVariantKeys, a_string_in_a_variant_is_hashed_by_its_text_not_by_the_host) {
  const Container container = make();
  host().calls().reset();
  put(container, support::variant_string("abc"));
  EXPECT_EQ(host().calls().of("VariantHash"), 0u);
  put(container, support::variant_integer(5));
  EXPECT_EQ(host().calls().of("VariantHash"), 1u);
}

TEST_P(HashedVariantKeys, a_nil_key_asks_the_host_nothing) {
  const Container container = make();
  host().calls().reset();
  put(container, Element(ObjectRef()));
  EXPECT_EQ(host().calls().of("VariantHash"), 0u);
  EXPECT_EQ(host().calls().of("VarType(value As Variant) As Int32"), 0u);
}

TEST_P(VariantKeys, comparing_strings_in_variants_releases_the_strings) {
  const Container container = make();
  const Element stored = support::variant_string("some text");
  const Element sought = support::variant_string("some text");
  put(container, stored);
  const auto before = host().ledger().snapshot();
  EXPECT_TRUE(container.contains(sought));
  for (const auto& report : host().ledger().changes_since(before)) {
    EXPECT_NE(report.kind, standin::HandleKind::string) << report.description;
  }
}

}  // namespace
