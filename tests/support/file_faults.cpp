#include "support/file_faults.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
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

int fsync(int descriptor) {
    if (Strikes("fsync")) return Fail();
    return Next<int(int)>("fsync")(descriptor);
}

int rename(const char* from, const char* to) noexcept {
    if (Strikes("rename")) return Fail();
    return Next<int(const char*, const char*)>("rename")(from, to);
}

int unlink(const char* path) noexcept {
    if (Strikes("unlink")) return Fail();
    return Next<int(const char*)>("unlink")(path);
}

}  // extern "C"
