// What a program has left behind, as text.
#ifndef ZRB_CONSOLE_LEDGER_REPORT_H
#define ZRB_CONSOLE_LEDGER_REPORT_H

#include <string>

#include "runtime/ledger.h"

namespace console {

// What is still locked that was not at the snapshot, in all and by kind, then handle by handle;
// and every misuse of a handle.
std::string ledger_report(const standin::Ledger& ledger, const standin::Ledger::Snapshot& snapshot);

}  // namespace console

#endif
