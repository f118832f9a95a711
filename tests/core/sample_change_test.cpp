#include "core/sample_change.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "core/answer_store.h"
#include "core/change_replay.h"
#include "support/random_survey.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

struct Records : SampleChangeListener {
    void OnSampleChange(const SampleChangeRecord& record) override { list.push_back(record); }
    std::vector<SampleChangeRecord> list;
};

// All that samples are, as text.
std::string Dump(const Survey& survey) {
    QString text;
    for (qint32 dno = 0; dno < survey.SampleCount(); ++dno) {
        text += u"%1: "_s.arg(survey.Samples.IDno(dno));
        text +=
            QString::fromLatin1(QByteArrayView(survey.Samples.Packed(dno), survey.SampleBytes).toByteArray().toHex());
        for (const Essay& essay : survey.Samples.Essays(dno))
            text += u" %1=%2"_s.arg(essay.slot).arg(essay.text);
        text += u'\n';
    }
    return text.toStdString();
}

QString Names(const SampleNames& names) {
    QString text;
    names.ForEach([&](SampleName name) { text += u" %1.%2"_s.arg(name.IDno).arg(name.Life); });
    return text;
}

QString Text(const StoredAnswers& answers) {
    QString text;
    for (const StoredAnswer& answer : answers)
        text += QString::number(answer.Cno) + (answer.Essay.isEmpty() ? u""_s : u'/' + answer.Essay) + u' ';
    return text.trimmed();
}

QString Text(const SampleChangeRecord& record) {
    QString text = u"%1 in %2, cause %3\n"_s.arg(record.Number).arg(record.Batch).arg(int(record.Cause));
    if (record.Deleted.Count() > 0) text += u"deleted"_s + Names(record.Deleted) + u'\n';
    for (const IDChange& change : record.Renamed)
        text += u"renamed %1.%2 %3.%4\n"_s.arg(change.Before.IDno)
                    .arg(change.Before.Life)
                    .arg(change.After.IDno)
                    .arg(change.After.Life);
    if (record.Added.Count() > 0) text += u"added"_s + Names(record.Added) + u'\n';
    for (const AnswerChange& change : record.Answers)
        text += u"q%1 to q%2 [%3] to [%4]:%5\n"_s.arg(change.From)
                    .arg(change.To)
                    .arg(Text(change.Before), Text(change.After), Names(change.Samples));
    return text;
}

void MakeWordy(Survey& survey, int q) {
    ToggleChoiceStatus(survey, q, 1, kEssay);
}

// Three samples, a plain question and one with texts and two answers.
struct Rig {
    Rig() {
        SurveyBuilder builder;
        builder.Question(u"性別"_s, u""_s, 1, {u"男"_s, u"女"_s});
        const int q = builder.Question(u"職業"_s, u""_s, 2, {u"会社員"_s, u"学生"_s, u"その他"_s});
        builder.Status(q, 3, {kEssay, kOther});
        for (int i = 0; i < 3; ++i)
            builder.Sample({{1}, {2}});
        survey = builder.Get();
        log.AddListener(&records);
    }
    void Answer(SampleChange& change, qint32 id, int q, qint16 c, const QString& essay = {}) {
        const qint32 dno = DnoOfID(survey, id);
        change.Open(dno);
        SetAnswersEssay(survey, dno, q, 1, &c, &essay);
    }
    std::string Told() {
        QString text;
        for (const SampleChangeRecord& record : std::exchange(records.list, {}))
            text += Text(record);
        return text.toStdString();
    }

    ScriptedInterface ui;
    Survey survey;
    SampleChangeLog log{survey};
    Records records;
};

TEST(SampleChange, TellsWhatBecameWhatAndNothingWhenNothingDiffers) {
    Rig rig;
    {
        SampleChange change(rig.log, ChangeCause::Typing);
        rig.Answer(change, 2, 1, 3, u"船員"_s);
        rig.Answer(change, 2, 0, 2);
    }
    EXPECT_EQ(rig.Told(), "1 in 1, cause 1\nq0 to q0 [1] to [2]: 2.0\nq1 to q1 [2] to [3/船員]: 2.0\n");
    {
        SampleChange change(rig.log, ChangeCause::Typing);
        rig.Answer(change, 2, 0, 1);
        rig.Answer(change, 2, 0, 2);
        const qint32 dno = change.Add(rig.survey, rig.ui, 9);
        change.Delete(rig.survey, rig.ui, dno);
    }
    EXPECT_EQ(rig.Told(), "");
    {  // a batch, in which a part has its own cause; the sample that comes again begins another record
        SampleChange batch(rig.log, ChangeCause::Import);
        for (const auto& [id, choice] : {std::pair(1, 2), {2, 2}, {3, 2}, {1, 1}}) {
            SampleChange part(rig.log, ChangeCause::Typing);
            rig.Answer(part, id, 0, static_cast<qint16>(choice));
        }
        EXPECT_EQ(rig.records.list.size(), 1u);
    }
    EXPECT_EQ(rig.Told(), "2 in 2, cause 4\nq0 to q0 [1] to [2]: 1.0 3.0\n3 in 2, cause 4\nq0 to q0 [2] to [1]: 1.0\n");
    {
        SampleChange change(rig.log, ChangeCause::Typing);
        change.Delete(rig.survey, rig.ui, 1);
    }
    {  // the freed ID lives again, and a third time
        SampleChange change(rig.log, ChangeCause::Typing);
        rig.Answer(change, 1, 0, 2);
        EXPECT_EQ(change.ChangeID(rig.survey, rig.ui, 0, 2), 0);
        change.Delete(rig.survey, rig.ui, 0);
        change.Add(rig.survey, rig.ui, 2);
        rig.Answer(change, 2, 1, 1);
    }
    EXPECT_EQ(rig.Told(),
              "4 in 4, cause 1\ndeleted 2.0\nq0 to q0 [2] to []: 2.0\nq1 to q1 [3/船員] to []: 2.0\n"
              "5 in 5, cause 1\ndeleted 1.0\nadded 2.1\n"
              "q0 to q0 [1] to []: 1.0\nq1 to q1 [2] to []: 1.0\nq1 to q1 [] to [1]: 2.1\n");
}

TEST(SampleChange, RecordsDoneAgainGiveTheSameSamples) {
    Random random(11);
    for (int round = 0; round < 60; ++round) {
        Survey survey = MakeRandomSurvey(random, 6, 0);
        for (int q = 0; q < survey.QuestionCount; q += 2)
            MakeWordy(survey, q);
        RecalcLayout(survey);
        survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
        Survey again = survey;
        ScriptedInterface ui;
        SampleChangeLog log(survey);
        Records records;
        log.AddListener(&records);
        for (int step = 0; step < 40; ++step) {
            SampleChange batch(log, ChangeCause::Import);
            for (int part = Pick(random, 1, 6); part > 0; --part) {
                SampleChange change(log, ChangeCause::Typing);
                const qint32 dno = survey.SampleCount() > 0 ? Pick(random, 0, survey.SampleCount() - 1) : -1;
                const int deed = dno < 0 ? 0 : Pick(random, 0, 9);
                if (deed < 3) {
                    change.Add(survey, ui, Pick(random, -9, 9));
                } else if (deed == 3) {
                    change.Delete(survey, ui, dno);
                } else if (deed == 4) {
                    change.ChangeID(survey, ui, dno, Pick(random, -9, 9));
                } else {
                    change.Open(dno);
                    const int q = Pick(random, 0, survey.QuestionCount - 1);
                    qint16 answers[6];
                    QString essays[6];
                    const auto count = static_cast<qint16>(Pick(random, 0, survey.Questions[q].Anum));
                    for (int i = 0; i < count; ++i) {
                        answers[i] = static_cast<qint16>(Pick(random, 0, 3));
                        essays[i] = QString::number(Pick(random, 0, 2));
                    }
                    SetAnswersEssay(survey, dno, q, count, answers, essays);
                }
            }
        }
        qint64 number = 0;
        for (const SampleChangeRecord& record : records.list) {
            EXPECT_EQ(record.Number, ++number);
            RedoChange(again, ui, record);
        }
        EXPECT_EQ(Dump(again), Dump(survey));
    }
}

// The questions of `before` in another order, some gone, with choices gone and new ones.
Renumbering Edit(Random& random, const Survey& before, Survey& after) {
    Renumbering map;
    after.QuestionCount = 0;
    std::vector<int> order(static_cast<size_t>(before.QuestionCount));
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), random);
    map.QuestionMap.resize(order.size(), -1);
    map.ChoiceMap.resize(order.size());
    for (const int q : order) {
        auto& choices = map.ChoiceMap[static_cast<size_t>(q)];
        for (qint16 c = 0; c < before.Questions[q].ChoiceCount; ++c)
            choices.push_back(c);
        if (Pick(random, 0, 4) == 0) continue;
        const int to = after.QuestionCount++;
        map.QuestionMap[static_cast<size_t>(q)] = static_cast<qint16>(to);
        after.Questions[to] = before.Questions[q];
        std::ranges::copy(before.Choices.Column(q), after.Choices.Column(to).begin());
        if (Pick(random, 0, 1) == 0) std::rotate(choices.begin() + 1, choices.begin() + 2, choices.end());
        if (Pick(random, 0, 1) == 0) choices.back() = -1;
        if (Pick(random, 0, 3) == 0 && to > 0) after.Questions[to].Anum = 1;
        if (Pick(random, 0, 3) == 0) MakeWordy(after, to);
    }
    if (after.QuestionCount == 0) after.QuestionCount = 1;
    after.Questions[after.QuestionCount].Anum = 2;  // a new one
    after.Questions[after.QuestionCount].ChoiceCount = 4;
    ++after.QuestionCount;
    RecalcLayout(after);
    return map;
}

TEST(SampleChange, ARewriteIsOneRecordOfWhatDidNotFollowItsMap) {
    Random random(12);
    ScriptedInterface ui;
    for (int round = 0; round < 60; ++round) {
        Survey survey = MakeRandomSurvey(random, 6, 30);
        Survey again = survey;
        Survey edited = survey;
        const Renumbering map = Edit(random, survey, edited);
        edited.Samples.SetLayout(edited.SampleBytes, edited.EssaySlots);
        edited.Samples.Allocate(survey.SampleCount());
        Survey followed = survey;
        ChangeDefinition(followed, edited, map);
        SampleChangeLog log(survey);
        Records records;
        log.AddListener(&records);
        {
            SampleChange change(log, ChangeCause::Rewrite);
            change.BeginRewrite(map, edited.QuestionCount);
            for (qint32 dno = 0; dno < survey.SampleCount(); ++dno) {
                WorkingSample before(survey);
                GetAllAnswersEssay(survey, dno, before.AnswerCount.data(), before.SlotCno.data(),
                                   before.SlotEssay.data());
                edited.Samples.SetIDno(dno, survey.Samples.IDno(dno));
                WorkingSample after(edited);
                const auto read = [&after, dno](const Survey& from) {
                    GetAllAnswersEssay(from, dno, after.AnswerCount.data(), after.SlotCno.data(),
                                       after.SlotEssay.data());
                };
                read(followed);
                SetAllAnswersEssay(edited, dno, after.AnswerCount.data(), after.SlotCno.data(), after.SlotEssay.data());
                if (dno % 7 == 0) {
                    const qint16 answer[] = {1};
                    SetAnswers(edited, dno, edited.QuestionCount - 1, 1, answer);
                }
                read(edited);
                change.Rewritten(survey.Samples.IDno(dno),
                                 {before.AnswerCount.data(), before.SlotCno.data(), before.SlotEssay.data()},
                                 {after.AnswerCount.data(), after.SlotCno.data(), after.SlotEssay.data()});
            }
            survey = edited;
        }
        ASSERT_EQ(records.list.size(), 1u);
        const SampleChangeRecord& record = records.list.front();
        ChangeDefinition(again, edited, record.Map);
        RedoChange(again, ui, record);
        EXPECT_EQ(Dump(again), Dump(survey));
    }
}

TEST(SampleChange, NamesComeBackFromTheirBytesAndDamagedOnesDoNot) {
    SampleNames names;
    const std::vector<SampleName> given = {
        {1, 0}, {2, 0}, {300, 7}, {-5, 0}, {2147483647, 2147483647}, {-2147483647 - 1, 0}};
    for (const SampleName name : given)
        names.Add(name);
    SampleNames read;
    ASSERT_TRUE(read.SetBytes(names.Bytes(), 6));
    EXPECT_EQ(Names(read).toStdString(), " 1.0 2.0 300.7 -5.0 2147483647.2147483647 -2147483648.0");
    for (const qint64 count : {5, 7, -1})
        EXPECT_FALSE(read.SetBytes(names.Bytes(), count));
    for (qsizetype cut = 0; cut < names.Bytes().size(); ++cut)
        EXPECT_FALSE(read.SetBytes(QByteArrayView(names.Bytes()).first(cut), 6));
}

}  // namespace
}  // namespace quibra
