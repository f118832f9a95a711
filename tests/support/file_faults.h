// A disk that fails on demand. In a program that uses this the calls open, write, fsync, rename and unlink of the
// project's own code come here first; unarmed they go straight to the system. One thread only.
#pragma once

#include <string>

namespace quibra {

enum class FaultKind {
    Error,     // the call fails, later ones work
    DeadDisk,  // this call and all later ones fail
    Kill,      // the process ends at once, with exit status kKilledStatus
};

inline constexpr int kKilledStatus = 77;

// The `call`-th call from now on, from 1, fails with the errno value `error`. Of a failing write the first half is
// done.
void ArmFileFault(FaultKind kind, int call, int error);
void DisarmFileFault();
// True when the fault armed last has struck.
bool FileFaultStruck();
// The names of the calls made while it was armed, each with a blank behind it.
const std::string& FileCalls();
// The n-th rename from now on fails with `error`, once; other calls do not count.
void ArmRenameFault(int rename, int error);

}  // namespace quibra
