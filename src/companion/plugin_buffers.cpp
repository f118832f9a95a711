#include "companion/plugin_buffers.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace quibra {

namespace {

constexpr size_t kFence = 16;  // also what buffers are aligned to
constexpr char kFenceByte = '\xA5';

size_t RoundUp(size_t size, size_t step) {
    return (size + step - 1) / step * step;
}

// A buffer with its fence. The fence begins at the buffer's very end and takes up what is left to the next boundary.
size_t Room(size_t size) {
    return RoundUp(size, kFence) + kFence;
}

size_t RoomOfTexts(const std::vector<std::string>& texts) {
    size_t room = Room((texts.size() + 1) * sizeof(char*));
    for (const std::string& text : texts)
        room += Room(TextCapacity(text.size()));
    return room;
}

}  // namespace

PluginBuffers::PluginBuffers(const ExternCall& call) : call_(call) {
    const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    const size_t room = kFence + Room(TextCapacity(call.name.size())) + Room(sizeof(int32_t)) +
                        Room(TextCapacity(call.title.size())) + RoomOfTexts(call.labels) + RoomOfTexts(call.essays) +
                        Room(call.counts.size() * sizeof(int16_t)) + Room(call.answers.size() * sizeof(int16_t));
    size_ = RoundUp(room, page) + 2 * page;
    void* memory = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return;
    memory_ = static_cast<char*>(memory);
    mprotect(memory_, page, PROT_NONE);
    mprotect(memory_ + size_ - page, page, PROT_NONE);

    // The end of the pieces is the forbidden page's beginning.
    free_ = memory_ + size_ - page - room;
    free_ -= reinterpret_cast<uintptr_t>(free_) % kFence;
    Take(0);
    name_ = TakeText(call.name);
    window_ = Take(sizeof(int32_t));
    std::memcpy(window_.start, &call.window, sizeof call.window);
    title_ = TakeText(call.title);
    labels_ = TakeTexts(call.labels);
    labelPointers_ = TakePointers(labels_);
    counts_ = TakeNumbers(call.counts);
    answers_ = TakeNumbers(call.answers);
    essays_ = TakeTexts(call.essays);
    essayPointers_ = TakePointers(essays_);
}

PluginBuffers::~PluginBuffers() {
    if (memory_ != nullptr) munmap(memory_, size_);
}

const char* PluginBuffers::Run(QuibraExternFunction* function) const {
    return function(name_.start, reinterpret_cast<int32_t*>(window_.start), title_.start, call_.question,
                    call_.questionCount, call_.answer, reinterpret_cast<char**>(labelPointers_.start), call_.id,
                    reinterpret_cast<int16_t*>(counts_.start), reinterpret_cast<int16_t*>(answers_.start),
                    reinterpret_cast<char**>(essayPointers_.start));
}

bool PluginBuffers::Read(ExternCall& written) const {
    for (const Piece& fence : fences_)
        if (std::any_of(fence.start, fence.start + fence.size, [](char byte) { return byte != kFenceByte; }))
            return false;
    const auto text = [](const Piece& piece, std::string& to) {
        const size_t length = strnlen(piece.start, piece.size);
        to.assign(piece.start, length);
        return length < piece.size;
    };
    const auto texts = [&text](const std::vector<Piece>& pieces, std::vector<std::string>& to) {
        to.resize(pieces.size());
        return std::equal(pieces.begin(), pieces.end(), to.begin(), text);
    };
    const auto numbers = [](const Piece& piece, std::vector<int16_t>& to) {
        to.resize(piece.size / sizeof(int16_t));
        std::memcpy(to.data(), piece.start, piece.size);
    };
    written = {};
    std::memcpy(&written.window, window_.start, sizeof written.window);
    numbers(counts_, written.counts);
    numbers(answers_, written.answers);
    return text(name_, written.name) && text(title_, written.title) && texts(labels_, written.labels) &&
           texts(essays_, written.essays);
}

PluginBuffers::Piece PluginBuffers::Take(size_t size) {
    const Piece piece{free_, size};
    const size_t room = size == 0 ? kFence : Room(size);
    free_ += room;
    fences_.push_back({piece.start + size, room - size});
    std::memset(fences_.back().start, kFenceByte, fences_.back().size);
    return piece;
}

PluginBuffers::Piece PluginBuffers::TakeText(const std::string& text) {
    const Piece piece = Take(TextCapacity(text.size()));
    std::memcpy(piece.start, text.c_str(), text.size() + 1);
    return piece;
}

std::vector<PluginBuffers::Piece> PluginBuffers::TakeTexts(const std::vector<std::string>& texts) {
    std::vector<Piece> pieces;
    for (const std::string& text : texts)
        pieces.push_back(TakeText(text));
    return pieces;
}

// A text's address each, and a null pointer behind them, which fresh memory is.
PluginBuffers::Piece PluginBuffers::TakePointers(const std::vector<Piece>& texts) {
    const Piece piece = Take((texts.size() + 1) * sizeof(char*));
    auto* pointers = reinterpret_cast<char**>(piece.start);
    for (size_t i = 0; i < texts.size(); ++i)
        pointers[i] = texts[i].start;
    return piece;
}

PluginBuffers::Piece PluginBuffers::TakeNumbers(const std::vector<int16_t>& numbers) {
    const Piece piece = Take(numbers.size() * sizeof(int16_t));
    std::memcpy(piece.start, numbers.data(), piece.size);
    return piece;
}

}  // namespace quibra
