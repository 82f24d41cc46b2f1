// One physical line, with its length.
#ifndef QUORVEX_CORE_READ_LINE_H_
#define QUORVEX_CORE_READ_LINE_H_

#include "quorvex/base.h"

namespace qv {

// ReadProfileLine, giving the line's length (-1 where it gives 0), so that
// a reader of records need not count it again.
long ReadLine(QvFile file, char* buffer, int size);

}  // namespace qv

#endif  // QUORVEX_CORE_READ_LINE_H_
