#include "records/resource_names.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/state.h"
#include "quorvex/resources.h"

namespace qv {
namespace {

// Behind the seven-character "MP_GEN_" and the five-character prefix.
constexpr size_t kNumberPosition = 12;

}  // namespace

void NoteResourceName(const char* name) {
  if (name == nullptr || strstr(name, RESOURCE_GENERATED_PREFIX) == nullptr) return;
  if (strlen(name) <= kNumberPosition) return;
  long long number = strtoll(name + kNumberPosition, nullptr, 10);
  // A number the counter cannot pass is left alone; names made from the
  // counter can never reach it.
  if (number < 0 || number >= static_cast<long long>(UINT32_MAX)) return;
  uint32_t& counter = State().resource_counter;
  if (counter <= number) counter = static_cast<uint32_t>(number) + 1;
}

void NextResourceName(char* name, size_t size) {
  uint32_t& counter = State().resource_counter;
  snprintf(name, size, "%s%s%11.11ld", RESOURCE_GENERATED_PREFIX, State().name_prefix,
           static_cast<long>(counter));
  ++counter;
}

}  // namespace qv
