#include "companion/plugin_host.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "companion/extern_message.h"
#include "companion/plugin_buffers.h"

using namespace quibra;

namespace {

// Leaves the plug-in nothing of the program but the place for messages. Gives the socket, out of the way.
int SetUpProcess() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    constexpr int kOutOfTheWay = 100;
    const int socket = fcntl(kHostSocket, F_DUPFD_CLOEXEC, kOutOfTheWay);
    if (socket < 0) return -1;
    close_range(STDERR_FILENO + 1, static_cast<unsigned>(socket) - 1, 0);
    close_range(static_cast<unsigned>(socket) + 1, UINT_MAX, 0);
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, STDIN_FILENO);
    close(nothing);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    return socket;
}

bool ReadBytes(int socket, char* bytes, size_t size) {
    while (size > 0) {
        const ssize_t count = read(socket, bytes, size);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        bytes += count;
        size -= static_cast<size_t>(count);
    }
    return true;
}

bool WriteBytes(int socket, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(socket, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

bool ReadCall(int socket, ExternCall& call) {
    char length[kLengthBytes];
    if (!ReadBytes(socket, length, sizeof length)) return false;
    std::string body(BodyLength(length), '\0');
    return ReadBytes(socket, body.data(), body.size()) && DecodeCall(body, call);
}

// The plug-in's entry point, or nothing; what is missing is said for its maker.
QuibraExternFunction* LoadPlugin(const std::string& path) {
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* entry = library == nullptr ? nullptr : dlsym(library, "QuibraExternMain");
    if (entry == nullptr) std::fprintf(stderr, "quibra-plugin-host: %s\n", dlerror());
    return reinterpret_cast<QuibraExternFunction*>(entry);
}

// Runs the call and gives an errno value.
int RunPlugin(const ExternCall& call, ExternAnswer& answer) {
    QuibraExternFunction* const function = LoadPlugin(call.path);
    if (function == nullptr) return ENOEXEC;
    const PluginBuffers buffers(call);
    if (!buffers.IsReady()) return ENOMEM;
    const char* const result = buffers.Run(function);
    if (!buffers.Read(answer.written)) return EFAULT;
    if (result == nullptr) return 0;
    answer.result.assign(result, strnlen(result, QUIBRA_EXTERN_RESULT + 1));
    return answer.result.size() <= QUIBRA_EXTERN_RESULT ? 0 : EMSGSIZE;
}

}  // namespace

int main() {
    const int socket = SetUpProcess();
    ExternCall call;
    if (socket < 0 || !ReadCall(socket, call)) {
        std::fputs("quibra-plugin-host: this program is started by quibra itself\n", stderr);
        return 2;
    }
    ExternAnswer answer;
    answer.error = RunPlugin(call, answer);
    if (answer.error != 0) {
        answer.result.clear();
        answer.written = call;
    }
    std::fflush(nullptr);
    const bool told = WriteBytes(socket, EncodeAnswer(answer));
    // Nothing of the plug-in's runs any more, neither destructors nor what it has left for the end.
    _exit(told ? 0 : 1);
}
