// Currency: a number of ten-thousandths.
#ifndef ZRB_STANDIN_RUNTIME_CURRENCY_H
#define ZRB_STANDIN_RUNTIME_CURRENCY_H

#include <cstdint>

namespace standin {

inline constexpr std::int64_t currency_scale = 10000;
// For numbers with a fraction.
inline constexpr double real_currency_scale = 10000;

}  // namespace standin

#endif
