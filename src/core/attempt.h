// Where a run-time error may reach the user and the program go on.
//
// Whoever knows that a step leaves the survey as it was when it throws runs it through Attempt. Errors of all other
// steps are left alone: they reach the program's top, which writes the rescue file and ends.
#pragma once

#include <functional>

#include "core/user_interface.h"

namespace quibra {

// Runs `step`; false when it threw a RuntimeError, whose text the user has then read.
bool Attempt(UserInterface& ui, const std::function<void()>& step);

}  // namespace quibra
