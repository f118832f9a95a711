#include "core/display_width.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quibra {

int DisplayWidth(QStringView text) {
    static constexpr std::array<std::pair<char16_t, char16_t>, 7> kWide{{{0x1100, 0x115F},
                                                                         {0x2E80, 0xA4CF},
                                                                         {0xAC00, 0xD7A3},
                                                                         {0xF900, 0xFAFF},
                                                                         {0xFE30, 0xFE4F},
                                                                         {0xFF01, 0xFF60},
                                                                         {0xFFE0, 0xFFE6}}};
    int columns = 0;
    for (const QChar character : text) {
        const char16_t code = character.unicode();
        const bool isWide = std::any_of(kWide.begin(), kWide.end(),
                                        [&](const auto& range) { return range.first <= code && code <= range.second; });
        columns += isWide ? 2 : 1;
    }
    return columns;
}

}  // namespace quibra
