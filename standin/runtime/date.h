// The host's Date: a point in time, to the second, in the proleptic Gregorian calendar.
#ifndef ZRB_STANDIN_RUNTIME_DATE_H
#define ZRB_STANDIN_RUNTIME_DATE_H

#include <cstdint>
#include <string>

#include "runtime/classes.h"

namespace standin {

// An instance of the current host's Date. `total_seconds` counts from 1904-01-01 00:00:00.
ObjectRef make_date(double total_seconds);
bool is_date(REALobject object);
double date_total_seconds(REALobject date);
std::string date_sql_text(REALobject date);  // "2012-05-17 10:00:00"

}  // namespace standin

#endif
