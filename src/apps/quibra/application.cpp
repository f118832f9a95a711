#include "apps/quibra/application.h"

#include <malloc.h>

#include <cstdlib>
#include <new>

#include "core/runtime_error.h"

namespace quibra {

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    // The memory of a survey's texts is joined piece by piece as they are freed, not of a million at once while the
    // windows wait.
    mallopt(M_MXFAST, 0);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    // Qt's frames between here and the error are not made to be unwound: nothing but the end can follow.
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
