// Comma-separated lists of names held in one field.
#include <cstring>

#include "core/text_chars.h"
#include "quorvex/symbols.h"

extern "C" {

int ListContainsName(const char* key, const char* name, const char* list) {
  // Only the "$$" key stands for a list of names; any other key names one
  // thing and is compared elsewhere.
  if (key == nullptr || name == nullptr || list == nullptr || strcmp(key, "$$") != 0) return 0;
  size_t length = strlen(name);
  for (const char* item = list;;) {
    const char* comma = strchr(item, ',');
    size_t item_length = comma != nullptr ? static_cast<size_t>(comma - item) : strlen(item);
    if (item_length == length && strncmp(item, name, length) == 0) return 1;
    if (comma == nullptr) return 0;
    item = comma + 1;
  }
}

int NextListItem(const char** cursor, char* destination) {
  if (cursor == nullptr || *cursor == nullptr) return 0;
  const char* item = *cursor;
  const char* comma = strchr(item, ',');
  const char* end = comma != nullptr ? comma : item + strlen(item);
  while (item < end && qv::IsBlank(*item)) ++item;
  while (end > item && qv::IsBlank(end[-1])) --end;
  memcpy(destination, item, static_cast<size_t>(end - item));
  destination[end - item] = '\0';
  *cursor = comma != nullptr ? comma + 1 : nullptr;
  return 1;
}

}  // extern "C"
