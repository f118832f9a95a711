// The session's message bus, as far as it can be told without asking it.
#pragma once

namespace quibra {

// True when this session has a bus. Asking for one where there is none would start one.
bool HasSessionBus();

}  // namespace quibra
