// What the diagnostic build finds wrong, as exceptions in the host's language.
//
// Each raises a "RuntimeException" whose message tells class and operation, what is wrong, and what
// to do instead. Like all raising, none unwinds.
#ifndef ZRB_PLUGIN_DIAGNOSIS_FINDINGS_H
#define ZRB_PLUGIN_DIAGNOSIS_FINDINGS_H

#include "diagnosis/iterator_book.h"

namespace diagnosis {

/// Where a program went wrong, by the names that it used.
struct Call {
  const char* class_name;
  const char* operation;
};

void raise_stale(Call call, Loss loss);
void raise_other_container(Call call);
void raise_different_containers(Call call);
void raise_step_past_the_end(Call call);
void raise_step_before_the_first(Call call);
void raise_nothing_to_read(Call call);
void raise_nothing_to_remove(Call call);

}  // namespace diagnosis

#endif
