// Plug-ins that are built for this, called as any program would call them.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>

#include "companion/companion_folder.h"
#include "companion/extern_message.h"
#include "companion/quibra.h"
#include "companion/quibra_plugin.h"

namespace quibra {
namespace {

// The arguments of a call about two questions, of which the first has one answer and the second two.
struct Arguments {
    explicit Arguments(const char* pluginName) { std::strcpy(name, pluginName); }

    std::string Call() {
        char* const result = CallExternDLL(name, &window, title, 2, 2, 1, labels, 41, counts, answers, essays);
        error = result == nullptr ? errno : 0;
        std::string text = result == nullptr ? "" : result;
        std::free(result);
        return text;
    }

    char name[QUIBRA_EXTERN_TEXT];
    int32_t window = 77;
    char title[QUIBRA_EXTERN_TEXT] = "Title";
    char label[2][QUIBRA_EXTERN_TEXT] = {"First", "Second"};
    char essay[4][QUIBRA_EXTERN_TEXT] = {"", "", "text", ""};
    char longEssay[1001] = "";
    char* labels[3] = {label[0], label[1], nullptr};
    int16_t counts[3] = {1, 2, 0};
    int16_t answers[5] = {3, 1, 2, 0, 0};
    char* essays[6] = {essay[0], essay[1], essay[2], essay[3], longEssay, nullptr};
    int error = 0;
};

size_t OpenDescriptors() {
    return static_cast<size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

TEST(ExternCall, PluginSeesTheSampleAndLeavesWhatItWrites) {
    Arguments call("answers");
    std::memset(call.longEssay, 'l', 1000);
    call.longEssay[1000] = '\0';
    EXPECT_EQ(call.Call(), "answers,77,Title,2,2,1,41,First:3,Second:12text");
    EXPECT_EQ(call.error, 0);
    EXPECT_STREQ(call.name, "renamed");
    EXPECT_EQ(std::string(call.title), std::string(QUIBRA_EXTERN_TEXT - 1, 't'));
    EXPECT_EQ(call.window, -1);
    EXPECT_STREQ(call.label[1], "label");
    EXPECT_STREQ(call.longEssay, "essay");
    EXPECT_TRUE(call.labels[1] == call.label[1] && call.essays[4] == call.longEssay);
    EXPECT_TRUE(call.counts[1] == 7 && call.counts[2] == 0 && call.answers[4] == 8);
}

TEST(ExternCall, WhatGoesWrongInAPluginIsToldAndLeavesTheArgumentsAlone) {
    const size_t descriptors = OpenDescriptors();
    for (const auto& [name, error] : std::initializer_list<std::pair<const char*, int>>{{"Crash", ECHILD},
                                                                                        {"Hang", ETIMEDOUT},
                                                                                        {"Leave", ECHILD},
                                                                                        {"OverrunByOne", EFAULT},
                                                                                        {"OverrunFar", ECHILD},
                                                                                        {"OverrunNumbers", EFAULT},
                                                                                        {"NoEnd", EFAULT},
                                                                                        {"LongResult", EMSGSIZE},
                                                                                        {"StrayResult", ECHILD},
                                                                                        {"entryless", ENOEXEC},
                                                                                        {"absent", ENOENT},
                                                                                        {"", EINVAL},
                                                                                        {"../plugins/answers", EINVAL},
                                                                                        {"answers.so", EINVAL},
                                                                                        {"/answers", EINVAL},
                                                                                        {"\x83\x4E", EINVAL}}) {
        const auto start = std::chrono::steady_clock::now();
        Arguments call(name);
        const Arguments before = call;
        EXPECT_EQ(call.Call(), "") << name;
        EXPECT_EQ(call.error, error) << name << ": " << std::strerror(call.error);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2 * QUIBRA_EXTERN_SECONDS)) << name;
        EXPECT_STREQ(call.name, name);
        EXPECT_EQ(std::memcmp(call.title, before.title, sizeof call.title), 0) << name;
        EXPECT_EQ(std::memcmp(call.label, before.label, sizeof call.label), 0) << name;
        EXPECT_EQ(std::memcmp(call.counts, before.counts, sizeof call.counts), 0) << name;
    }
    EXPECT_EQ(OpenDescriptors(), descriptors);
    Arguments after("answers");
    EXPECT_NE(after.Call(), "") << "the next call finds nothing of it";
}

TEST(ExternCall, PluginOfTheUserGoesBeforeTheInstalledOne) {
    namespace fs = std::filesystem;
    const fs::path home = fs::temp_directory_path() / ("quibra-plugins-" + std::to_string(getpid()));
    fs::create_directories(home / "quibra/plugins");
    fs::copy_file(CompanionFolder() / "../plugins/LongResult.so", home / "quibra/plugins/answers.so");
    setenv("XDG_DATA_HOME", home.c_str(), 1);
    Arguments call("answers");
    call.Call();
    unsetenv("XDG_DATA_HOME");
    fs::remove_all(home);
    EXPECT_EQ(call.error, EMSGSIZE);
}

TEST(ExternMessage, DamagedBytesAreRefusedOrReadAsWhatTheyAre) {
    ExternCall call{"/p.so", "p", 5, "Title", 1, 2, 3, {"a", "b"}, 9, {1, 2, 0}, {1, 2, 3, 0}, {"", "x", "", ""}};
    const std::string message = EncodeAnswer({0, "result", call});
    std::mt19937 random(20);
    for (int round = 0; round < 20000; ++round) {
        std::string body = message.substr(kLengthBytes);
        for (unsigned i = random() % 4; i > 0; --i)
            body[random() % body.size()] = static_cast<char>(random());
        if (random() % 2) body.resize(random() % body.size());
        ExternAnswer answer;
        if (!DecodeAnswer(body, answer)) continue;
        EXPECT_EQ(EncodeAnswer(answer).substr(kLengthBytes), body);
        EXPECT_TRUE(!FitsInto(answer.written, call) ||
                    EncodeAnswer(answer).size() <= LongestAnswer(call) + kLengthBytes ||
                    answer.result.size() > QUIBRA_EXTERN_RESULT || answer.written.path.size() > call.path.size());
    }
    ExternAnswer whole;
    ASSERT_TRUE(DecodeAnswer(std::string_view(message).substr(kLengthBytes), whole));
    EXPECT_EQ(whole.written, call);
}

}  // namespace
}  // namespace quibra
