// A small plugin for the runtime's own tests: its routines do the simplest thing that shows one way
// of being called, or one way of misbehaving.
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

#include "host/binary_interface.h"

namespace {

HostResolver resolver = nullptr;
std::int32_t calls_of_main = 0;

template <class Function>
Function* entry(const char* name) {
  return reinterpret_cast<Function*>(resolver(name));
}

void lock_object(REALobject o) {
  entry<void(REALobject)>("REALLockObject")(o);
}
void unlock_object(REALobject o) {
  entry<void(REALobject)>("REALUnlockObject")(o);
}
void lock_string(REALstring s) {
  entry<void(REALstring)>("REALLockString")(s);
}
void unlock_string(REALstring s) {
  entry<void(REALstring)>("REALUnlockString")(s);
}

struct Data {
  REALobject stored;  // the variant under the one key
  REALstring key;
};
extern REALclassDefinition fake_class;
extern REALclassDefinition partner_class;

Data& data_of(REALobject instance) {
  return *reinterpret_cast<Data*>(reinterpret_cast<char*>(instance) + fake_class.forSystemUse);
}

void raise(const char* class_name, REALstring message) {
  REALobject exception = entry<REALobject(const char*)>("PluginNewInstance")(class_name);
  if (exception == nullptr) return;
  entry<std::uint32_t(REALobject, const char*, REALstring)>("REALSetPropValueString")(
      exception, "Message", message);
  entry<void(REALobject)>("RuntimeRaiseException")(exception);
  unlock_object(exception);
}

// Routines of the class Fake.

void destruct(REALobject self) {
  Data& data = data_of(self);
  if (data.stored != nullptr) unlock_object(data.stored);
  if (data.key != nullptr) unlock_string(data.key);
}

std::int32_t add(REALobject, std::int32_t a, std::int32_t b) {
  return a + b;
}

REALstring echo(REALobject, REALstring text) {
  if (text != nullptr) lock_string(text);
  return text;
}

REALobject same(REALobject, REALobject variant) {
  if (variant != nullptr) lock_object(variant);
  return variant;
}

// A Boolean is the low byte of what a routine leaves; the rest is noise.
std::uint32_t is_big(REALobject, std::int32_t n) {
  return 0xABCDEF00U | (n > 100 ? 1U : 0U);
}

std::int32_t four(REALobject, std::int32_t a, REALstring b, std::int32_t c, REALobject d) {
  return a + (b != nullptr ? 10 : 0) + (c != 0 ? 100 : 0) + (d != nullptr ? 1000 : 0);
}

REALobject get_value(REALobject self, REALstring) {
  Data& data = data_of(self);
  if (data.stored == nullptr) raise("KeyNotFoundException", nullptr);
  return same(self, data.stored);
}

void set_value(REALobject self, REALstring key, REALobject value) {
  Data& data = data_of(self);
  destruct(self);
  data.stored = same(self, value);
  data.key = echo(self, key);
}

void set_integer(REALarray array, std::int32_t index, std::int32_t value) {
  using Set = void(REALarray, std::int32_t, std::int32_t);
  auto* set =
      reinterpret_cast<Set*>(entry<void*(REALarray)>("RuntimeArrayDirectGetSetProc")(array));
  set(array, value, index);
}

// What the host throws passes through, but not past the half-filled array.
REALarray keys(REALobject) {
  REALarray array =
      entry<REALarray(std::int32_t, std::int32_t)>("RuntimeArrayCreateSingleDimBoundedArray")(0, 2);
  try {
    for (std::int32_t i = 0; i < 3; ++i) set_integer(array, i, (i + 1) * 11);
  } catch (...) {
    unlock_object(reinterpret_cast<REALobject>(array));
    throw;
  }
  return array;
}

REALobject partner(REALobject) {
  return entry<REALobject(const char*)>("PluginNewInstance")("FakePartner");
}

void fail(REALobject, REALstring message) {
  raise("NilObjectException", message);
}
void fail_twice(REALobject, REALstring message) {
  raise("NilObjectException", nullptr);
  raise("RuntimeException", message);
}
void throw_exception(REALobject) {
  throw std::runtime_error("from the plugin");
}

// Misbehaviour.
void release_twice(REALobject, REALstring text) {
  unlock_string(text);
  unlock_string(text);
}
void lock_after_release(REALobject) {
  REALstring text = entry<REALstring(const void*, std::int32_t)>("REALBuildString")("gone", 4);
  unlock_string(text);
  lock_string(text);
}
void lock_null(REALobject) {
  lock_object(nullptr);
}
void lock_string_as_object(REALobject, REALstring text) {
  lock_object(reinterpret_cast<REALobject>(text));
}
void write_too_far(REALobject self) {
  std::memset(&data_of(self), 0, static_cast<std::size_t>(fake_class.dataSize) + 8);
}
REALstring leak(REALobject, REALstring text) {
  lock_string(text);
  return nullptr;
}

std::int32_t get_calls_of_main(REALobject, std::int32_t param) {
  return calls_of_main + param;
}
std::uint32_t get_is_empty(REALobject self, std::int32_t) {
  return 0x77777700U | (data_of(self).stored == nullptr ? 1U : 0U);
}
void set_label(REALobject self, std::int32_t, REALstring label) {
  Data& data = data_of(self);
  if (data.key != nullptr) unlock_string(data.key);
  data.key = echo(self, label);
}
REALstring get_label(REALobject self, std::int32_t) {
  return echo(self, data_of(self).key);
}

template <class Function>
void* address(Function* function) {
  return reinterpret_cast<void*>(function);
}

REALmethodDefinition fake_methods[] = {
    {address(add), nullptr, "Add(a as integer, b as integer) as integer", 4},
    {address(echo), nullptr, "Echo(text as string) as string", 4},
    {address(same), nullptr, "Same(v as variant) as variant", 4},
    {address(is_big), nullptr, "IsBig(n as integer) as boolean", 4},
    {address(four), nullptr,
     "Four(a as integer, b as string, c as boolean, d as variant) as integer", 4},
    {address(get_value), address(set_value), "value(key as string) as variant", 4},
    {address(keys), nullptr, "Keys as integer()", 4},
    {address(partner), nullptr, "Partner as FakePartner", 4},
    {address(fail), nullptr, "Fail(message as string)", 4},
    {address(fail_twice), nullptr, "FailTwice(message as string)", 4},
    {address(throw_exception), nullptr, "ThrowException", 4},
    {address(release_twice), nullptr, "ReleaseTwice(text as string)", 4},
    {address(lock_after_release), nullptr, "LockAfterRelease", 4},
    {address(lock_null), nullptr, "LockNull", 4},
    {address(lock_string_as_object), nullptr, "LockStringAsObject(text as string)", 4},
    {address(write_too_far), nullptr, "WriteTooFar", 4},
    {address(leak), nullptr, "Leak(text as string) as string", 4},
};

char calls_name[] = "CallsOfMain";

REALproperty fake_properties[] = {
    {nullptr, calls_name, "Integer", 6, address(get_calls_of_main), nullptr, 0, nullptr, 0,
     nullptr},
    {nullptr, "CallsPlusTen", "Integer", 6, address(get_calls_of_main), nullptr, 10, nullptr, 0,
     nullptr},
    {nullptr, "Empty", "Boolean", 6, address(get_is_empty), nullptr, 0, nullptr, 0, nullptr},
    {nullptr, "Label", "String", 0, address(get_label), address(set_label), 0, nullptr, 0, nullptr},
};

REALmethodDefinition partner_methods[] = {
    {address(same), nullptr, "Same(v as Fake) as Fake", 4},
};

REALclassDefinition class_record(const char* name, void* destructor, REALproperty* properties,
                                 std::int32_t property_count, REALmethodDefinition* methods,
                                 std::int32_t method_count) {
  REALclassDefinition record{};
  record.version = 9;
  record.name = name;
  record.dataSize = 16;
  record.destructor = destructor;
  record.properties = properties;
  record.propertyCount = property_count;
  record.methods = methods;
  record.methodCount = method_count;
  record.mFlags = 4;
  return record;
}

REALclassDefinition fake_class =
    class_record("Fake", address(destruct), fake_properties, std::size(fake_properties),
                 fake_methods, std::size(fake_methods));
REALclassDefinition partner_class =
    class_record("FakePartner", nullptr, nullptr, 0, partner_methods, std::size(partner_methods));

}  // namespace

extern "C" __attribute__((visibility("default"))) std::int32_t REALPluginMain(
    HostResolver host_resolver) {
  resolver = host_resolver;
  ++calls_of_main;
  entry<void(std::int32_t)>("RegisterPluginVersion")(9);
  auto* register_class = entry<void(REALclassDefinition*)>("PluginRegisterClass");
  register_class(&fake_class);
  register_class(&partner_class);
  return 7;
}
