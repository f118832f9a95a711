#include "support/file_faults.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace quibra {

namespace {

struct {
    bool armed = false;
    bool renamesOnly = false;
    bool struck = false;
    FaultKind kind = FaultKind::Error;
    int callsLeft = 0;
    int error = 0;
    std::string calls;
} fault;

bool noLinks = false;

bool Strikes(const char* call) {
    if (!fault.armed) return false;
    fault.calls.append(call).append(1, ' ');
    if (fault.renamesOnly && std::strcmp(call, "rename") != 0) return false;
    if (fault.struck) return fault.kind == FaultKind::DeadDisk;
    fault.struck = --fault.callsLeft == 0;
    return fault.struck;
}

int Fail() {
    if (fault.kind == FaultKind::Kill) _exit(kKilledStatus);
    if (fault.kind == FaultKind::Interrupt) std::raise(SIGINT);
    errno = fault.error;
    return -1;
}

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

void ArmFileFault(FaultKind kind, int call, int error) {
    fault = {.armed = true, .kind = kind, .callsLeft = call, .error = error, .calls = {}};
}

void ArmRenameFault(int rename, int error) {
    fault = {.armed = true, .renamesOnly = true, .callsLeft = rename, .error = error, .calls = {}};
}

void RefuseLinks(bool on) {
    noLinks = on;
}

void DisarmFileFault() {
    fault.armed = false;
}

bool FileFaultStruck() {
    return fault.struck;
}

const std::string& FileCalls() {
    return fault.calls;
}

}  // namespace quibra

using quibra::Fail;
using quibra::fault;
using quibra::Next;
using quibra::noLinks;
using quibra::Strikes;

extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    if (Strikes("open")) return Fail();
    return Next<int(const char*, int, ...)>("open")(path, flags, mode);
}

ssize_t write(int descriptor, const void* bytes, size_t size) {
    const auto next = Next<ssize_t(int, const void*, size_t)>("write");
    if (!Strikes("write")) return next(descriptor, bytes, size);
    if (fault.kind != quibra::FaultKind::DeadDisk) next(descriptor, bytes, size / 2);
    return Fail();
}

// The calls that do nothing before they fail.
#define QUIBRA_FAULTY(name, parameters, arguments, ...)                         \
    int name parameters __VA_ARGS__ {                                           \
        return Strikes(#name) ? Fail() : Next<int parameters>(#name) arguments; \
    }
QUIBRA_FAULTY(fsync, (int descriptor), (descriptor))
QUIBRA_FAULTY(fdatasync, (int descriptor), (descriptor))
QUIBRA_FAULTY(flock, (int descriptor, int operation), (descriptor, operation), noexcept)
QUIBRA_FAULTY(fchmod, (int descriptor, mode_t mode), (descriptor, mode), noexcept)
QUIBRA_FAULTY(fchown, (int descriptor, uid_t owner, gid_t group), (descriptor, owner, group), noexcept)
QUIBRA_FAULTY(rename, (const char* from, const char* to), (from, to), noexcept)
QUIBRA_FAULTY(unlink, (const char* path), (path), noexcept)
#undef QUIBRA_FAULTY

int link(const char* from, const char* to) noexcept {
    if (noLinks) {
        errno = EPERM;
        return -1;
    }
    return Strikes("link") ? Fail() : Next<int(const char*, const char*)>("link")(from, to);
}

// Closed it is, whatever it says.
int close(int descriptor) {
    const bool strikes = Strikes("close");
    const int result = Next<int(int)>("close")(descriptor);
    return strikes ? Fail() : result;
}

}  // extern "C"
