// Instances: their place in memory, their beginning and their end.
//
//   header | data of the topmost class … | guard | data of a registered class | guard
//
// The guards are there only when handles are checked strictly; they hold a pattern that nobody may
// change.
#include "runtime/instances.h"

#include <algorithm>
#include <cstring>
#include <exception>

#include "runtime/blocks.h"
#include "runtime/classes.h"
#include "runtime/host.h"
#include "runtime/ledger.h"
#include "runtime/plugin_calls.h"

namespace standin {

// Counts the instances of a class, so that a host knows when nothing needs the class any more.
class InstanceCounter {
 public:
  static void add(const ClassInfo& class_info) { ++class_info.live_instances_; }
  static void remove(const ClassInfo& class_info) { --class_info.live_instances_; }
};

namespace {

constexpr char guard_byte = 0x5C;

bool is_intact(const char* guard, std::size_t size) {
  return std::all_of(guard, guard + size, [](char c) { return c == guard_byte; });
}

// Guards lie right before the data and right behind it.
void set_guards(REALobject instance, const ClassInfo& class_info) {
  char* data = static_cast<char*>(instance_data(instance, class_info));
  std::memset(data - class_info.guard(), guard_byte, class_info.guard());
  std::memset(data + class_info.data_size(), guard_byte, class_info.guard());
}

bool guards_are_intact(REALobject instance, const ClassInfo& class_info) {
  const char* data = static_cast<const char*>(instance_data(instance, class_info));
  return is_intact(data - class_info.guard(), class_info.guard()) &&
         is_intact(data + class_info.data_size(), class_info.guard());
}

void begin_classes(REALobject instance, const ClassInfo* class_info) {
  if (class_info == nullptr) return;
  begin_classes(instance, class_info->super());
  set_guards(instance, *class_info);
  if (class_info->native_data().construct != nullptr) {
    class_info->native_data().construct(instance_data(instance, *class_info));
  }
}

void run_destructor(REALobject instance, const ClassInfo& class_info) {
  if (class_info.native_data().destroy != nullptr) {
    class_info.native_data().destroy(instance_data(instance, class_info));
  }
  if (class_info.destructor() != nullptr) call_destructor(class_info, instance);
}

void record_destructor_error(const ClassInfo& class_info, const char* what) {
  if (Host* host = Host::current_or_null()) {
    host->add_destructor_error(class_info.name() + ": " + what);
  }
}

}  // namespace

ObjectRef make_instance(const ClassInfo& class_info) {
  auto* instance = static_cast<REALobject>(blocks::allocate(class_info.instance_size()));
  instance->block = {magic::object, 1};
  instance->class_info = &class_info;
  instance->serial = blocks::next_serial();
  begin_classes(instance, &class_info);
  InstanceCounter::add(class_info);
  if (Ledger* ledger = Ledger::active_one()) ledger->created(instance, HandleKind::object);
  return ObjectRef::adopt(instance);
}

void end_instance(REALobject instance, const std::string& description) noexcept {
  const ClassInfo& own_class = *instance->class_info;
  instance->block.locks = blocks::dying_locks;
  bool intact = true;
  const ClassInfo* c = &own_class;
  do {
    try {
      run_destructor(instance, *c);
    } catch (const std::exception& error) {
      record_destructor_error(*c, error.what());
    } catch (...) {
      record_destructor_error(*c, "an exception of unknown type");
    }
    intact = intact && guards_are_intact(instance, *c);
    c = c->super();
  } while (c != nullptr);
  InstanceCounter::remove(own_class);

  Ledger* ledger = Ledger::active_one();
  if (ledger == nullptr) return;
  if (!intact) ledger->record(Violation::Kind::damaged_instance, description);
  if (instance->block.locks > blocks::dying_locks) {
    ledger->record(Violation::Kind::kept_by_destructor, description);
  } else if (instance->block.locks < blocks::dying_locks) {
    ledger->record(Violation::Kind::double_release, description);
  }
}

}  // namespace standin
