#include "apps/quibra/application.h"

#include <cstdlib>
#include <new>

#include "core/runtime_error.h"

namespace quibra {

bool Application::notify(QObject* receiver, QEvent* event) {
    // The outermost event catches: the windows' own frames between it and the error are not made to be unwound twice.
    try {
        return QApplication::notify(receiver, event);
    } catch (const RuntimeError& error) {
        End(error.Text());
    } catch (const std::bad_alloc&) {
        End(RuntimeError(kErrorOutOfMemory).Text());
    }
}

void Application::End(const QString& error) {
    // What the last words themselves break has no more words.
    if (!ending_ && lastWords_) {
        ending_ = true;
        lastWords_(error);
    }
    // No destructors: the survey may be half changed and event handlers are still under way.
    std::_Exit(kBrokenStatus);
}

}  // namespace quibra
