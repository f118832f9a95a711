#include "design/told_rewrite.h"

#include "core/answer_store.h"
#include "entry/answer_check.h"

namespace quibra {

namespace {

struct WorkAnswer {
    qint16 Cno = 0;
    QString essay;
};
using WorkRecord = std::vector<std::vector<WorkAnswer>>;  // by new question

// Numbers that no choice can have, which only damaged files hold, are answers that do not exist.
qint16 MappedChoice(const StructureMaps& maps, int q, qint16 Cno) {
    return Cno < kMaxChoices ? maps.ChoiceMap(Cno, q) : kDeleted;
}

WorkRecord FirstPass(const Survey& loaded, const StructureMaps& maps, int questions, qint32 dno) {
    WorkRecord record(static_cast<size_t>(questions), std::vector<WorkAnswer>(1));
    for (int q = 0; q < loaded.QuestionCount; ++q) {
        if (maps.QuestionMap[q] < 0) continue;
        qint16 count = 0;
        std::array<qint16, kMaxAnswers> answers;
        GetAnswers(loaded, dno, q, count, answers.data());
        std::vector<WorkAnswer>& to = record[static_cast<size_t>(maps.QuestionMap[q])];
        to.clear();
        for (int i = 0; i < count; ++i) {
            const qint16 Cno = answers[static_cast<size_t>(i)];
            const bool bearsText =
                HasEssaySlots(loaded, q) && Cno < kMaxChoices && GetChoiceStatus(loaded, q, Cno, kEssay);
            to.push_back({MappedChoice(maps, q, Cno),
                          bearsText ? loaded.Samples.Essay(dno, loaded.QIdx[q].EssayStart + i) : QString()});
        }
    }
    return record;
}

void SecondPass(const WorkRecord& record, Survey& edited, qint32 dno) {
    WorkingSample working(edited);
    size_t slot = 0;
    for (int q = 0; q < edited.QuestionCount; ++q) {
        std::vector<WorkAnswer> answers = record[static_cast<size_t>(q)];
        answers.resize(std::min<size_t>(answers.size(), static_cast<size_t>(edited.Questions[q].Anum)));
        working.AnswerCount[static_cast<size_t>(q)] = static_cast<qint16>(answers.size());
        for (const WorkAnswer& answer : answers) {
            working.SlotCno[slot] = answer.Cno;
            working.SlotEssay[slot++] = answer.essay;
        }
    }
    edited.Samples.SetPreLimitBits(dno, -1);
    CorrectAnswers(edited, working, true, nullptr);
    SetAllAnswersEssay(edited, dno, working.AnswerCount.data(), working.SlotCno.data(), working.SlotEssay.data());
    CheckAllLimits(edited, dno, working, nullptr);
}

}  // namespace

void ToldRewrite(const Survey& loaded, const StructureMaps& maps, Survey& edited) {
    edited.Samples.SetLayout(edited.SampleBytes, edited.EssaySlots);
    edited.Samples.Allocate(loaded.SampleCount());
    for (qint32 dno = 0; dno < loaded.SampleCount(); ++dno) {
        edited.Samples.SetIDno(dno, loaded.Samples.IDno(dno));
        SecondPass(FirstPass(loaded, maps, edited.QuestionCount, dno), edited, dno);
    }
}

}  // namespace quibra
