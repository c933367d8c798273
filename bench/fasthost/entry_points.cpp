#include "fasthost/entry_points.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "fasthost/blocks.h"

namespace fasthost {
namespace {

// Benchmarks make no mistakes on purpose: whatever would be an exception ends the program.
[[noreturn]] void fail(const char* problem, const char* what) {
  std::fprintf(stderr, "fast host: %s%s\n", problem, what);
  std::exit(EXIT_FAILURE);
}

bool counting = false;

std::vector<REALclassDefinition*>& classes() {
  static std::vector<REALclassDefinition*> registered;
  return registered;
}

// Start

void register_plugin_version(std::int32_t) {}
double get_version() {
  return 2012.1;
}

void register_class(REALclassDefinition* definition) {
  definition->forSystemUse = sizeof(REALobjectStruct);
  classes().push_back(definition);
}

// Strings

REALstring build_string(const char* bytes, std::int32_t length) {
  return make_string({bytes, static_cast<std::size_t>(length)});
}
void set_encoding(REALstring string, std::uint32_t encoding) {
  string->encoding = encoding;
}
std::uint32_t get_encoding(REALstring string) {
  return string->encoding;
}

REALstring convert_string(REALstring string, std::uint32_t encoding) {
  if (encoding != string->encoding) return nullptr;
  lock(string);
  return string;
}

void lock_string(REALstring string) {
  lock(string);
}
void unlock_string(REALstring string) {
  unlock(string);
}

bool get_string_data(REALstring string, std::uint32_t encoding, REALstringData* record) {
  if (encoding != string->encoding && encoding != host_encoding::as_stored) return false;
  lock(string);  // the record's, so that the bytes live as long as it does
  *record = {string->bytes(), string->length, encoding};
  return true;
}

void dispose_string_data(REALstringData* record) {
  unlock(REALstringStruct::from_bytes(record->data));
}

// Objects

void lock_object(REALobject object) {
  lock(object);
}
void unlock_object(REALobject object) {
  unlock(object);
}

REALobject new_instance(const char* name) {
  // A plugin asks for the same few names again and again.
  static const REALclassDefinition* last = nullptr;
  if (last == nullptr || std::strcmp(last->name, name) != 0) {
    last = find_class(name);
    if (last == nullptr) fail("there is no class ", name);
  }
  return make_instance(*last);
}

// Arrays

REALarray create_array(ArrayElementType type, std::int32_t upper_bound) {
  return make_array(type, upper_bound);
}
std::int32_t get_upper_bound(REALarray array) {
  return array->upper_bound;
}

void check_bounds(REALarray array, std::int32_t index) {
  if (index < 0 || index > array->upper_bound) [[unlikely]]
    fail("index out of bounds", "");
}

std::int32_t get_integer(REALarray array, std::int32_t index) {
  check_bounds(array, index);
  return array->integers()[index];
}
REALstring get_string(REALarray array, std::int32_t index) {
  check_bounds(array, index);
  REALstring string = array->strings()[index];
  if (string != nullptr) lock(string);
  return string;
}
void set_integer(REALarray array, std::int32_t value, std::int32_t index) {
  check_bounds(array, index);
  array->integers()[index] = value;
}
void set_string(REALarray array, REALstring value, std::int32_t index) {
  check_bounds(array, index);
  if (value != nullptr) lock(value);
  if (REALstring old = array->strings()[index]) unlock(old);
  array->strings()[index] = value;
}

// The counting twin of an entry point.
template <auto Function>
struct Counted;

template <class Result, class... Arguments, Result (*Function)(Arguments...)>
struct Counted<Function> {
  static inline std::uint64_t calls = 0;
  static Result call(Arguments... arguments) {
    ++calls;
    return Function(arguments...);
  }
};

template <auto Function, bool Counting>
void* address() {
  return reinterpret_cast<void*>(Counting ? &Counted<Function>::call : Function);
}

template <bool Counting>
void* get_procedure(REALarray array) {
  return array->element_type == ArrayElementType::integer ? address<&get_integer, Counting>()
                                                          : address<&get_string, Counting>();
}

template <bool Counting>
void* set_procedure(REALarray array) {
  return array->element_type == ArrayElementType::integer ? address<&set_integer, Counting>()
                                                          : address<&set_string, Counting>();
}

struct EntryPoint {
  const char* name;  // null for the element procedures, which have none
  void* plain;
  void* counting;
  const std::uint64_t* calls;
  const char* label;
};

template <auto Plain, auto Twin = Plain>
EntryPoint entry(const char* name, const char* label = nullptr) {
  return {name, reinterpret_cast<void*>(Plain), address<Twin, true>(), &Counted<Twin>::calls,
          label == nullptr ? name : label};
}

const EntryPoint table[] = {
    entry<&register_plugin_version>("RegisterPluginVersion"),
    entry<&get_version>("REALGetRBVersion"),
    entry<&register_class>("PluginRegisterClass"),
    entry<&build_string>("REALBuildString"),
    entry<&set_encoding>("REALSetStringEncoding"),
    entry<&get_encoding>("REALGetStringEncoding"),
    entry<&convert_string>("REALConvertString"),
    entry<&lock_string>("REALLockString"),
    entry<&unlock_string>("REALUnlockString"),
    entry<&get_string_data>("PluginGetStringData"),
    entry<&dispose_string_data>("PluginDisposeStringData"),
    entry<&lock_object>("REALLockObject"),
    entry<&unlock_object>("REALUnlockObject"),
    entry<&new_instance>("PluginNewInstance"),
    entry<&create_array>("RuntimeArrayCreateSingleDimBoundedArray"),
    entry<&get_upper_bound>("RuntimeUBound"),
    entry<&get_procedure<false>, &get_procedure<true>>("RuntimeArrayDirectGetGetProc"),
    entry<&set_procedure<false>, &set_procedure<true>>("RuntimeArrayDirectGetSetProc"),
    entry<&get_integer>(nullptr, "integer array get"),
    entry<&get_string>(nullptr, "string array get"),
    entry<&set_integer>(nullptr, "integer array set"),
    entry<&set_string>(nullptr, "string array set"),
};

const EntryPoint* find(const char* name) {
  for (const EntryPoint& entry_point : table) {
    if (entry_point.name != nullptr && std::strcmp(entry_point.name, name) == 0) {
      return &entry_point;
    }
  }
  return nullptr;
}

}  // namespace

void* resolve(const char* name) {
  const EntryPoint* found = find(name);
  return found == nullptr ? nullptr : found->plain;
}

void* resolve_counting(const char* name) {
  counting = true;
  const EntryPoint* found = find(name);
  return found == nullptr ? nullptr : found->counting;
}

bool is_counting() {
  return counting;
}

std::uint64_t total_calls() {
  std::uint64_t sum = 0;
  for (const EntryPoint& entry_point : table) sum += *entry_point.calls;
  return sum;
}

std::vector<CallCount> call_counts() {
  std::vector<CallCount> counts;
  for (const EntryPoint& entry_point : table) {
    counts.push_back({entry_point.label, *entry_point.calls});
  }
  return counts;
}

const REALclassDefinition* find_class(const char* name) {
  for (const REALclassDefinition* definition : classes()) {
    if (std::strcmp(definition->name, name) == 0) return definition;
  }
  return nullptr;
}

std::size_t class_count() {
  return classes().size();
}

}  // namespace fasthost
