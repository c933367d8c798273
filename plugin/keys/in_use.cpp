#include "keys/in_use.h"

#include <utility>

#include "host/locked_handle.h"
#include "keys/finish.h"

void Usable::end_last_use(Step finish_work, Step destroy_doomed) {
  struct End {
    Usable& storage;
    Step destroy_doomed;
    ~End() noexcept(false) {
      --storage.uses_;
      if (std::exchange(storage.doomed_, false)) destroy_doomed(storage);
    }
  };
  release_in_destructor([&] {
    const End end{*this, destroy_doomed};
    finish_despite_exceptions([&] {
      while (std::exchange(has_work_, false)) finish_work(*this);
    });
  });
}
