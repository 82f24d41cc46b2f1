// Binary data as the text that ParseHexBytes reads back.
#include <cstdio>

#include "quorvex/symbols.h"

extern "C" {

int FormatHexBytes(const uint8_t* bytes, uint16_t count, char* destination, int mode) {
  destination[0] = '\0';
  // A double word is stored least significant byte first and written the
  // other way round, so that the text reads as the number.
  if (mode == 1) {
    for (int i = 0; i < 4; ++i) snprintf(destination + 2 * i, 3, "%02X", bytes[3 - i]);
    return 1;
  }
  for (int i = 0; i < count; ++i) snprintf(destination + 2 * i, 3, "%02X", bytes[i]);
  return 1;
}

}  // extern "C"
