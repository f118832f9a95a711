#include "design/renumbering.h"

#include <algorithm>
#include <numeric>

#include "core/labels.h"

namespace quibra {

namespace {

constexpr int kLastLine = 15;

// Lines with these numbers come from old files only. Behind a line whose choice is deleted they take its place, or look
// for it one choice further.
constexpr qint16 kTakesOver = -1;
constexpr qint16 kTakesOverNext = -2;

// Moves all numbers of an ascending map from `place` on. The entry that stands for what is deleted leads nowhere; what
// was made since the map was opened has no entry.
template <typename Map>
void MoveNumbers(Map&& map, int place, int dir) {
    const auto first = std::find_if(map.begin(), map.end(), [&](qint16 to) { return to >= place; });
    if (first == map.end()) return;
    const bool isDeleted = dir < 0 && *first == place;
    for (auto entry = first; entry != map.end(); ++entry)
        if (*entry >= 0) *entry = static_cast<qint16>(*entry + dir);
    if (isDeleted) *first = kDeleted;
}

void MoveMaps(StructureMaps& maps, int Q, int C, int dir) {
    const std::span<qint16> questions(maps.QuestionMap.Data(), kMaxQuestions);
    if (C == kWholeQuestion) {
        MoveNumbers(questions, Q, dir);
        return;
    }
    const auto old = std::find(questions.begin(), questions.end(), Q);
    if (old != questions.end()) MoveNumbers(maps.ChoiceMap.Column(static_cast<int>(old - questions.begin())), C, dir);
}

// What question i's condition becomes. A line that tests what is deleted is left out and the others close up, the
// closing line and whatever stands behind it included; places behind the last line written keep what they had.
void RenumberLines(const Survey& survey, std::span<LimitLine, 16> lines, int i, int Q, int C, int dir) {
    int w = 1;
    for (int k = 1; k <= kLastLine; ++k) {
        const LimitLine line = lines[static_cast<size_t>(k)];
        const auto write = [&](qint16 b) { lines[static_cast<size_t>(w++)] = {line.a, b}; };
        int qq = 0;
        int cc = 0;
        UnpackPosition(line.b, qq, cc);
        if (C == kWholeQuestion) {
            if (qq < Q)
                write(line.b);
            else if (qq + dir >= Q)
                write(PackPosition(qq + dir, cc));
            continue;
        }
        if (qq != Q || cc < C) {
            write(line.b);
        } else if (cc + dir >= C) {
            write(PackPosition(qq, cc + dir));
        } else if (k < kLastLine) {
            qint16& next = lines[static_cast<size_t>(k) + 1].a;
            const int further = cc + dir + dir;
            if (next == kTakesOver)
                next = line.a;
            else if (next == kTakesOverNext && further < survey.Questions[i].ChoiceCount)
                write(PackPosition(qq, further));
            else if (next == kTakesOverNext)
                next = line.a;
        }
    }
}

// Elements from `place` on move up by one, or down over `place`; `size` is how many there are before the edit. What is
// inserted is empty.
template <typename Element>
void ShiftElements(std::span<Element> elements, int place, int dir, int size) {
    const auto at = elements.begin() + place;
    const auto end = elements.begin() + size;
    if (dir < 0) {
        std::move(at + 1, end, at);
    } else {
        std::move_backward(at, end, end + 1);
        *at = Element();
    }
}

template <typename Table>
void ShiftColumns(Table& table, int Q, int dir, int count) {
    const auto copy = [&](int from, int to) { std::ranges::move(table.Column(from), table.Column(to).begin()); };
    if (dir > 0) {
        for (int q = count; q > Q; --q)
            copy(q - 1, q);
        std::ranges::fill(table.Column(Q), std::decay_t<decltype(table(0, 0))>());
    } else {
        for (int q = Q; q + 1 < count; ++q)
            copy(q + 1, q);
    }
}

}  // namespace

StructureMaps::StructureMaps() {
    std::iota(QuestionMap.Data(), QuestionMap.Data() + kMaxQuestions, qint16{0});
    for (int q = 0; q < kMaxQuestions; ++q)
        std::iota(ChoiceMap.Column(q).begin(), ChoiceMap.Column(q).end(), qint16{0});
}

void ApplyStructureEdit(Survey& survey, StructureMaps& maps, int Q, int C, int dir) {
    const bool wholeQuestion = C == kWholeQuestion;
    const int questions = survey.QuestionCount;
    const int choices = wholeQuestion ? 0 : survey.Questions[Q].ChoiceCount;
    qint16& count = wholeQuestion ? survey.QuestionCount : survey.Questions[Q].ChoiceCount;
    const qint16 countBefore = count;
    const auto limitsBefore = survey.QLimit;

    // The conditions first: they alone can fail.
    count = static_cast<qint16>(count + dir);
    try {
        if (wholeQuestion) ShiftColumns(survey.QLimit, Q, dir, questions);
        for (int i = 0; i < survey.QuestionCount; ++i)
            if (!wholeQuestion || dir < 0 || i != Q) RenumberLines(survey, survey.QLimit.Column(i), i, Q, C, dir);
        RecalcQLimitDepth(survey);
    } catch (const RuntimeError&) {
        count = countBefore;
        survey.QLimit = limitsBefore;
        throw;
    }
    MoveMaps(maps, Q, C, dir);
    if (wholeQuestion) {
        ShiftElements(std::span(survey.Questions.Data(), kMaxQuestions), Q, dir, questions);
        ShiftColumns(survey.Choices, Q, dir, questions);
    } else {
        ShiftElements(std::span<ChoiceRec>(survey.Choices.Column(Q)), C, dir, choices);
    }
}

void CopyQuestionLimit(Survey& survey, int source, int target) {
    for (int k = 1; k <= kLastLine; ++k) {
        survey.QLimit(k, target) = survey.QLimit(k, source);
        if (survey.QLimit(k, source).a == 0) break;
    }
}

}  // namespace quibra
