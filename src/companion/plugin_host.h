// quibra-plugin-host: the program that runs one call of a plug-in. It is started by the companion library alone.
#pragma once

namespace quibra {

// The descriptor under which it finds the socket for a call and its answer (companion/extern_message.h).
inline constexpr int kHostSocket = 3;

}  // namespace quibra
