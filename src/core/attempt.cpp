#include "core/attempt.h"

#include "core/runtime_error.h"

namespace quibra {

bool Attempt(UserInterface& ui, const std::function<void()>& step) {
    try {
        step();
        return true;
    } catch (const RuntimeError& error) {
        ui.Message(error.Text(), kWarning);
        return false;
    }
}

}  // namespace quibra
