#include "session/journal.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <random>

#include "core/answer_store.h"
#include "core/change_replay.h"
#include "session/journal_recovery.h"
#include "session/main_commands.h"
#include "session/survey_file.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

// A survey of two questions and three samples in a file, a session that has loaded it, and its journal.
struct Rig {
    Rig() {
        SurveyBuilder builder;
        builder.Question(u"性別"_s, u""_s, 1, {u"男"_s, u"女"_s});
        const int q = builder.Question(u"職業"_s, u""_s, 2, {u"会社員"_s, u"学生"_s, u"その他"_s});
        builder.Status(q, 3, {kEssay, kOther});
        for (int i = 0; i < 3; ++i)
            builder.Sample({{1}, {2}});
        file = folder.filePath(u"調査.qb"_s);
        WriteFileBytes(file, WriteSurveyBytes(builder.Get()));
        session.emplace(user, folder.path());
        journal.emplace(*session, Folder());
        EXPECT_EQ(SurveyLoad(*session, file, kExpectSurvey), kLoaded);
    }

    QString Folder() const { return folder.filePath(u"journal/"_s); }
    QStringList Files() const { return QDir(Folder()).entryList(QDir::Files); }
    // The journal as a kill would leave it.
    QString Left() {
        journal->Flush();
        EXPECT_EQ(Files().size(), 1);
        // Its program is alive, so it is offered to nobody.
        EXPECT_TRUE(LeftJournals(Folder()).empty());
        const QString left = folder.filePath(u"left/"_s);
        QDir(left).removeRecursively();
        QDir().mkpath(left);
        EXPECT_TRUE(QFile::copy(Folder() + Files()[0], left + u"a.journal"_s));
        return left;
    }
    void Answer(qint32 dno, int q, qint16 c, const QString& essay = {}) {
        SampleChange change(session->changes, ChangeCause::Typing);
        change.Open(dno);
        SetAnswersEssay(session->survey, dno, q, 1, &c, &essay);
        session->ChangedOn();
    }
    // As the question editor does it: the two questions change places, and the one answered 会社員 loses its answer.
    void Rewrite() {
        Survey& survey = session->survey;
        const Survey before = survey;
        Survey after = survey;
        std::swap(after.Questions[0], after.Questions[1]);
        for (int c = 0; c < 4; ++c)
            std::swap(after.Choices(c, 0), after.Choices(c, 1));
        RecalcLayout(after);
        const Renumbering map{{1, 0}, {{0, 1, 2}, {0, 1, 2, 3}}};
        SampleChange change(session->changes, ChangeCause::Rewrite);
        change.BeginRewrite(map, 2);
        ChangeDefinition(survey, after, map);
        for (qint32 dno = 0; dno < survey.SampleCount(); ++dno) {
            WorkingSample old(before);
            GetAllAnswersEssay(before, dno, old.AnswerCount.data(), old.SlotCno.data(), old.SlotEssay.data());
            qint16 answer = 0;
            qint16 count = 0;
            GetAnswers(survey, dno, 0, count, &answer);
            if (answer == 1) SetAnswers(survey, dno, 0, 0, &answer);
            WorkingSample now(survey);
            GetAllAnswersEssay(survey, dno, now.AnswerCount.data(), now.SlotCno.data(), now.SlotEssay.data());
            change.Rewritten(survey.Samples.IDno(dno),
                             {old.AnswerCount.data(), old.SlotCno.data(), old.SlotEssay.data()},
                             {now.AnswerCount.data(), now.SlotCno.data(), now.SlotEssay.data()});
        }
        session->ChangedOn();
    }

    QTemporaryDir folder;
    QString file;
    ScriptedInterface user;
    std::optional<SurveySession> session;
    std::optional<Journal> journal;
};

void DoALot(Rig& rig) {
    rig.Answer(1, 1, 3, u"船員😀"_s);
    rig.session->survey.Title = u"新しい題"_s;
    {
        SampleChange batch(rig.session->changes, ChangeCause::Import);
        for (const qint32 id : {7, 5, 2147483647})
            batch.Add(rig.session->survey, rig.user, id);
        batch.Delete(rig.session->survey, rig.user, 0);
    }
    rig.Answer(2, 1, 1);
    rig.Rewrite();
    rig.Answer(3, 0, 3, u"/"_s);
    rig.session->SetDraft(SheetDraft{3, u"[性別] 1"_s, 6});
}

TEST(Journal, WhatWasDoneSinceTheSaveComesBackOnTheSurveyFile) {
    Rig rig;
    EXPECT_TRUE(rig.Files().empty());
    DoALot(rig);
    const QByteArray typed = WriteSurveyBytes(rig.session->survey);
    QString left = rig.Left();
    for (int round = 0; round < 2; ++round) {  // the second time from the journal of the recovery
        ScriptedInterface user;
        SurveySession session(user, rig.folder.path());
        Journal journal(session, rig.folder.filePath(u"again%1/"_s.arg(round)));
        const auto journals = LeftJournals(left);
        ASSERT_EQ(journals.size(), 1u);
        user.messageAnswers = {Answer::Yes};
        EXPECT_EQ(OfferJournal(user, journals[0]), JournalDecision::Restore);
        const QString last = journals[0].LastTime().toLocalTime().toString(u"yyyy/MM/dd HH:mm:ss"_s);
        EXPECT_EQ(user.TakeTranscript().join(u'\n').toStdString(),
                  "message 35 クイブラ: 保存される前に終わってしまった入力が残っています。\\r\\n" +
                      rig.file.toStdString() + "\\r\\n記録 5件、最後は " + last.toStdString() +
                      "\\r\\n読み込んで元に戻しますか？\\r\\n「いいえ」でこの入力を捨てます。"
                      "「ｷｬﾝｾﾙ」なら次に起動した時にまた尋ねます。 -> Yes");
        ASSERT_EQ(SurveyLoad(session, rig.file, kExpectSurvey), kLoaded);
        ASSERT_TRUE(RestoreJournal(session, journals[0]));
        EXPECT_TRUE(session.IsChanged());
        EXPECT_EQ(WriteSurveyBytes(session.survey), typed);
        // Texts that the code page lacks, too.
        EXPECT_EQ(session.survey.Samples.Essays(0).front().text, u"船員😀"_s);
        ASSERT_TRUE(session.Draft());
        EXPECT_EQ(*session.Draft(), (SheetDraft{3, u"[性別] 1"_s, 6}));
        DiscardJournal(journals[0]);
        journal.Flush();
        const QString again = rig.folder.filePath(u"again%1/"_s.arg(round));
        QDir().mkpath(left);
        ASSERT_TRUE(QFile::copy(again + QDir(again).entryList(QDir::Files).value(0), left + u"a.journal"_s));
    }
}

TEST(Journal, IsGoneAfterASaveAndWhenTheChangesAreDeclined) {
    Rig rig;
    DoALot(rig);
    rig.journal->Flush();
    EXPECT_EQ(rig.Files().size(), 1);
    ASSERT_TRUE(SaveSurvey(*rig.session));
    rig.session->SetDraft(std::nullopt);
    rig.journal->Flush();
    for (const auto& journal : LeftJournals(rig.Left()))
        EXPECT_EQ(journal.Records(), 0);
    rig.Answer(0, 0, 2);
    rig.journal->Flush();
    {  // the copy for some does not hold it: nothing is thrown away
        const std::vector<qint32> some = {0};
        ASSERT_TRUE(SurveySave(*rig.session, rig.folder.filePath(u"some.qb"_s), &some));
        rig.session->ChangedOn();
        EXPECT_EQ(LeftJournals(rig.Left())[0].Records(), 1);
    }
    rig.user.messageAnswers = {Answer::No};
    EXPECT_TRUE(AskToSaveChanges(*rig.session));
    rig.journal.reset();
    EXPECT_TRUE(rig.Files().empty());
}

TEST(Journal, ChangedFileIsToldAndWhatDoesNotFitIsKept) {
    Rig rig;
    rig.Answer(2, 0, 2);
    const QString left = rig.Left();
    Survey smaller = rig.session->survey;
    smaller.Samples.Erase(2);
    WriteFileBytes(rig.file, WriteSurveyBytes(smaller));
    ScriptedInterface user;
    SurveySession session(user, rig.folder.path());
    ASSERT_EQ(SurveyLoad(session, rig.file, kExpectSurvey), kLoaded);
    const auto journals = LeftJournals(left);
    ASSERT_EQ(journals.size(), 1u);
    EXPECT_EQ(OfferJournal(user, journals[0]), JournalDecision::Later);
    EXPECT_TRUE(user.transcript.last().contains(u"ファイルはその後に変わっているので"_s));
    EXPECT_FALSE(RestoreJournal(session, journals[0]));
    EXPECT_TRUE(user.transcript.last().contains(u"残っていた入力は 0件目まで元に戻しました。"_s));
    EXPECT_TRUE(LeftJournals(left).empty());
    EXPECT_TRUE(QFileInfo::exists(left + u"a.journal~"_s));
}

TEST(Journal, TellsOnceThatItCannotBeWritten) {
    Rig rig;
    WriteFileBytes(rig.folder.filePath(u"journal"_s), "in the way");
    rig.Answer(0, 0, 2);
    rig.Answer(0, 0, 1);
    rig.user.TakeTranscript();
    QCoreApplication::processEvents();
    ASSERT_EQ(rig.user.transcript.size(), 1);
    EXPECT_TRUE(rig.user.transcript[0].contains(u"入力の控えを書けません。こまめに保存してください。"_s));
}

TEST(Journal, DamagedBytesGiveTheEntriesInFrontOfThem) {
    Rig rig;
    DoALot(rig);
    const QByteArray whole = FileBytes(rig.Left() + u"a.journal"_s);
    const auto contents = DecodeJournal(whole);
    ASSERT_TRUE(contents);
    EXPECT_EQ(contents->Rest, 0);
    const auto isFront = [&](const JournalContents& some) {
        for (size_t i = 0; i < some.Entries.size(); ++i)
            if (JournalContent(some.Entries[i]) != JournalContent(contents->Entries[i])) return false;
        return true;
    };
    size_t seen = 0;
    for (qsizetype cut = 0; cut < whole.size(); ++cut) {
        const auto some = DecodeJournal(QByteArrayView(whole).first(cut));
        if (!some) continue;
        EXPECT_LT(some->Entries.size(), contents->Entries.size());
        EXPECT_TRUE(isFront(*some));
        seen = std::max(seen, some->Entries.size());
    }
    EXPECT_EQ(seen + 1, contents->Entries.size());
    std::mt19937 random(5);
    for (int round = 0; round < 2000; ++round) {
        QByteArray damaged = whole;
        damaged[static_cast<qsizetype>(random() % static_cast<unsigned>(whole.size()))] ^=
            static_cast<char>(1 << random() % 8);
        if (const auto some = DecodeJournal(damaged)) {
            EXPECT_LT(some->Entries.size(), contents->Entries.size());
            EXPECT_TRUE(isFront(*some));
        }
    }
}

}  // namespace
}  // namespace quibra
