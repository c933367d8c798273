// What a program has left behind, as text.
#include "ledger_report.h"

#include <array>
#include <cstddef>
#include <vector>

namespace console {
namespace {

constexpr std::array<const char*, 4> kind_names = {"string", "object", "variant", "array"};

std::string counted(std::size_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

}  // namespace

std::string ledger_report(const standin::Ledger& ledger,
                          const standin::Ledger::Snapshot& snapshot) {
  const std::vector<standin::HandleReport> held = ledger.held_since(snapshot);
  std::array<std::size_t, kind_names.size()> handles{};
  std::size_t locks = 0;
  for (const standin::HandleReport& report : held) {
    ++handles.at(static_cast<std::size_t>(report.kind));
    locks += static_cast<std::size_t>(report.change);
  }
  std::string text = "ledger: ";
  if (held.empty()) {
    text += "nothing is held\n";
  } else {
    std::string kinds;
    for (std::size_t kind = 0; kind < handles.size(); ++kind) {
      if (handles[kind] == 0) continue;
      kinds += (kinds.empty() ? "" : ", ") + counted(handles[kind], kind_names[kind]);
    }
    text += counted(locks, "lock") + " held on " + kinds + "\n";
    for (const standin::HandleReport& report : held) {
      text += "  " + report.description + ": " +
              counted(static_cast<std::size_t>(report.change), "lock") + "\n";
    }
  }
  if (ledger.violations().empty()) return text + "ledger: no violations\n";
  text += "ledger: " + counted(ledger.violations().size(), "violation") + "\n";
  for (const standin::Violation& violation : ledger.violations()) {
    text += "  " + violation.text() + "\n";
  }
  return text;
}

}  // namespace console
