// A call and an answer of a plug-in's process from any bytes: refused, or read as what they are and written back so.
#include <cstdint>
#include <cstdlib>

#include "companion/extern_message.h"

using namespace quibra;

namespace {

void Claim(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view body(reinterpret_cast<const char*>(data), size);
    ExternCall call;
    if (DecodeCall(body, call)) {
        Claim(std::string_view(EncodeCall(call)).substr(kLengthBytes) == body);
        Claim(LongestAnswer(call) >= size);
    }
    ExternAnswer answer;
    if (DecodeAnswer(body, answer)) {
        Claim(std::string_view(EncodeAnswer(answer)).substr(kLengthBytes) == body);
    }
    return 0;
}
