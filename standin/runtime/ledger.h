// The ledger: which handles live, who holds how many locks, and what was done wrong with them.
//
// It works when the host was made with `strict_ledger` or `instrument`. With `strict_ledger`, every
// handle that a plugin passes to an entry point is checked, and released handles are kept out of
// use, so that a later use of one is certain to be noticed; the call concerned is not carried out.
#ifndef ZRB_STANDIN_RUNTIME_LEDGER_H
#define ZRB_STANDIN_RUNTIME_LEDGER_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "runtime/handles.h"

namespace standin {

struct Violation {
  enum class Kind : std::uint8_t {
    null_handle,        // null where the service demands a handle
    double_release,     // more locks removed than there were
    use_after_release,  // a handle that was released for good
    unknown_handle,     // never was a handle of this host
    wrong_kind,         // a string where an object belongs, and the like
    damaged_instance,   // someone wrote outside an instance's data
    kept_by_destructor  // an object that its own destructor locked
  };
  Kind kind;
  std::string entry_point;  // what was called; "the host" when no entry point was
  std::string handle;       // description of the handle
  std::string text() const;
};

struct HandleReport {
  const void* handle;
  HandleKind kind;
  std::uint64_t serial;  // rises with every handle made
  std::uint32_t locks;
  std::int64_t change;  // since the snapshot; equals `locks` where no snapshot is concerned
  std::string description;
};

class Ledger {
 public:
  using Snapshot = std::unordered_map<std::uint64_t, std::uint32_t>;  // locks by serial number

  Ledger(bool active, bool strict);
  ~Ledger();
  Ledger(const Ledger&) = delete;
  Ledger& operator=(const Ledger&) = delete;

  bool active() const { return active_; }
  bool strict() const { return strict_; }

  // Everything that lives, by serial number.
  std::vector<HandleReport> live() const;
  std::size_t live_count() const { return live_.size(); }

  Snapshot snapshot() const;
  // What gained locks since, or came into being and still lives.
  std::vector<HandleReport> held_since(const Snapshot& snapshot) const;
  // The same, together with what lost locks and still lives (negative change).
  std::vector<HandleReport> changes_since(const Snapshot& snapshot) const;

  const std::vector<Violation>& violations() const { return violations_; }
  void clear_violations() { violations_.clear(); }
  // Frees what a strict ledger keeps of released handles, so that a host can serve for long. They
  // are unknown handles from then on.
  void forget_released();
  // Called at every violation, once it is recorded: to fail at once.
  void on_violation(std::function<void(const Violation&)> hook) { hook_ = std::move(hook); }

  // For the runtime itself.
  void record(Violation::Kind kind, std::string handle_description);
  void created(void* handle, HandleKind kind);
  // Takes over the block of a handle that died if it is to stay out of use; otherwise the caller
  // frees it.
  bool died(void* handle, std::string description);
  // What an entry point demands of a handle.
  enum class Demand : std::uint8_t { string, array, object, object_or_array };
  // Whether the handle meets it; records what is wrong otherwise. Null is in order here.
  bool check(const void* handle, Demand demand, bool is_release);
  // `describe`, without touching what is no live handle.
  std::string describe_safely(const void* handle) const;
  // The entry point being called, for violations.
  void enter(const char* entry_point) { entry_points_.push_back(entry_point); }
  void leave() { entry_points_.pop_back(); }
  // The ledger to tell of births and deaths; null while no host has an active one.
  static Ledger* active_one() noexcept { return active_one_; }

 private:
  bool active_;
  bool strict_;
  std::unordered_map<const void*, HandleKind> live_;
  std::unordered_map<void*, std::string> dead_;  // with the description from before its death
  std::vector<Violation> violations_;
  std::function<void(const Violation&)> hook_;
  std::vector<const char*> entry_points_;
  static inline Ledger* active_one_ = nullptr;
};

// One line a handle: `string #12 "abc" (UTF-8): 2 locks`.
std::string text(const std::vector<HandleReport>& reports);

}  // namespace standin

#endif
