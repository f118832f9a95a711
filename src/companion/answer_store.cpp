#include "companion/answer_bits.h"

using quibra::ReadField;
using quibra::WriteField;

namespace {

int16_t PopQuestion(const AnswerLayoutRec& question, const int16_t* bits, int16_t* Ano) {
    int16_t count = 0;
    int start = question.BitStart;
    Ano[0] = 0;
    for (; count < question.Anum; ++count, start += question.BitWidth) {
        const int answer = ReadField(bits, start, question.BitWidth);
        if (answer == 0) break;
        Ano[count] = static_cast<int16_t>(answer);
    }
    return count;
}

void PushQuestion(const AnswerLayoutRec& question, int16_t* bits, int count, const int16_t* Ano) {
    int start = question.BitStart;
    for (int i = 0; i < question.Anum; ++i, start += question.BitWidth)
        WriteField(bits, start, question.BitWidth, i < count ? Ano[i] : 0);
}

}  // namespace

void maAno_popC(const AnswerLayoutRec* layout, int32_t Qno, const int16_t* bits, int16_t* AnoCount, int16_t* Ano) {
    *AnoCount = PopQuestion(layout[static_cast<int16_t>(Qno)], bits, Ano);
}

void maAno_pushC(const AnswerLayoutRec* layout, int32_t Qno, int16_t* bits, const int16_t* AnoCount,
                 const int16_t* Ano) {
    PushQuestion(layout[static_cast<int16_t>(Qno)], bits, *AnoCount, Ano);
}

void maAno_pop_verstC(int32_t QuestionCount, const AnswerLayoutRec* layout, const int16_t* bits, int16_t* AnoCounts,
                      int16_t* Ano) {
    const int questions = static_cast<int16_t>(QuestionCount);
    for (int q = 0; q < questions; ++q) {
        AnoCounts[q] = PopQuestion(layout[q], bits, Ano);
        Ano += AnoCounts[q];
    }
}

void maAno_push_verstC(int32_t QuestionCount, const AnswerLayoutRec* layout, int16_t* bits, const int16_t* AnoCounts,
                       const int16_t* Ano) {
    const int questions = static_cast<int16_t>(QuestionCount);
    for (int q = 0; q < questions; ++q) {
        PushQuestion(layout[q], bits, AnoCounts[q], Ano);
        Ano += AnoCounts[q];
    }
}
