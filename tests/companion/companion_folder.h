// Where the companion library that the tests are linked with lies.
#pragma once

#include <dlfcn.h>

#include <filesystem>

#include "companion/quibra.h"

namespace quibra {

inline std::filesystem::path CompanionFolder() {
    Dl_info library{};
    dladdr(reinterpret_cast<const void*>(&CallExternDLL), &library);
    return std::filesystem::canonical(library.dli_fname).parent_path();
}

}  // namespace quibra
