// The companion library against hosts that are none: a copy of it looks for its host, and for plug-ins, beside itself.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "companion/companion_folder.h"
#include "companion/quibra.h"
#include "companion/quibra_plugin.h"

namespace quibra {
namespace {

namespace fs = std::filesystem;

class PluginHost : public testing::Test {
  protected:
    PluginHost() : place_(fs::temp_directory_path() / ("quibra-host-" + std::to_string(getpid()))) {
        fs::create_directories(place_ / "companion");
        fs::create_directories(place_ / "plugins");
        std::ofstream(place_ / "plugins/any.so") << "never loaded";
        fs::copy_file(CompanionFolder() / "libquibra.so", place_ / "companion/libquibra.so");
        library_ = dlopen((place_ / "companion/libquibra.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    }
    ~PluginHost() override {
        if (library_) dlclose(library_);
        fs::remove_all(place_);
    }

    // The errno value of a call through a host that is this shell script; its socket is descriptor 3.
    int ErrorWith(const std::string& script) {
        const fs::path host = place_ / "companion/quibra-plugin-host";
        std::ofstream(host) << "#!/bin/sh\n" << script << '\n';
        fs::permissions(host, fs::perms::owner_all);
        const auto call = reinterpret_cast<decltype(&CallExternDLL)>(dlsym(library_, "CallExternDLL"));
        char name[QUIBRA_EXTERN_TEXT] = "any";
        char title[QUIBRA_EXTERN_TEXT] = "Title";
        int32_t window = 0;
        int16_t counts[1] = {0};
        char* none[1] = {nullptr};
        char* const result = call(name, &window, title, 0, 0, 0, none, 0, counts, counts, none);
        const int error = result ? 0 : errno;
        std::free(result);
        EXPECT_STREQ(title, "Title");
        return error;
    }

    fs::path place_;
    void* library_ = nullptr;
};

TEST_F(PluginHost, NothingItSaysIsBelieved) {
    ASSERT_NE(library_, nullptr) << dlerror();
    for (const auto& [script, error] : std::initializer_list<std::pair<const char*, int>>{
             {"exit 0", ECHILD},
             {"kill -9 $$", ECHILD},
             {"printf '\\004' >&3", ECHILD},
             {"printf '\\004\\000\\000\\000' >&3", ECHILD},
             {"printf '\\004\\000\\000\\000\\000\\000\\000\\000' >&3; sleep 60", EPROTO},
             {"printf '\\377\\377\\377\\377' >&3; cat /dev/zero >&3", EPROTO},
             {"printf '\\000\\000\\001\\000' >&3; head -c 65536 /dev/zero >&3; sleep 60", EPROTO},
             {"exec 3>&-; sleep 60", ECHILD},
             {"yes >&3; sleep 60", EPROTO}})
        EXPECT_EQ(ErrorWith(script), error) << script;
    fs::remove(place_ / "companion/quibra-plugin-host");
    const fs::path folder = place_ / "companion/quibra-plugin-host";
    fs::create_directory(folder);
    EXPECT_EQ(ErrorWith("true"), EACCES) << "a host that can't be started";
}

}  // namespace
}  // namespace quibra
