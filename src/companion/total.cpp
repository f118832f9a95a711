#include "companion/answer_bits.h"

using namespace quibra;

int32_t VerstTotalC(const LimitLine* lines, const AnswerLayoutRec* layout, int32_t sampleFlags, const int16_t* bits,
                    int32_t qno, int32_t* counts, int32_t rank) {
    if (!lmDoC(lines, layout, sampleFlags, bits)) return 0;
    const AnswerLayoutRec& question = layout[static_cast<int16_t>(qno)];
    const int position = static_cast<int16_t>(rank);
    if (position > 0) {
        const int answer = AnswerAt(question, bits, position - 1);
        if (answer < 128) ++counts[answer];
        return 1;
    }
    int answers = 0;
    for (int start = question.BitStart; answers < question.Anum; ++answers, start += question.BitWidth) {
        const int answer = ReadField(bits, start, question.BitWidth);
        if (answer == 0) break;
        if (answer < 128) ++counts[answer];
    }
    if (answers == 0) ++counts[0];
    return 1;
}
