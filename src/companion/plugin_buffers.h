// The arguments of a plug-in as it sees them: C arrays and buffers of told sizes. Behind each lie bytes that nobody may
// change, and behind the last one a page that nobody may touch, so a plug-in that writes too far is found out or
// stopped.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "companion/extern_message.h"
#include "companion/quibra_plugin.h"

namespace quibra {

class PluginBuffers {
  public:
    // Memory for the arguments of `call`. `IsReady` is false when there is none.
    explicit PluginBuffers(const ExternCall& call);
    ~PluginBuffers();
    PluginBuffers(const PluginBuffers&) = delete;
    PluginBuffers& operator=(const PluginBuffers&) = delete;

    bool IsReady() const { return memory_ != nullptr; }
    const char* Run(QuibraExternFunction* function) const;
    // What stands in the buffers now; false when something was written past an end.
    bool Read(ExternCall& written) const;

  private:
    struct Piece {
        char* start;
        size_t size;
    };

    Piece Take(size_t size);
    Piece TakeText(const std::string& text);
    std::vector<Piece> TakeTexts(const std::vector<std::string>& texts);
    Piece TakePointers(const std::vector<Piece>& texts);
    Piece TakeNumbers(const std::vector<int16_t>& numbers);

    const ExternCall& call_;
    char* memory_ = nullptr;
    size_t size_ = 0;
    char* free_ = nullptr;
    std::vector<Piece> fences_;  // what must stay as it is
    Piece name_{}, window_{}, title_{}, labelPointers_{}, counts_{}, answers_{}, essayPointers_{};
    std::vector<Piece> labels_;
    std::vector<Piece> essays_;
};

}  // namespace quibra
