// The process in which a plug-in runs, seen from the library that starts it.
#pragma once

#include <cstddef>
#include <string>

namespace quibra {

// Starts the program `host`, sends it `message` and takes the body of one answer, of at most `longest` bytes, all
// within QUIBRA_EXTERN_SECONDS. The process is gone when this returns. Gives 0 or an errno value: ETIMEDOUT, ECHILD
// when it ended without an answer, EPROTO for too long an answer, or why it could not be started.
int RunHost(const std::string& host, const std::string& message, size_t longest, std::string& body);

}  // namespace quibra
