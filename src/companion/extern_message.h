// What CallExternDLL and the process that runs a plug-in say to each other: a call, then one answer. The plug-in has
// been in the memory of whoever sends the answer, so an answer is read like a damaged file.
//
// A message is its length (32 bits) and a body of so many bytes. In a body numbers stand as this machine has them in
// memory, both ends being on it; a text and a list have their length (32 bits) in front.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quibra {

// The eleven arguments of a call, and where the library lies.
struct ExternCall {
    std::string path;
    std::string name;
    int32_t window = 0;
    std::string title;
    int16_t question = 0;
    int16_t questionCount = 0;
    int16_t answer = 0;
    std::vector<std::string> labels;
    int32_t id = 0;
    std::vector<int16_t> counts;
    std::vector<int16_t> answers;
    std::vector<std::string> essays;

    bool operator==(const ExternCall&) const = default;
};

struct ExternAnswer {
    int32_t error = 0;  // an errno value; 0: the plug-in has returned
    std::string result;
    ExternCall written;  // the arguments as the plug-in has left them

    bool operator==(const ExternAnswer&) const = default;
};

// Bytes of the length in front of a body.
inline constexpr size_t kLengthBytes = 4;

// A buffer's size for a text: see convention 4 of quibra_plugin.h.
size_t TextCapacity(size_t length);

// Whole messages.
std::string EncodeCall(const ExternCall& call);
std::string EncodeAnswer(const ExternAnswer& answer);

// The length that the first kLengthBytes of a message tell.
uint32_t BodyLength(const char* bytes);
// Bodies. False for one that is no such message.
bool DecodeCall(std::string_view body, ExternCall& call);
bool DecodeAnswer(std::string_view body, ExternAnswer& answer);

// No answer to `call` has a longer body.
size_t LongestAnswer(const ExternCall& call);
// True when all that is written fits back into the arguments of `call`.
bool FitsInto(const ExternCall& written, const ExternCall& call);

}  // namespace quibra
