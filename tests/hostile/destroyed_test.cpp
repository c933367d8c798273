// Instances that the host lets die inside a call of their own: a lock, an unlock, a hash, a
// comparison, a string service or an array procedure may run code of a program that gives up the
// last reference.
//
// What holds: the call comes to its end without touching the storage or the instance again once
// they are gone, everything that they held is released, and the call gives back what it took. What
// it answers comes from the elements that it still could see.
#include "routine_test.h"
#include "support/lock_changes.h"

namespace hostile {
namespace {

using faults::Argument;
using faults::Effect;
using faults::FaultTable;
using faults::Given;
using faults::Part;
using faults::Plain;
using faults::Routine;
using faults::Scene;
using support::Container;
using support::Element;
using support::ElementType;

/// Knows whether the service that is being called has the instance itself in its hands: what it
/// then does with a dead one is its own affair.
class Recipient : public standin::TraceObserver {
 public:
  explicit Recipient(REALobject instance) : name_(standin::describe(instance)) {
    name_.resize(name_.find(':') == name_.npos ? name_.size() : name_.find(':'));
    standin::Host::current().set_trace(this);
  }
  ~Recipient() override { standin::Host::current().set_trace(nullptr); }
  Recipient(const Recipient&) = delete;
  Recipient& operator=(const Recipient&) = delete;

  bool is_instance() const { return is_instance_; }

  void plugin_call_begins(std::string_view) override {}
  void plugin_call_ends(std::string_view) override {}
  void host_call_begins(std::string_view call) override {
    is_instance_ = call.find("Object(" + name_) != call.npos;
  }
  void host_call_ends(std::string_view) override {}

 private:
  std::string name_;
  bool is_instance_ = false;
};

class DestroyedAtAnyHostCall : public faults::RoutineTest {
 protected:
  template <class Destroy>
  void sweep(const char* mode, bool iterators_too, Destroy destroy) {
    for (const Routine& routine : routines()) {
      if (routine.part == Part::destructor || (iterators_too && !routine.of_iterator)) continue;
      for (const int elements : {0, 1, 5}) {
        for (const Given given : faults::cases(routine, elements)) {
          const Plain& plain = observe(routine, elements, given);
          for (const std::size_t n : calls_to_fail(plain)) run(plain, n, mode, destroy);
        }
      }
    }
    EXPECT_GT(runs_, 0U);
  }

 private:
  template <class Destroy>
  void run(const Plain& plain, std::size_t n, const char* mode, Destroy destroy) {
    Scene scene(*plain.routine, access(), stock(), plain.elements, plain.given);
    std::string problems;
    try {
      const Recipient recipient(scene.container());
      host().faults().call_at(standin::Faults::any_entry_point, n, [&] {
        if (!recipient.is_instance()) destroy(scene);
      });
      scene.call();
    } catch (const std::exception& exception) {
      problems += std::string("threw ") + exception.what() + "\n";
    }
    host().faults().clear();
    static_cast<void>(host().take_pending_exception());
    problems += taken_misuses();
    // Constructors and conversions leave the former storage behind, whoever dies meanwhile.
    const Effect effect = plain.routine->driver->effect;
    const bool leaves_storage = effect == Effect::abandons || effect == Effect::fills;
    const std::string left = scene.end(true);
    if (!leaves_storage) problems += left;
    expect_none(problems, plain, mode, n);
    ++runs_;
  }

  std::uint64_t runs_ = 0;
};
ZRB_FOR_CLASSES(DestroyedAtAnyHostCall, support::all_classes());

TEST_P(DestroyedAtAnyHostCall, a_container_takes_everything_with_it) {
  sweep("container destroyed", false, [](Scene& scene) { scene.destroy_container(); });
}

}  // namespace
}  // namespace hostile
