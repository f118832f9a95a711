// A disk that fails on demand. In a program that uses this the calls of the project's own code that make, write, flush,
// lock, name and close files come here first; unarmed they go straight to the system. One thread only.
#pragma once

#include <string>

namespace quibra {

enum class FaultKind {
    Error,      // the call fails, later ones work
    DeadDisk,   // this call and all later ones fail
    Interrupt,  // the process gets a SIGINT
    Kill,       // the process ends at once, with exit status kKilledStatus
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
// While on, the disk is of a kind that knows no second names for a file.
void RefuseLinks(bool on);
// The n-th rename from now on fails with `error`, once; other calls do not count.
void ArmRenameFault(int rename, int error);

}  // namespace quibra
