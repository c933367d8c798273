#include "keys/finish.h"

void finish_despite_exceptions(void (*remove_rest)(void* rest), void* rest) {
  try {
    remove_rest(rest);
  } catch (...) {
    for (bool finished = false; !finished;) {
      try {
        remove_rest(rest);
        finished = true;
      } catch (...) {  // the first one is the cause
      }
    }
    throw;
  }
}
