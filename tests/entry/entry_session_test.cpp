#include "entry/entry_session.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "companion/limit_terms.h"
#include "core/answer_store.h"
#include "entry/sample_words.h"
#include "support/error_of.h"
#include "support/qt_printers.h"
#include "support/random_survey.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

// A program of the survey's own that answers what the test says.
struct FakeCaller : ExternCaller {
    QString CallExternal(Survey&, qint32 dno, int q, int a) override {
        calls += u"%1 %2.%3"_s.arg(dno).arg(q).arg(a);
        return answer;
    }
    void Trust(const Survey&) override {}
    QStringList calls;
    QString answer;
};

struct Desk : EntryView, SampleViewer {
    void SetFocus(EntryControl control) override {
        focus = control == EntryControl::txtReply ? u"txtReply"_s : u"cmdNextInput"_s;
    }
    void RaiseDriver() override { focus = u"driver"_s; }
    bool IsVisible() const override { return visible; }
    void ShowSample(qint32 dno, int endQ) override { shown = u"%1 to %2"_s.arg(dno).arg(endQ); }
    QString focus;
    QString shown;
    bool visible = false;
};

// Q1 one of three; Q2 one of two, asked of those who gave 1 to Q1; Q3 two of three, the last one その他 with a text. A
// line each. `samples` of them answered 1, IDs from 1.
// "|" stands for a line end.
QString Sheet(QString text) {
    return text.replace(u"|"_s, u"\r\n"_s);
}

struct Rig {
    explicit Rig(int samples) : session(ui, u"/tmp"_s) {
        SurveyBuilder builder;
        builder.Question(u"年齢"_s, u""_s, 1, {u"若い"_s, u"中"_s, u"老い"_s});
        builder.Question(u"学校"_s, u""_s, 1, {u"高校"_s, u"大学"_s});
        builder.QuestionLimit(1, {SurveyBuilder::Line(kLimitAnd, 0, 1)});
        builder.Question(u"趣味"_s, u""_s, 2, {u"本"_s, u"山"_s, u"他"_s});
        builder.Status(2, 3, {kEssay, kOther});
        builder.Lines({{0, 0}, {1, 0}, {2, 0}});
        for (int i = 0; i < samples; ++i)
            builder.Sample({{1}});
        session.survey = builder.Get();
        session.survey.SavedTime = QDateTime::currentDateTime();
        RecalcQuotaUsed(session.survey);
        entry.emplace(session, caller, desk);
        entry->SetViewer(&desk);
        entry->Open();
    }
    void Type(const QString& text) {
        const EntryState& state = entry->State();
        entry->TypeReply(state.Text.left(state.Caret) + text + state.Text.mid(state.Caret),
                         state.Caret + static_cast<int>(text.size()));
    }
    // Text with "|" for the caret and "/" for a line end, the numbers, and what came up since the last time.
    std::string Told() {
        const EntryState& state = entry->State();
        QString text = state.Text;
        text.insert(state.Caret, u'^');
        text.replace(u"\r\n"_s, u"|"_s);
        QStringList told = {text, u"%1 of %2, ID %3"_s.arg(state.Now, state.Max, state.IDno)};
        if (state.Changed) told += u"changed"_s;
        if (state.Dno != state.Now) told += u"to "_s + state.Dno;
        if (!state.Status.isEmpty()) told += state.Status;
        if (!desk.focus.isEmpty()) told += std::exchange(desk.focus, {});
        for (const QString& line : ui.TakeTranscript())
            if (!line.startsWith(u"busy"_s)) told += line;
        return told.join(u"; "_s).toStdString();
    }
    QString Words(qint32 dno) {
        QString text;
        for (int q = 0; q < 3; ++q) {
            qint16 count = 0;
            qint16 answers[128];
            QString essays[128];
            GetAnswersEssay(session.survey, dno, q, count, answers, essays);
            for (int i = 0; i < count; ++i)
                text += QString::number(answers[i]) + essays[i];
            text += u'-';
        }
        return text;
    }

    ScriptedInterface ui;
    FakeCaller caller;
    Desk desk;
    SurveySession session;
    std::optional<EntrySession> entry;
};

TEST(EntrySession, ASheetIsKeyedInAndTheNextOneBegun) {
    Rig rig(1);
    EntrySession& entry = *rig.entry;
    EXPECT_EQ(rig.Told(), "^[年齢]1-|-|-|; 0 of / 0, ID 1");
    entry.NextInput();
    EXPECT_EQ(rig.Told(), "[年齢] ^; 1 of / 1, ID 2; txtReply");
    EXPECT_EQ(entry.State().Choices.join(u' '), u"年齢  (1)若い (2)中 (3)老い"_s);
    rig.Type(u"1"_s);
    EXPECT_EQ(rig.session.Draft()->Text, u"[年齢] 1"_s);
    entry.KeyEnter();
    EXPECT_FALSE(rig.session.Draft());
    EXPECT_EQ(entry.State().Choices.value(1), u"(1)高校"_s);
    rig.Type(u"2"_s);
    EXPECT_TRUE(entry.KeySpace());
    rig.Type(u"3/山"_s);
    EXPECT_FALSE(entry.KeySpace());
    rig.Type(u" と川/"_s);
    EXPECT_TRUE(entry.KeyUpOrDown());
    EXPECT_EQ(rig.Told(), "[年齢]1-|[学校]2-|[趣味]3/山 と川/[趣味] ^; 1 of / 1, ID 2");
    rig.desk.visible = true;
    rig.Type(u"1"_s);
    entry.KeyEnter();
    EXPECT_EQ(rig.desk.shown, u"1 to 3"_s);
    EXPECT_EQ(rig.Told(), "[年齢]1-|[学校]2-|[趣味]3/山 と川/1-|^; 1 of / 1, ID 2; cmdNextInput");
    EXPECT_EQ(rig.Words(1), u"1-2-3山 と川1-"_s);
    // Nobody is asked about a school who is not young.
    entry.NextInput();
    rig.Type(u"2"_s);
    entry.ReplyLostFocus();
    EXPECT_EQ(rig.Told(), "[年齢]2-|-|[趣味] ^; 2 of / 2, ID 3; txtReply");
    EXPECT_EQ(entry.State().Choices.value(0), u"Q3 趣味 ［2つまで］"_s);
}

TEST(EntrySession, AnErrorKeepsWhatWasTypedAndStoresNothing) {
    Rig rig(2);
    EntrySession& entry = *rig.entry;
    entry.TypeReply(u"2-|"_s.replace(u'|', u"\r\n"_s) + u"2/x"_s, 3);
    EXPECT_FALSE(entry.ApplyReply(QString()));
    EXPECT_EQ(rig.Told(),
              "2-|2/^x; 1 of / 1, ID 2; 記述回答文が//でくくれていません。; txtReply; beep; "
              "message 48 クイブラ: 記述回答文が//でくくれていません。 -> Ok");
    EXPECT_EQ(rig.Words(1), u"1---"_s);
    EXPECT_EQ(rig.session.Draft()->Text, u"2-\r\n2/x"_s);
    // Behind the last question one symbol is lost, the second runs off the arrays: typed text stays.
    const QString toomuch = Sheet(u"1-|2-|11|1|1"_s);
    entry.TypeReply(toomuch, 0);
    EXPECT_EQ(ErrorOf([&] { entry.KeyEnter(); }), kErrorSubscript);
    EXPECT_EQ(entry.State().Text, toomuch);
    EXPECT_TRUE(entry.State().Changed);
    EXPECT_EQ(rig.Words(1), u"1---"_s);
    entry.TypeReply(u"3"_s, 0);
    entry.Scroll(0);
    EXPECT_EQ(rig.Words(1), u"3---"_s);
}

TEST(EntrySession, CharactersThatTheFileCannotHoldAreToldAtOnce) {
    Rig rig(1);
    rig.entry->TypeReply(u"1-\r\n-\r\n3/𠮷野/"_s, 0);
    rig.entry->ReplyLostFocus();
    EXPECT_EQ(rig.Words(0), u"1--3𠮷野-"_s);
    EXPECT_EQ(rig.entry->State().Status, u"Q3 の選択肢 3 の記述：1文字目「𠮷」は「?」になります。"_s);
    rig.entry->TypeReply(u"1-\r\n-\r\n3/吉野/"_s, 0);
    rig.entry->ReplyLostFocus();
    EXPECT_EQ(rig.entry->State().Status, QString()) << "gone with the character";
}

TEST(EntrySession, SamplesAreFoundDroppedDeletedAndRenamed) {
    Rig rig(4);
    EntrySession& entry = *rig.entry;
    rig.Told();
    const auto find = [&](const QString& id) {
        entry.SetIDno(id);
        entry.IDnoLostFocus();
        return rig.Told();
    };
    EXPECT_EQ(find(u"2"_s), "^[年齢]1-|-|-|; 1 of / 3, ID 2");
    EXPECT_EQ(find(u"9"_s), "^[年齢]1-|-|-|; 1 of / 3, ID 2; message 48 クイブラ: 指定のＩＤが見つかりません。 -> Ok");
    EXPECT_EQ(find(u"4294967296"_s),
              "^[年齢]1-|-|-|; 1 of / 3, ID 2; message 48 クイブラ: 探す番号は-4294967295から-4294967296です。 -> Ok");
    entry.StepDno(1);
    EXPECT_EQ(entry.State().IDno, u"3"_s);
    entry.SetDno(u"4"_s);
    entry.ShowSample();
    EXPECT_EQ(rig.Told(),
              "^[年齢]1-|-|-|; 2 of / 3, ID 3; to 4; message 48 クイブラ: 番号は現在0から3までです。 -> Ok");
    // An added sample without answers goes when it is left; its ID is issued again.
    entry.NextInput();
    EXPECT_EQ(rig.Told(), "[年齢] ^; 4 of / 4, ID 5; txtReply");
    entry.NextInput();
    EXPECT_EQ(rig.Told(), "[年齢] ^; 4 of / 4, ID 5; 空のサンプル(ID=5)を削除しました; txtReply");
    entry.Scroll(1);
    EXPECT_EQ(rig.session.survey.SampleCount(), 4);
    // IDs change places, and only free ones of the quota will do.
    rig.Told();
    rig.session.survey.QuotaLast = 20;
    for (const auto& [typed, told] : {std::pair(u"21"_s, "IDが割り当て外です"),
                                      {u"3"_s, "IDが重複しています"},
                                      {u"1234567890"_s, ""},
                                      {u"2"_s, ""}}) {
        rig.ui.inputAnswers = {typed};
        entry.ChangeID();
        const QStringList boxes = rig.ui.Lines(u"message"_s);
        EXPECT_EQ(boxes.join(u""_s).contains(QString::fromUtf8(told)), true) << told;
        EXPECT_EQ(boxes.size(), *told ? 1 : 0);
        rig.ui.transcript.clear();
    }
    rig.ui.inputAnswers = {u"20"_s};
    entry.ChangeID();
    EXPECT_EQ(rig.Told(),
              "^[年齢]1-|-|-|; 3 of / 3, ID 20; 空のサンプル(ID=5)を削除しました; input IDの変更 | 変更後のID | 0～20 "
              "|  | 2 -> 20");
    EXPECT_EQ(rig.session.survey.QuotaUsed, 2);
    // Deleting asks; the one before is shown, and from the first the first.
    rig.ui.messageAnswers = {Answer::Cancel, Answer::Ok};
    entry.Delete();
    EXPECT_EQ(rig.session.survey.SampleCount(), 4);
    entry.Delete();
    rig.ui.transcript.clear();
    EXPECT_EQ(entry.State().IDno, u"4"_s);
    entry.Scroll(0);
    for (int i = 0; i < 3; ++i) {
        rig.ui.messageAnswers = {Answer::Ok};
        entry.Delete();
    }
    EXPECT_EQ(rig.ui.Lines(u"message"_s).join(u' '),
              u"message 49 クイブラ: サンプル1を消去します -> Ok "_s
              u"message 49 クイブラ: サンプル3を消去します -> Ok message 49 クイブラ: サンプル4を消去します -> Ok"_s);
    EXPECT_FALSE(entry.State().Enabled);
    EXPECT_TRUE(entry.Close());
}

TEST(EntrySession, AddingRemindsOfTheSaveAndAsksForIDs) {
    Rig rig(1);
    EntrySession& entry = *rig.entry;
    Survey& survey = rig.session.survey;
    survey.SavedTime = QDateTime::currentDateTime().addSecs(-1900);
    entry.NextInput();
    EXPECT_EQ(rig.ui.Lines(u"message"_s).value(0),
              u"message 36 クイブラ: 最後に保存した時刻から30分経過しました。保存しますか？ -> No"_s);
    EXPECT_EQ(survey.SavedSampleCount, 1);
    EXPECT_GE(survey.SavedTime.secsTo(QDateTime::currentDateTime()), 0);
    EXPECT_LT(survey.SavedTime.secsTo(QDateTime::currentDateTime()), 100);
    survey.QuotaFirst = 50;
    survey.QuotaLast = 51;
    entry.SetInputID(true);
    rig.ui.inputAnswers = {u"51"_s};
    rig.Told();
    entry.NextInput();
    EXPECT_EQ(rig.Told(),
              "[年齢] ^; 1 of / 1, ID 51; 空のサンプル(ID=2)を削除しました; txtReply; "
              "input IDの変更 | 変更後のID | 50～51 |  | 50 -> 51");
    rig.Type(u"1"_s);
    entry.KeyEnter();
    survey.QuotaFirst = 51;
    RecalcQuotaUsed(survey);
    rig.Told();
    entry.NextInput();
    EXPECT_EQ(rig.ui.TakeTranscript().join(u' '),
              u"message 48 クイブラ: 発行できるＩＤが無くなりました。メインウィンドウ"_s
              u"「ｱﾝｹｰﾄ」の「ＩＤの範囲」で、出せるＩＤを増やしてください。 -> Ok"_s);
    EXPECT_TRUE(entry.Close());
    EXPECT_EQ(survey.CorrectFlags & kAskForID, kAskForID);
}

TEST(EntrySession, OtherWindowsDriveItByCommands) {
    Rig rig(2);
    EntrySession& entry = *rig.entry;
    Survey& survey = rig.session.survey;
    entry.SetDriver(u"併合"_s);
    entry.SetIDno(u"40"_s);
    entry.Command(u"NEW"_s);
    entry.SetReply(Sheet(u"1-|2-|1"_s));
    entry.Command(u"INPUT"_s);
    EXPECT_EQ(rig.Words(2), u"1-2-1-"_s);
    EXPECT_EQ(rig.Told(), "[年齢]1-|[学校]2-|[趣味]1[趣味] ^; 2 of / 2, ID 40");
    // No second sample of an ID, and nothing stored over the one on show.
    entry.Command(u"NEW"_s);
    EXPECT_EQ(rig.Told(),
              "[年齢]1-|[学校]2-|[趣味]1[趣味] ^; 2 of / 2, ID 40; changed; to -1; "
              "message 48 クイブラ: 番号は現在0から2までです。 -> Ok");
    entry.SetIDno(u"2"_s);
    entry.Command(u"ID"_s);
    EXPECT_EQ(rig.Told(), "^[年齢]1-|-|-|; 1 of / 2, ID 2");
    EXPECT_EQ(rig.Words(2), u"1-2-1-"_s);
    // What the checks change is not spoken of while an import drives.
    entry.Command(u"AUTONEW"_s);
    EXPECT_EQ(entry.State().IDno, u"3"_s);
    entry.SetReply(Sheet(u"1-|2/x/-|"_s));
    entry.Command(u"INPUT"_s);
    entry.Command(u"0"_s);
    EXPECT_EQ(rig.Words(2), u"1-2--"_s);
    EXPECT_EQ(rig.ui.TakeTranscript().filter(u"message"_s), QStringList());
    survey.QuotaLast = 3;
    entry.Command(u"AUTONEW"_s);
    EXPECT_EQ(rig.Told(),
              "^[年齢]1-|-|-|; 0 of / 3, ID 1; ＩＤが尽きました; "
              "message 48 クイブラ: ＩＤが尽きました。メインウィンドウ「内容変更」の「割り当てＩＤ」で、"
              "出せるＩＤを増やしてください。 -> Ok");
    EXPECT_FALSE(entry.Close());
    EXPECT_EQ(rig.Told(),
              "^[年齢]1-|-|-|; 0 of / 3, ID 1; ＩＤが尽きました; driver; beep; "
              "message 48 クイブラ: 併合ウィンドウが開いているうちはこのウィンドウは閉じられません -> Ok");
    entry.SetDriver(QString());
    entry.TypeReply(Sheet(u"1-|2/x/-|"_s), 0);
    entry.ReplyLostFocus();
    EXPECT_EQ(rig.ui.TakeTranscript().filter(u"message"_s).join(u' '),
              u"message 48 クイブラ: Q2 学校の回答(2)は記述選択肢ではないのに記述文があります -> Ok"_s);
    EXPECT_TRUE(entry.Close());
}

TEST(EntrySession, ALibrarysTextStandsOnTheSheetAndIsReadAtTheNextKey) {
    Rig rig(1);
    EntrySession& entry = *rig.entry;
    rig.session.survey.LineFlag[1] = true;
    rig.caller.answer = u"2-"_s;
    entry.TypeReply(u"1-"_s, 2);
    entry.KeyEnter();
    EXPECT_EQ(rig.caller.calls.join(u' '), u"0 1.0"_s);
    EXPECT_EQ(rig.Told(), "[年齢]1-|[学校] 2-^; 0 of / 0, ID 1; changed");
    EXPECT_EQ(rig.Words(0), u"1---"_s);
    entry.KeyEnter();
    EXPECT_EQ(rig.Words(0), u"1-2--"_s);
    rig.caller.answer = u"済み"_s;
    rig.ui.transcript.clear();
    entry.Execute();
    EXPECT_EQ(rig.ui.TakeTranscript().join(u' '), u"message 0 クイブラ: 済み -> Ok"_s);
    EXPECT_EQ(rig.caller.calls.last(), u"0 3.0"_s);
}

TEST(EntrySession, KeyByKeyEndsInTheSameSampleAsTheWholeTextAtOnce) {
    Random random(21);
    for (int round = 0; round < 80; ++round) {
        Rig rig(1);
        Survey& survey = rig.session.survey;
        survey = MakeRandomSurvey(random, 8, 2);
        for (int q = 0; q < survey.QuestionCount; q += 2)
            ToggleChoiceStatus(survey, q, 1, kEssay);
        RecalcLayout(survey);
        survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
        for (const qint32 id : {1, 2, 3})
            AddSample(survey, rig.ui, id);
        for (int line = 0; line < kLineStartEntries; ++line)
            survey.LineStart[line] = PackPosition(std::min(line, 255), 0);
        for (int q = 0; q < survey.QuestionCount; ++q) {
            qint16 answers[6];
            QString essays[6];
            const auto count = static_cast<qint16>(Pick(random, q == 0 ? 1 : 0, survey.Questions[q].Anum));
            for (int i = 0; i < count; ++i) {
                answers[i] = static_cast<qint16>(Pick(random, 1, survey.Questions[q].ChoiceCount - 1));
                essays[i] = u"記 %1"_s.arg(i);
            }
            SetAnswersEssay(survey, 0, q, count, answers, essays);
        }
        SheetLook plain;
        plain.names = false;
        const QString text = BuildAnswerSheet(survey, 0, survey.QuestionCount, 0, plain, 0, {}).Text;
        EntrySession& entry = *rig.entry;
        entry.RefreshControls();
        entry.Scroll(1);
        entry.TypeReply(text, 0);
        entry.ReplyLostFocus();
        entry.Scroll(2);
        entry.TypeReply(QString(), 0);
        int q = 0;
        for (const QString& line : text.chopped(2).split(u"\r\n"_s)) {
            // A Space behind the last question of a line goes on to the next one by itself.
            bool nextLine = false;
            for (const QChar key : line) {
                rig.Type(key);
                // Of more than one answer: on a line of one a "-" at the end of all is part of a text.
                if (key == u'-' && survey.Questions[q].Anum > 1 && Pick(random, 0, 2) == 0) nextLine = entry.KeySpace();
            }
            if (!nextLine) entry.KeyEnter();
            q = std::min(q + 1, survey.QuestionCount - 1);
        }
        entry.ReplyLostFocus();
        const auto packed = [&](qint32 dno) {
            return QByteArrayView(survey.Samples.Packed(dno), survey.SampleBytes).toByteArray().toHex();
        };
        EXPECT_EQ(packed(2), packed(1)) << qPrintable(text);
        EXPECT_EQ(entry.State().Text.isEmpty(), false);
        for (int slot = 0; slot < survey.EssaySlots; ++slot)
            EXPECT_EQ(survey.Samples.Essay(2, slot), survey.Samples.Essay(1, slot));
    }
}

TEST(EntrySession, ADraftOfARecoveryComesUpWhereItWasTyped) {
    Rig rig(3);
    rig.session.SetDraft(SheetDraft{2, u"[年齢] 3"_s, 6});
    EntrySession again(rig.session, rig.caller, rig.desk);
    again.Open();
    EXPECT_EQ(again.State().IDno, u"2"_s);
    EXPECT_EQ(again.State().Text, u"[年齢] 3"_s);
    EXPECT_EQ(again.State().Caret, 6);
    EXPECT_TRUE(again.Close());
    EXPECT_EQ(rig.Words(1), u"3---"_s);
}

TEST(SampleWords, TellTheAnswersInWords) {
    Rig rig(1);
    Survey& survey = rig.session.survey;
    const qint16 answers[] = {3, 1};
    const QString essays[] = {u"川"_s, QString()};
    SetAnswersEssay(survey, 0, 2, 2, answers, essays);
    EXPECT_EQ(SampleWords(survey, 0, 0, 3, false).toStdString(),
              "年齢 : (1)若い\r\n学校 : \r\n趣味 : (3)他/川/ , (1)本\r\n");
    const qint16 other[] = {2};
    SetAnswers(survey, 0, 0, 1, other);
    survey.Questions[2].SetText(u"趣味\rあなたの趣味は\r\r"_s);
    EXPECT_EQ(SampleWords(survey, 0, 1, 3, true).toStdString(),
              "学校 \r\n---- (該当せず)\r\n\r\n趣味 あなたの趣味は\r\n---- (3)他/川/ , (1)本\r\n\r\n");
}

}  // namespace
}  // namespace quibra
