#include "entry/answer_scan.h"

#include <algorithm>
#include <bit>

#include "core/plane_masks.h"

namespace quibra {

namespace {

constexpr uint64_t kAll = ~uint64_t{0};

bool IsEmpty(const BlockMask& mask, int words) {
    return std::all_of(mask.begin(), mask.begin() + words, [](uint64_t word) { return word == 0; });
}

void Add(BlockMask& sum, const BlockMask& mask, int words) {
    for (size_t w = 0; w < static_cast<size_t>(words); ++w)
        sum[w] |= mask[w];
}

}  // namespace

AnswerScan::AnswerScan(const Survey& survey, bool repeats)
    : survey_(survey), repeats_(repeats), planes_(survey, survey.AnswerSlots) {
    for (int q = 0; q < survey.QuestionCount; ++q) {
        Question question{&survey.QIdx[q], survey.Questions[q].ChoiceCount - 1, {}, -1};
        for (int c = 1; c <= question.largest; ++c)
            if (survey.Choices(c, q).Has(kExclusive)) question.exclusive.push_back(c);
        const LimitColumn limit = survey.QLimit.Column(q);
        if (limit[1].a != 0 || limit[0].b != 0) {
            question.condition = static_cast<int>(conditions_.size());
            conditions_.emplace_back(survey, LimitList(limit));
        }
        questions_.push_back(std::move(question));
    }
}

BlockMask AnswerScan::Suspects(qint32 first, int count) {
    planes_.Load(first, count);
    const BlockMask valid = planes_.Valid();
    BlockMask suspects{};
    for (const Question& question : questions_) {
        BlockMask answered = valid;
        const AnswerLayoutRec& layout = *question.layout;
        if (layout.Anum == 0) continue;
        KeepFilled(Field(layout, 0), layout.BitWidth, planes_.Words(), answered);
        if (IsEmpty(answered, planes_.Words())) continue;
        AddAbsent(question, answered, suspects);
        AddUnfit(question, answered, suspects);
        if (layout.Anum > 1) AddMixed(question, answered, suspects);
    }
    return suspects;
}

void AnswerScan::ForEachSuspect(const std::function<void(qint32 dno)>& visit) {
    for (qint32 first = 0; first < survey_.SampleCount(); first += kBlockSamples) {
        const int count = std::min<qint32>(kBlockSamples, survey_.SampleCount() - first);
        const BlockMask suspects = Suspects(first, count);
        for (size_t w = 0; w < suspects.size(); ++w)
            for (uint64_t word = suspects[w]; word != 0; word &= word - 1)
                visit(first + static_cast<qint32>(w) * 64 + std::countr_zero(word));
    }
}

const uint64_t* AnswerScan::Field(const AnswerLayoutRec& layout, int place) {
    return planes_.Field(layout.BitStart + place * layout.BitWidth, layout.BitWidth);
}

// A field has room for larger numbers than the question has choices.
void AnswerScan::AddAbsent(const Question& question, const BlockMask& answered, BlockMask& suspects) {
    const AnswerLayoutRec& layout = *question.layout;
    if (question.largest == (1 << layout.BitWidth) - 1) return;
    for (int i = 0; i < layout.Anum; ++i) {
        BlockMask absent = answered;
        KeepOrdered(Field(layout, i), layout.BitWidth, question.largest + 1, true, planes_.Words(), absent);
        Add(suspects, absent, planes_.Words());
    }
}

void AnswerScan::AddUnfit(const Question& question, const BlockMask& answered, BlockMask& suspects) {
    if (question.condition < 0) return;
    BlockMask fit = answered;
    conditions_[static_cast<size_t>(question.condition)].Restrict(planes_, fit);
    for (size_t w = 0; w < static_cast<size_t>(planes_.Words()); ++w)
        suspects[w] |= answered[w] & ~fit[w];
}

// Repeated answers, and exclusive ones that are not alone.
void AnswerScan::AddMixed(const Question& question, const BlockMask& answered, BlockMask& suspects) {
    const AnswerLayoutRec& layout = *question.layout;
    const int words = planes_.Words();
    BlockMask several = answered;
    KeepFilled(Field(layout, 1), layout.BitWidth, words, several);
    BlockMask filled = several;  // at all places up to i
    for (int i = 0; i < layout.Anum; ++i) {
        const uint64_t* field = Field(layout, i);
        KeepFilled(field, layout.BitWidth, words, filled);
        if (IsEmpty(filled, words)) return;
        for (const int choice : question.exclusive) {
            BlockMask mixed = filled;
            KeepEqual(field, layout.BitWidth, choice, words, mixed);
            Add(suspects, mixed, words);
        }
        for (int j = 0; repeats_ && j < i; ++j) {
            BlockMask same = filled;
            KeepSame(field, Field(layout, j), layout.BitWidth, words, same);
            Add(suspects, same, words);
        }
    }
}

}  // namespace quibra
