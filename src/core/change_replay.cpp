#include "core/change_replay.h"

#include <algorithm>

#include "companion/answer_bits.h"
#include "core/answer_store.h"

namespace quibra {

namespace {

qint32 PlaceOf(const Survey& survey, SampleName name) {
    const qint32 dno = DnoOfID(survey, name.IDno);
    if (dno < 0) throw RuntimeError(kErrorSubscript);
    return dno;
}

// Field by field, so that also what only damaged files hold comes out as it was.
void Store(Survey& survey, qint32 dno, int q, const StoredAnswers& answers) {
    const AnswerLayoutRec& layout = survey.QIdx[q];
    const int slots = survey.QIdx[q + 1].EssayStart - layout.EssayStart;
    for (int i = 0; i < layout.Anum; ++i) {
        const bool given = i < static_cast<int>(answers.size());
        WriteField(survey.Samples.Bits(dno), layout.BitStart + i * layout.BitWidth, layout.BitWidth,
                   given ? answers[static_cast<size_t>(i)].Cno : 0);
        if (i < slots)
            survey.Samples.SetEssay(dno, layout.EssayStart + i,
                                    given ? answers[static_cast<size_t>(i)].Essay : QString());
    }
}

// A list of all answers, filled and emptied sample by sample.
struct AllAnswers {
    explicit AllAnswers(const Survey& survey)
        : counts(static_cast<size_t>(survey.QuestionCount) + 1),
          choices(static_cast<size_t>(survey.AnswerSlots) + 1),
          essays(choices.size()) {}

    std::vector<qint16> counts;
    std::vector<qint16> choices;
    std::vector<QString> essays;
};

qint16 Follow(const Renumbering& map, size_t q, qint16 choice) {
    if (map.ChoiceMap.empty()) return choice;
    const auto& choices = map.ChoiceMap[q];
    return static_cast<size_t>(choice) < choices.size() ? choices[static_cast<size_t>(choice)] : qint16{0};
}

}  // namespace

void RedoChange(Survey& survey, UserInterface& ui, const SampleChangeRecord& record) {
    record.Deleted.ForEach([&](SampleName name) { DeleteSample(survey, ui, PlaceOf(survey, name)); });
    for (const IDChange& change : record.Renamed)
        if (SampleChangeID(survey, ui, PlaceOf(survey, change.Before), change.After.IDno) < 0)
            throw RuntimeError(kErrorSubscript);
    record.Added.ForEach([&](SampleName name) {
        if (AddSample(survey, ui, name.IDno) < 0) throw RuntimeError(kErrorSubscript);
    });
    QSet<SampleName> deleted;
    record.Deleted.ForEach([&](SampleName name) { deleted.insert(name); });
    for (const AnswerChange& change : record.Answers) {
        if (change.To < 0) continue;  // went with its question
        CheckSubscript(change.To, survey.QuestionCount);
        CheckSubscript(static_cast<qint64>(change.After.size()), survey.QIdx[change.To].Anum + 1);
        change.Samples.ForEach([&](SampleName name) {
            if (deleted.contains(name)) return;
            const qint32 dno = PlaceOf(survey, name);
            Store(survey, dno, change.To, change.After);
            RecalcPreLimitBits(survey, dno);
        });
    }
}

void ChangeDefinition(Survey& survey, const Survey& definition, const Renumbering& map) {
    Survey next = definition;
    next.FileName = survey.FileName;
    next.SavedTime = survey.SavedTime;
    next.SavedSampleCount = survey.SavedSampleCount;
    next.Samples.SetLayout(next.SampleBytes, next.EssaySlots);
    next.Samples.Allocate(survey.SampleCount());
    AllAnswers before(survey);
    AllAnswers after(next);
    std::vector<size_t> sources(static_cast<size_t>(next.QuestionCount), static_cast<size_t>(survey.QuestionCount));
    for (size_t q = 0; q < static_cast<size_t>(survey.QuestionCount); ++q) {
        const int to = map.QuestionMap.empty() ? static_cast<int>(q) : map.QuestionMap[q];
        if (to >= 0 && to < next.QuestionCount) sources[static_cast<size_t>(to)] = q;
    }
    std::vector<size_t> starts(static_cast<size_t>(survey.QuestionCount) + 1);
    for (qint32 dno = 0; dno < survey.SampleCount(); ++dno) {
        std::fill(before.essays.begin(), before.essays.end(), QString());
        GetAllAnswersEssay(survey, dno, before.counts.data(), before.choices.data(), before.essays.data());
        for (size_t q = 0; q + 1 < starts.size(); ++q)
            starts[q + 1] = starts[q] + static_cast<size_t>(before.counts[q]);
        size_t slot = 0;
        for (size_t q = 0; q < sources.size(); ++q) {
            const size_t source = sources[q];
            const bool is = source + 1 < starts.size();
            after.counts[q] =
                is ? std::min(before.counts[source], next.Questions[static_cast<int>(q)].Anum) : qint16{0};
            for (qint16 i = 0; i < after.counts[q]; ++i, ++slot) {
                const size_t old = starts[source] + static_cast<size_t>(i);
                after.choices[slot] = std::max<qint16>(Follow(map, source, before.choices[old]), 0);
                after.essays[slot] = before.essays[old];
            }
        }
        next.Samples.SetIDno(dno, survey.Samples.IDno(dno));
        SetAllAnswersEssay(next, dno, after.counts.data(), after.choices.data(), after.essays.data());
    }
    survey = std::move(next);
}

}  // namespace quibra
