#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include "companion/extern_message.h"
#include "companion/host_process.h"
#include "companion/quibra.h"

using namespace quibra;

namespace {

bool IsBareName(const std::string& name) {
    constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";
    constexpr size_t kLongestName = 64;
    return !name.empty() && name.size() <= kLongestName && name.find_first_not_of(kLetters) == std::string::npos;
}

// The folder in which this library lies; empty when nobody can tell.
std::string OwnFolder() {
    Dl_info own{};
    // Not by CallExternDLL, whose name another copy of the library may have taken.
    if (dladdr(reinterpret_cast<const void*>(&IsBareName), &own) == 0 || own.dli_fname == nullptr) return {};
    char* real = realpath(own.dli_fname, nullptr);
    if (real == nullptr) return {};
    std::string path = real;
    std::free(real);
    return path.substr(0, path.rfind('/'));
}

// Where the user's own data lie; a relative path is none.
std::string DataFolder() {
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data != nullptr && data[0] == '/') return data;
    const char* home = std::getenv("HOME");
    return home != nullptr && home[0] == '/' ? std::string(home) + "/.local/share" : std::string();
}

// The plug-in of that bare name; empty when no folder has it.
std::string FindPlugin(const std::string& name, const std::string& own) {
    const std::string data = DataFolder();
    for (const std::string& folder : {data.empty() ? data : data + "/quibra/plugins", own + "/../plugins"}) {
        const std::string path = folder + "/" + name + ".so";
        if (!folder.empty() && access(path.c_str(), F_OK) == 0) return path;
    }
    return {};
}

// A text in a buffer of told size, see convention 4 of quibra_plugin.h.
void CopyBack(const std::string& text, char* buffer) {
    std::memcpy(buffer, text.c_str(), text.size() + 1);
}

char* Fail(int error) {
    errno = error;
    return nullptr;
}

// The arguments of CallExternDLL, as they came.
struct Arguments {
    char* name;
    int32_t* window;
    char* title;
    char** labels;
    int16_t* counts;
    int16_t* answers;
    char** essays;

    void Read(ExternCall& call) const {
        call.name = name;
        call.window = *window;
        call.title = title;
        for (char** label = labels; *label != nullptr; ++label)
            call.labels.emplace_back(*label);
        for (char** essay = essays; *essay != nullptr; ++essay)
            call.essays.emplace_back(*essay);
        call.counts.assign(counts, counts + call.labels.size() + 1);
        call.answers.assign(answers, answers + call.essays.size());
    }
    void Write(const ExternCall& written) const {
        CopyBack(written.name, name);
        *window = written.window;
        CopyBack(written.title, title);
        for (size_t q = 0; q < written.labels.size(); ++q)
            CopyBack(written.labels[q], labels[q]);
        for (size_t i = 0; i < written.essays.size(); ++i)
            CopyBack(written.essays[i], essays[i]);
        std::copy(written.counts.begin(), written.counts.end(), counts);
        std::copy(written.answers.begin(), written.answers.end(), answers);
    }
};

char* Call(ExternCall& call, const Arguments& arguments) {
    arguments.Read(call);
    if (!IsBareName(call.name)) return Fail(EINVAL);
    const std::string own = OwnFolder();
    call.path = FindPlugin(call.name, own);
    if (call.path.empty()) return Fail(ENOENT);

    std::string body;
    ExternAnswer answer;
    const int error = RunHost(own + "/quibra-plugin-host", EncodeCall(call), LongestAnswer(call), body);
    if (error != 0) return Fail(error);
    if (!DecodeAnswer(body, answer) || !FitsInto(answer.written, call)) return Fail(EPROTO);
    if (answer.error != 0) return Fail(answer.error);

    char* result = strdup(answer.result.c_str());
    if (result != nullptr) arguments.Write(answer.written);
    return result;
}

}  // namespace

char* CallExternDLL(char* name, int32_t* window, char* title, int16_t question, int16_t question_count, int16_t answer,
                    char** labels, int32_t id, int16_t* counts, int16_t* answers, char** essays) {
    try {
        ExternCall call;
        call.question = question;
        call.questionCount = question_count;
        call.answer = answer;
        call.id = id;
        return Call(call, {name, window, title, labels, counts, answers, essays});
    } catch (const std::bad_alloc&) {
        return Fail(ENOMEM);
    } catch (...) {
        return Fail(EPROTO);
    }
}
