// What the resolver hands out, hides, and counts.
#include "runtime/entry_points.h"

#include <gtest/gtest.h>

#include <set>

#include "runtime/host.h"
#include "runtime/services.h"
#include "runtime/strings.h"
#include "runtime/variants.h"

namespace standin {
namespace {

void* load_global(Host& host, const char* declaration) {
  using Load = void* (*)(std::int32_t, const char*);
  return reinterpret_cast<Load>(host.resolve("REALLoadGlobalMethod"))(0, declaration);
}

HostOptions instrumented() {
  HostOptions options;
  options.instrument = true;
  return options;
}

TEST(EntryPoints, names_are_distinct_and_twins_too) {
  std::set<std::string> names;
  std::set<AnyFunction> functions;
  for (const EntryPoint& entry : entry_points()) {
    EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
    EXPECT_TRUE(functions.insert(entry.instrumented).second) << entry.name;
    EXPECT_NE(entry.plain, entry.instrumented) << entry.name;
    EXPECT_EQ(&entry_points()[*entry_point_index(entry.name)], &entry);
  }
}

TEST(EntryPoints, services_are_found_by_their_exact_names) {
  Host host;
  for (const EntryPoint& entry : entry_points()) {
    const bool is_service = entry.group == EntryPointGroup::service;
    EXPECT_EQ(host.resolve(entry.name) != nullptr, is_service) << entry.name;
  }
  EXPECT_EQ(host.resolve("reallockstring"), nullptr);
  EXPECT_EQ(host.resolve("NoSuchThing"), nullptr);
  EXPECT_EQ(Host::resolver()("REALLockString"), host.resolve("REALLockString"));
}

TEST(EntryPoints, framework_functions_are_found_by_declaration) {
  Host host;
  EXPECT_NE(load_global(host, "VarType(value As Variant) As Int32"), nullptr);
  EXPECT_NE(load_global(host, "LenB( s as string ) as integer"), nullptr);
  EXPECT_EQ(load_global(host, "lenb(s as string) as integer"),
            load_global(host, "LenB( s as string ) as integer"));
  EXPECT_EQ(load_global(host, "REALLockString"), nullptr);
  EXPECT_EQ(load_global(host, "Sin(x as double) as double"), nullptr);
  EXPECT_EQ(load_global(host, nullptr), nullptr);
}

TEST(EntryPoints, any_of_them_can_be_hidden) {
  HostOptions options;
  options.without = {"REALLockString", "vartype(value as variant) as int32",
                     "Key(index As Integer) As Variant", "array get string"};
  Host host(options);
  EXPECT_EQ(host.resolve("REALLockString"), nullptr);
  EXPECT_NE(host.resolve("REALUnlockString"), nullptr);
  EXPECT_EQ(load_global(host, "VarType(value As Variant) As Int32"), nullptr);
  const ObjectRef dictionary = host.new_instance("Dictionary");
  EXPECT_EQ(services::load_object_method(dictionary.get(), "Key(index As Integer) As Variant"),
            nullptr);
  EXPECT_NE(services::load_object_method(dictionary.get(), "Value(key As Variant) As Variant"),
            nullptr);
  const ArrayRef array = ArrayRef::adopt(services::create_array(3, 0));
  EXPECT_EQ(services::array_get_procedure(array.get()), nullptr);
  EXPECT_NE(services::array_set_procedure(array.get()), nullptr);
}

TEST(EntryPoints, hiding_what_does_not_exist_is_refused) {
  HostOptions options;
  options.without = {"REALLockStrings"};
  EXPECT_THROW(Host{options}, std::invalid_argument);
  EXPECT_EQ(Host::current_or_null(), nullptr);
  Host host;  // the refused one left nothing behind
}

TEST(EntryPoints, the_version_is_told_or_not) {
  HostOptions options;
  options.version = 2011.4;
  {
    Host host(options);
    EXPECT_EQ(reinterpret_cast<double (*)()>(host.resolve("REALGetRBVersion"))(), 2011.4);
  }
  options.version.reset();
  Host host(options);
  EXPECT_EQ(host.resolve("REALGetRBVersion"), nullptr);
}

TEST(EntryPoints, plain_ones_are_handed_out_unless_asked_otherwise) {
  const EntryPoint& entry = entry_points()[require_entry_point("REALLockString")];
  {
    Host host;
    EXPECT_EQ(host.resolve("REALLockString"), reinterpret_cast<void*>(entry.plain));
  }
  Host host(instrumented());
  EXPECT_EQ(host.resolve("REALLockString"), reinterpret_cast<void*>(entry.instrumented));
}

TEST(EntryPoints, booleans_are_their_low_byte_only) {
  EXPECT_EQ(static_cast<std::uint8_t>(services::HostBoolean::yes), 1);
  EXPECT_EQ(static_cast<std::uint8_t>(services::HostBoolean::no), 0);
  EXPECT_NE(static_cast<std::uint32_t>(services::HostBoolean::no), 0U);
}

TEST(CallCounts, count_calls_and_lookups) {
  Host host(instrumented());
  using Lock = void (*)(REALstring);
  const auto lock_string = reinterpret_cast<Lock>(host.resolve("REALLockString"));
  const StringRef text = make_string("abc");
  lock_string(text.get());
  lock_string(text.get());
  reinterpret_cast<Lock>(host.resolve("REALUnlockString"))(text.get());
  unlock(text.get());
  EXPECT_EQ(host.calls().of("REALLockString"), 2U);
  EXPECT_EQ(host.calls().total(), 3U);
  EXPECT_EQ(host.calls().called(),
            (std::map<std::string, std::uint64_t>{{"REALLockString", 2}, {"REALUnlockString", 1}}));
  host.resolve("Ghost");
  EXPECT_EQ(host.calls().lookups("Ghost"), 1U);
  EXPECT_THROW(host.calls().of("Ghost"), std::invalid_argument);
  host.calls().reset();
  EXPECT_EQ(host.calls().total(), 0U);
}

TEST(CallCounts, framework_functions_are_counted_by_declaration) {
  Host host(instrumented());
  using Length = std::int32_t (*)(REALstring);
  const auto length = reinterpret_cast<Length>(load_global(host, "LenB( s as string ) as integer"));
  EXPECT_EQ(length(make_string("abc").get()), 3);
  EXPECT_EQ(host.calls().of("lenb(s as string)as integer"), 1U);
}

}  // namespace
}  // namespace standin
