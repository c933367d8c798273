// What is told when the process crashes, as a plugin may make it.
#ifndef ZRB_CONSOLE_CRASH_REPORT_H
#define ZRB_CONSOLE_CRASH_REPORT_H

#include <string>

#include "output_buffer.h"

namespace console {

// From now on a crash writes out what the output holds, and tells on standard error where the
// program was. The process then ends by the signal as it would have. The output must outlive the
// process' last statement.
void report_crashes(OutputBuffer& output);

// The file that positions are in; it must live as long.
void name_program_in_crash_report(const std::string& program);

}  // namespace console

#endif
