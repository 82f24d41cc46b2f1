// Binary data as the text that ParseHexBytes reads back.
#include <cstdio>

#include "quorvex/symbols.h"

extern "C" {

int FormatHexBytes(const uint8_t* bytes, uint16_t count, char* destination, int mode) {
  // Every byte of a settings entry's value passes through here when its
  // section is rewritten: digits are looked up, not formatted.
  static const char kDigits[] = "0123456789ABCDEF";
  auto put = [&](int at, uint8_t byte) {
    destination[2 * at] = kDigits[byte >> 4];
    destination[2 * at + 1] = kDigits[byte & 0xF];
  };
  // A double word is stored least significant byte first and written the
  // other way round, so that the text reads as the number.
  const int written = mode == 1 ? 4 : count;
  for (int i = 0; i < written; ++i) put(i, mode == 1 ? bytes[3 - i] : bytes[i]);
  destination[2 * written] = '\0';
  return 1;
}

}  // extern "C"
