#include "core/state.h"

namespace qv {

namespace {
EngineState g_state;
}

EngineState& State() { return g_state; }

void ResetStateForTesting() { g_state = EngineState(); }

}  // namespace qv
