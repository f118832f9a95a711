// The number of the run-time error that a call ends in; 0 when it ends in none.
#pragma once

#include <functional>

#include "core/runtime_error.h"

namespace quibra {

inline int ErrorOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const RuntimeError& error) {
        return error.Number();
    }
    return 0;
}

}  // namespace quibra
