#include "cases/cases.h"

#include "cases/export_cases.h"
#include "cases/reading_cases.h"
#include "cases/writing_cases.h"

template <class K>
const std::vector<Case<K>>& cases() {
  static const std::vector<Case<K>> all = {
      {"insert_random", &writing_cases::insert_random<K>},
      {"memory", &writing_cases::memory<K>, false, true},
      {"find_hit", &reading_cases::find_hit<K>},
      {"find_dependent", &reading_cases::find_dependent<K>},
      {"find_miss", &reading_cases::find_miss<K>},
      {"iterate", &reading_cases::iterate<K>},
      {"find_iterator", &reading_cases::find_iterator<K>, true},
      {"find_iterator_growth", &reading_cases::find_iterator_growth<K>, true, true},
      {"export_by_iterator", &export_cases::export_by_iterator<K>, true},
      {"keys", &export_cases::keys<K>, true},
      {"key_at", &export_cases::key_at<K>, true},
      {"copy", &writing_cases::copy<K>},
      {"churn", &writing_cases::churn<K>},
      {"destroy", &writing_cases::destroy<K>},
      {"insert_ascending", &writing_cases::insert_ascending<K>},
  };
  return all;
}

template const std::vector<Case<std::int32_t>>& cases();
template const std::vector<Case<REALstring>>& cases();
