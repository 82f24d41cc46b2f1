// The standard decimal conversion of the reader: what atoi does, without its
// undefined overflow.
#ifndef QUORVEX_CORE_DECIMAL_H_
#define QUORVEX_CORE_DECIMAL_H_

#include <cstdint>

namespace qv {

// Skips leading white space, takes an optional sign and the run of digits
// after it, and stops at the first other character. Text without digits
// reads 0; values beyond the 32-bit range read as the nearest limit.
int32_t DecimalToInt32(const char* text);

}  // namespace qv

#endif  // QUORVEX_CORE_DECIMAL_H_
