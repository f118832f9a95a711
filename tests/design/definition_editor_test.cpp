// The question editor as a conversation: which edits ask for a rewrite, what each says, and what it leaves.
#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "companion/limit_terms.h"
#include "core/answer_store.h"
#include "core/code_page.h"
#include "core/labels.h"
#include "design/editor_rig.h"
#include "session/rescue.h"
#include "support/error_of.h"
#include "support/qt_printers.h"
#include "support/survey_builder.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

const QString kGate =
    u"message 1 クイブラ: この操作をするとサンプルデータを修正しなくてはいけません。修正には時間がかかります。操作を続けますか？ -> %1"_s;
const QString kSure = u"message 49 クイブラ: 本当に削除して構いませんか？ -> %1"_s;
const QString kInput =
    u"input 挿入する質問の選択肢数 | 選択肢数= | 1～127,｢無回答｣を数えない | すでにある質問をコピーする時は何も入力せずにOKを押してください |  -> %1"_s;
const QString kAllUnanswered =
    u"message 64 クイブラ: \\r\\n　既に入力してあるサンプルの新しい質問での回答は全員『(0)無回答』になります。 -> Ok"_s;

// 性別 (男, 女), 職業 of women (会社員, 自営/essay), 趣味 of two answers of the self-employed; two samples.
Survey People(bool samples = true) {
    SurveyBuilder builder;
    builder.Question(u"性別"_s, u"性別は"_s, 1, {u"男"_s, u"女"_s});
    builder.Question(u"職業"_s, u"職業は"_s, 1, {u"会社員"_s, u"自営"_s});
    builder.Question(u"趣味"_s, u"趣味は"_s, 2, {u"山"_s, u"川"_s, u"海"_s});
    builder.Status(1, 2, {kEssay});
    builder.QuestionLimit(1, {SurveyBuilder::Line(kLimitAnd, 0, 2)});
    builder.QuestionLimit(2, {SurveyBuilder::Line(kLimitAnd, 1, 2)});
    if (samples) {
        builder.Sample({{2}, {{2, u"店"_s}}, {3, 1}});
        builder.Sample({{1}});
    }
    return builder.Get();
}

class Editor : public testing::Test {
  protected:
    void Open(const Survey& survey) {
        editor.reset();
        rig = std::make_unique<EditorRig>(survey);
        editor = std::make_unique<DefinitionEditor>(rig->session, rig->windows);
    }
    Survey& Data() { return rig->session.survey; }
    QStringList Said() { return rig->ui.TakeTranscript(); }

    std::unique_ptr<EditorRig> rig;
    std::unique_ptr<DefinitionEditor> editor;
};

// What an edit needs and leaves, by the table of edits; the place is question 2, choice 2.
TEST_F(Editor, AsksOnceAndOnlyWhereSamplesMustBeRewritten) {
    struct Case {
        const char* name;
        std::function<void(DefinitionEditor&)> edit;
        bool rewrites;
        bool structure;
    };
    const Case cases[] = {
        {"insert question", [](auto& e) { e.InsertQuestion(); }, true, true},
        {"delete question", [](auto& e) { e.DeleteQuestion(); }, true, true},
        {"insert choice", [](auto& e) { e.InsertChoice(); }, true, true},
        {"delete choice", [](auto& e) { e.DeleteChoice(); }, true, true},
        {"anum",
         [](auto& e) {
             if (e.ConfirmRewrite()) e.SetAnum(2);
         },
         true, false},
        {"essay", [](auto& e) { e.SetStatus(kEssay, false); }, true, false},
        {"exclusive", [](auto& e) { e.SetStatus(kExclusive, true); }, true, false},
        {"up", [](auto& e) { e.MoveUp(); }, true, false},
        {"down",
         [](auto& e) {
             e.SelectQuestion(2);
             e.MoveDown();
         },
         true, false},
        {"limit", [](auto& e) { e.EditLimit(); }, true, false},
        {"question text", [](auto& e) { e.SetQuesText(0, u"x"_s); }, false, false},
        {"choice text", [](auto& e) { e.SetChoiceText(u"x"_s); }, false, false},
        {"symbols", [](auto& e) { e.SetLabelKind(2); }, false, false},
        {"other", [](auto& e) { e.SetStatus(kOther, true); }, false, false},
        {"multiple", [](auto& e) { e.SetStatus(kMultiple, true); }, false, false},
    };
    for (const Case& edit : cases) {
        for (const Answer answer : {Answer::Cancel, Answer::Ok}) {
            SCOPED_TRACE(edit.name);
            Open(People());
            editor->SelectQuestion(1);
            editor->SelectChoice(2);
            LimitList other;
            other[1] = SurveyBuilder::Line(kLimitNot, 0, 1);
            rig->windows.picked = other;
            rig->ui.inputAnswers = {u"3"_s};
            const bool deletes = QByteArray(edit.name).startsWith("delete");
            const Survey before = Data();
            rig->ui.messageAnswers = deletes ? std::deque{Answer::Ok, answer} : std::deque{answer};
            edit.edit(*editor);
            EXPECT_EQ(rig->ui.Lines(u"message 1 "_s),
                      edit.rewrites ? QStringList(kGate.arg(ScriptedInterface::NameOf(answer))) : QStringList());
            const bool done = answer == Answer::Ok;
            EXPECT_EQ(editor->IsChanged(), edit.rewrites && done);
            EXPECT_EQ(editor->IsQCChanged(), edit.structure && done);
            EXPECT_EQ(SameDefinition(Data(), before), edit.rewrites && !done) << "all but the refused change something";
            if (edit.rewrites && done) {
                Said();
                editor->SetStatus(kExclusive, !editor->Status(kExclusive));
                EXPECT_EQ(rig->ui.Lines(u"message 1 "_s), QStringList());
            }
        }
    }
}

TEST_F(Editor, InsertsQuestionsWithConditionsAndMapsInStep) {
    Open(People());
    EXPECT_EQ(editor->QuestionRows(),
              (QStringList{u"性別 性別は"_s, u"+--職業 職業は"_s, u"|  +--趣味 趣味は［2つまで］"_s, u"以上↑"_s}));
    editor->SelectQuestion(1);
    rig->ui.messageAnswers = {Answer::Ok};
    rig->ui.inputAnswers = {u"4"_s, QString(), u"0"_s, u"128"_s, std::nullopt};
    editor->InsertQuestion();
    EXPECT_EQ(Said(), (QStringList{kGate.arg(u"Ok"_s), kInput.arg(u"4"_s), kAllUnanswered}));
    EXPECT_EQ(editor->QuestionRows()[1], u"質問2 "_s);
    EXPECT_EQ(editor->ChoiceRows(), (QStringList{u"(0)無回答［排他］"_s, u"(1)"_s, u"(2)"_s, u"(3)"_s, u"(4)"_s}));
    EXPECT_EQ(Data().QLimit(1, 3).b, PackPosition(2, 2));

    // A copy of the last question, whose own place has moved meanwhile.
    rig->ui.questionAnswers = {3};
    editor->InsertQuestion();
    EXPECT_EQ(Said(), (QStringList{kInput.arg(QString()), u"question どの質問をコピーしますか from 0 of 4 -> 3"_s,
                                   kAllUnanswered}));
    EXPECT_EQ(editor->QuestionRows(),
              (QStringList{u"性別 性別は"_s, u"|  +--趣味 趣味は［2つまで］"_s, u"質問2 "_s, u"+--職業 職業は"_s,
                           u"|  +--趣味 趣味は［2つまで］"_s, u"以上↑"_s}));
    for (int i = 0; i < 3; ++i)
        editor->InsertQuestion();
    EXPECT_EQ(Said(), (QStringList{kInput.arg(u"0"_s), kInput.arg(u"128"_s), kInput.arg(u"cancel"_s)}));
    EXPECT_EQ(Data().QuestionCount, 5);

    // What was made since the opening goes without a trace in the maps.
    rig->ui.messageAnswers = {Answer::Ok, Answer::Ok, Answer::Ok};
    editor->DeleteQuestion();
    editor->DeleteQuestion();
    editor->DeleteQuestion();
    EXPECT_EQ(Said(), QStringList({kSure.arg(u"Ok"_s), kSure.arg(u"Ok"_s), kSure.arg(u"Ok"_s)}));
    EXPECT_EQ(editor->Maps().QuestionMap[0], 0);
    EXPECT_EQ(editor->Maps().QuestionMap[1], kDeleted);
    EXPECT_EQ(editor->Maps().QuestionMap[2], 1);
    EXPECT_EQ(editor->QuestionRows(), (QStringList{u"性別 性別は"_s, u"趣味 趣味は［2つまで］"_s, u"以上↑"_s}));
    // Its line that tested the deleted question is gone.
    EXPECT_EQ(Data().QLimit(1, 1).a, 0);

    while (Data().QuestionCount < kMaxQuestions) {
        rig->ui.inputAnswers = {u"1"_s};
        editor->InsertQuestion();
    }
    Said();
    editor->InsertQuestion();
    EXPECT_EQ(Said(), QStringList(u"message 48 クイブラ: これ以上質問は作れません -> Ok"_s));
}

TEST_F(Editor, RefusesSilentlyWhatItsWindowWouldNotOffer) {
    SurveyBuilder builder;
    builder.Question(u"一"_s, u"本文"_s, 1, {u"唯一"_s});
    Open(builder.Get());
    const Survey before = Data();
    editor->DeleteQuestion();
    editor->DeleteChoice();
    editor->MoveUp();
    editor->MoveDown();
    editor->SetAnum(2);
    editor->SelectChoice(0);
    editor->InsertChoice();
    editor->SetChoiceText(u"x"_s);
    EXPECT_FALSE(editor->SetStatus(kOther, true));
    editor->SelectQuestion(1);
    editor->SetQuesText(0, u"x"_s);
    editor->EditLimit();
    editor->SetLabelKind(3);
    EXPECT_EQ(Said(), QStringList());
    EXPECT_TRUE(SameDefinition(Data(), before));
    EXPECT_EQ(editor->ChoiceRows(), QStringList());
}

TEST_F(Editor, RenumbersConditionLinesToTheLetter) {
    struct Case {
        const char* name;
        std::vector<LimitLine> before;
        int q;  // edit of this question, or of its choice c
        int c;
        int dir;
        std::vector<LimitLine> after;
    };
    const auto line = [](int q, int c, qint16 a = 3) { return LimitLine{a, PackPosition(q, c)}; };
    const LimitLine end{0, 0};
    const Case cases[] = {
        {"question before", {line(1, 1), line(0, 2)}, 1, -1, 1, {line(2, 1), line(0, 2)}},
        {"deleted question", {line(1, 1), line(0, 2), line(3, 1)}, 1, -1, -1, {line(0, 2), line(2, 1), end, end}},
        {"closing line behind question 0", {line(1, 1)}, 0, -1, 1, {line(2, 1), line(1, 0, 0), line(1, 0, 0)}},
        {"closing line left out with question 0", {line(1, 1)}, 0, -1, -1, {line(0, 1), end, end}},
        {"inserted choice", {line(1, 1), line(1, 2)}, 1, 2, 1, {line(1, 1), line(1, 3)}},
        {"deleted choice", {line(1, 2), line(1, 3)}, 1, 2, -1, {line(1, 2), end, end}},
        {"takes over", {line(1, 2, 4), line(0, 1, -1)}, 1, 2, -1, {line(0, 1, 4), end, end}},
        {"looks one further", {line(1, 3), line(0, 1, -2)}, 1, 3, -1, {line(1, 1), line(0, 1, -2)}},
        {"finds none further", {line(1, 9), line(0, 1, -2)}, 1, 9, -1, {line(0, 1), end, end}},
    };
    for (const Case& edit : cases) {
        SCOPED_TRACE(edit.name);
        SurveyBuilder builder;
        for (int q = 0; q < 5; ++q)
            builder.Question(u"問"_s, u"本文"_s, 1, QStringList(q == 1 ? 9 : 4, u"選択肢"_s));
        Survey& survey = builder.Get();
        std::ranges::copy(edit.before, survey.QLimit.Column(4).begin() + 1);
        StructureMaps maps;
        ApplyStructureEdit(survey, maps, edit.q, edit.c, edit.dir);
        const int asker = edit.c < 0 ? 4 + edit.dir : 4;
        for (size_t k = 0; k < edit.after.size(); ++k) {
            EXPECT_EQ(survey.QLimit(static_cast<int>(k) + 1, asker).a, edit.after[k].a) << k;
            EXPECT_EQ(survey.QLimit(static_cast<int>(k) + 1, asker).b, edit.after[k].b) << k;
        }
    }
}

// What is written in the middle of an edit is the survey as it was, and the edit goes on.
TEST_F(Editor, RescuesTheSurveyBeforeTheEdit) {
    const QTemporaryDir folder;
    Open(People());
    Data().FileName = folder.filePath(u"a.qb"_s);
    const QByteArray before = WriteSurveyBytes(Data());
    rig->ui.messageAnswers = {Answer::Ok, Answer::Ok};
    editor->SelectQuestion(2);
    editor->SelectChoice(1);
    editor->DeleteChoice();
    ASSERT_TRUE(editor->IsChanged());
    const Survey edited = Data();
    rig->session.ChangedOn();
    EXPECT_EQ(FileBytes(WriteRescueFile(rig->session)), before);
    EXPECT_TRUE(SameDefinition(Data(), edited));
    EXPECT_FALSE(editor->IsBusy());
}

TEST_F(Editor, MovesInTheHierarchyByCopyingConditions) {
    Open(People());
    rig->ui.messageAnswers = {Answer::Ok};
    editor->SelectQuestion(2);
    editor->MoveUp();  // beside its parent
    EXPECT_EQ(editor->QuestionRows()[2], u"|  趣味 趣味は［2つまで］"_s);
    editor->MoveUp();
    EXPECT_EQ(editor->QuestionRows()[2], u"趣味 趣味は［2つまで］"_s);
    editor->MoveDown();  // its predecessor is one deeper
    EXPECT_EQ(editor->QuestionRows()[2], u"|  趣味 趣味は［2つまで］"_s);

    // Otherwise the condition editor opens; an empty condition from it counts as none.
    rig->windows.picked = LimitList();
    editor->MoveDown();
    EXPECT_EQ(rig->windows.offered[1].b, PackPosition(0, 2));
    EXPECT_EQ(Data().QLimit(1, 2).b, PackPosition(0, 2));
    editor->EditLimit();
    EXPECT_EQ(Data().QLimit(1, 2).a, 0);
    EXPECT_EQ(editor->LimitInWords(), u"限定条件はありません"_s);

    // A question that would depend on itself: the error of the depth, and nothing has changed.
    LimitList circle;
    circle[1] = SurveyBuilder::Line(kLimitAnd, 1, 1);
    rig->windows.picked = circle;
    editor->SelectQuestion(0);
    const Survey before = Data();
    EXPECT_EQ(ErrorOf([&] { editor->EditLimit(); }), kErrorOverflow);
    EXPECT_TRUE(SameDefinition(Data(), before));
}

TEST_F(Editor, StatusBoxesPullEachOtherAlong) {
    QTemporaryDir folder;
    Survey survey = People(false);
    survey.FileName = folder.filePath(u"people.qb"_s);
    const auto put = [&](const QString& name, const QString& text) {
        WriteFileBytes(folder.filePath(name), EncodeCodePage(text));
        return folder.filePath(name);
    };
    const QString table = put(u"店.txt"_s, u"' 注\r\n1,店\r\n2,工場\r\n"_s);
    const QString faulty = put(u"表.txt"_s, u"1,店\r\n2,工,場\r\n"_s);
    WriteFileBytes(survey.FileName, QByteArray());
    Open(survey);
    editor->SelectQuestion(0);
    ChoiceRec& choice = Data().Choices(1, 0);

    rig->ui.inputAnswers = {u"20"_s, u"3"_s};
    EXPECT_TRUE(editor->SetStatus(kNumber, true));
    EXPECT_EQ(Said(), (QStringList{u"input 数量の条件 | 最小値は |  |  | 0 -> 20"_s,
                                   u"input 数量の条件 | 最大値は | 20～ |  | 0 -> 3"_s}));
    EXPECT_EQ(editor->ChoiceRows()[1], u"(1)男［数値:3-20］"_s);

    rig->ui.fileAnswers = {table};
    rig->ui.messageAnswers = {Answer::Yes};
    editor->SetStatus(kCode, true);
    EXPECT_EQ(
        Said(),
        (QStringList{
            u"file open "_s + folder.path() + u"/ | 全てのﾌｧｲﾙ|*.*| -> "_s + table,
            u"message 4 クイブラ: コード表ﾌｧｲﾙは常にアンケートファイルと同じディレクトリに在るとしますか？ -> Yes"_s}));
    EXPECT_EQ(choice.CodeText, u"店.txt"_s);
    EXPECT_EQ(choice.Status, 1 << kEssay | 1 << kCode);
    EXPECT_TRUE(editor->IsChanged());

    // Any other box takes the file away, and leaves the bit.
    editor->SetStatus(kMultiple, true);
    EXPECT_EQ(choice.CodeText, QString());
    EXPECT_TRUE(editor->Status(kCode));
    editor->SetStatus(kEssay, false);
    EXPECT_EQ(
        Said(),
        QStringList(u"message 0 クイブラ: コードを消すのは要回答チェックが表示されていない時だけ出来ます。 -> Ok"_s));
    EXPECT_EQ(choice.Status, 1 << kMultiple);

    rig->ui.fileAnswers = {faulty};
    editor->SetStatus(kCode, true);
    EXPECT_EQ(Said().last(), u"message 0 クイブラ: コード表として使えるファイルになっていません : 2,工,場 -> Ok"_s);
    EXPECT_EQ(choice.CodeText, QString());

    editor->SetStatus(kOther, true);
    editor->SelectChoice(2);
    rig->ui.messageAnswers = {Answer::No, Answer::Yes};
    for (const bool on : {true, false, true})
        editor->SetStatus(kOther, on);
    const QString asked =
        u"message 4 クイブラ: その他選択肢は通常１つの質問につき１つです。今まで(1)男[ｺｰﾄﾞ:]［その他］［複数］がその他選択肢でしたが、交替しますか -> %1"_s;
    EXPECT_EQ(Said(), (QStringList{asked.arg(u"No"_s), asked.arg(u"Yes"_s)}));
    EXPECT_FALSE(choice.Has(kOther));
    EXPECT_TRUE(Data().Choices(2, 0).Has(kOther));

    editor->SelectChoice(1);
    editor->ApplyMultipleToAll();
    EXPECT_TRUE(Data().Choices(2, 0).Has(kMultiple));
    EXPECT_FALSE(Data().Choices(0, 0).Has(kMultiple));
}

TEST_F(Editor, AssignsCodesToStoredTextsAtOnce) {
    QTemporaryDir folder;
    Survey survey = People();
    survey.FileName = folder.filePath(u"people.qb"_s);
    WriteFileBytes(folder.filePath(u"t.txt"_s), EncodeCodePage(u"7,店\r\n8,工場\r\n"_s));
    const QString offer =
        u"ask 既にある記述回答に対して割り付けしますか？　コードを見て割り付けするか単語を見て割り付けするか選べます。ｷｬﾝｾﾙを選ぶと割り付けをしません。 | この操作は後でキャンセル出来ません。 | コードを見て割り付け | 単語を見て割り付け -> %1"_s;
    struct Case {
        const char16_t* text;
        int way;
        const char16_t* after;
    };
    for (const Case& c : {Case{u"店", 2, u"7:店"}, Case{u"8", 1, u"?:?"}, Case{u"8:", 1, u"8:工場"},
                          Case{u"?:工場", 2, u"8:工場"}, Case{u"海", 2, u"?:海"}, Case{u"店", 0, u"店"}}) {
        survey.Samples.SetEssay(0, 0, QString::fromUtf16(c.text));
        Open(survey);
        editor->SelectQuestion(1);
        editor->SelectChoice(2);
        rig->ui.fileAnswers = {folder.filePath(u"t.txt"_s)};
        rig->ui.askAnswers = {c.way};
        editor->SetStatus(kCode, true);
        EXPECT_EQ(Said().last(), offer.arg(c.way));
        EXPECT_EQ(Data().Samples.Essay(0, 0), QString::fromUtf16(c.after));
        EXPECT_EQ(rig->session.IsChanged(), c.way != 0);
    }
    // Cancel doesn't bring them back; without the code its texts are names.
    Data().Samples.SetEssay(0, 0, u"8:工場"_s);
    rig->ui.messageAnswers = {Answer::Yes, Answer::Ok};
    editor->SetStatus(kCode, false);
    EXPECT_EQ(Said(), QStringList(u"message 4 クイブラ: コ－ドを消しますか？ -> Yes"_s));
    EXPECT_EQ(editor->Cancel(), EditorOutcome::Done);
    EXPECT_EQ(Data().Samples.Essay(0, 0), u"工場"_s);
    EXPECT_EQ(rig->windows.captions.last(), u"終了"_s);
}

TEST_F(Editor, TakesPastedLinesAsChoicesAndTextsAsTheyAreTyped) {
    Open(People(false));
    editor->SelectChoice(2);
    editor->AddChoices(u"甲\r\n\r\n乙"_s, [] { return true; });
    EXPECT_EQ(Said(), QStringList(u"message 0 クイブラ: 終了しました -> Ok"_s));
    EXPECT_EQ(editor->ChoiceRows(),
              (QStringList{u"(0)無回答［排他］"_s, u"(1)男"_s, u"(2)甲"_s, u"(3)"_s, u"(4)乙"_s, u"(5)女"_s}));
    EXPECT_EQ(editor->Choice(), 5);
    EXPECT_EQ(Data().QLimit(1, 1).b, PackPosition(0, 5));
    editor->AddChoices(u"丙\n"_s.repeated(200), [] { return true; });
    EXPECT_EQ(Data().Questions[0].ChoiceCount, kMaxChoices);
    EXPECT_EQ(editor->ChoiceRows().last(), u"(.127.)女"_s);
    for (const int kind : {1, 2, 3}) {
        editor->SetLabelKind(kind);
        EXPECT_EQ(editor->LabelKind(), 0);
    }
    editor->SelectQuestion(2);
    editor->SetLabelKind(3);
    EXPECT_EQ(editor->ChoiceRows()[1], u"(A)山"_s);

    editor->SetQuesText(2, u"山の人"_s);
    editor->SetQuesText(0, QString());
    EXPECT_EQ(Data().Questions[2].Text, u"\r趣味は\r山の人\r"_s.leftJustified(128));
    editor->SetQuesText(1, u"長い"_s.repeated(80));
    EXPECT_EQ(Data().Questions[2].Text.size(), 128);
    EXPECT_EQ(editor->QuesText(0) + u'|' + editor->QuesText(2), u"|"_s);
    EXPECT_EQ(editor->QuesText(1), u"長い"_s.repeated(80).left(127));
}

TEST_F(Editor, FinishesWithLinesAndPredefinedConditionsReset) {
    Survey survey = People();
    survey.PreLimit(1, 3) = SurveyBuilder::Line(kLimitAnd, 0, 1);
    survey.LineFlag[2] = true;
    Open(survey);
    EXPECT_EQ(editor->Finish(), EditorOutcome::Open);  // the question's safe answer
    rig->ui.messageAnswers = {Answer::Ok};
    EXPECT_EQ(editor->Finish(), EditorOutcome::Done);
    EXPECT_EQ(Said(),
              (QStringList{u"message 65 クイブラ: 終了します。 -> Cancel"_s,
                           u"message 65 クイブラ: 終了します。 -> Ok"_s, u"busy on"_s, u"beep"_s, u"busy off"_s}));
    EXPECT_EQ(Data().PreLimit(1, 3).a, 0);
    EXPECT_TRUE(Data().LineFlag[2]);
    EXPECT_EQ(SamplesOf(Data()), SamplesOf(survey));
    EXPECT_TRUE(rig->session.IsChanged());

    Open(survey);
    editor->SelectQuestion(1);
    rig->ui.messageAnswers = {Answer::Ok, Answer::Ok, Answer::Ok, Answer::Ok};
    editor->SelectChoice(1);
    editor->DeleteChoice();
    Said();
    EXPECT_EQ(editor->Finish(), EditorOutcome::Open);  // 回答補正 cancelled
    EXPECT_EQ(Said(), QStringList(u"message 65 クイブラ: 終了します。要回答チェックの時は時間がかかります。 -> Ok"_s));
    rig->windows.correction = 0;
    EXPECT_EQ(editor->Finish(), EditorOutcome::Done);
    EXPECT_EQ(rig->windows.captions, QStringList(u"100%"_s));
    EXPECT_EQ(Data().LineStart[254], PackPosition(254, 0));
    EXPECT_EQ(Data().LineStart[255], Data().LineStart[254]);
    EXPECT_FALSE(Data().LineFlag[2]);
    EXPECT_EQ(Data().Samples.Essay(0, 0), u"店"_s);
}

TEST_F(Editor, AStoppedRewriteLeavesAWholeSurveyThatMayNotBeSaved) {
    const Survey survey = People();
    Open(survey);
    rig->ui.messageAnswers = {Answer::Ok, Answer::Ok, Answer::Cancel, Answer::Ok};
    editor->SelectQuestion(2);
    editor->DeleteQuestion();
    Said();
    rig->ui.messageAnswers = {Answer::Ok, Answer::Ok};
    rig->windows.correction = 15;
    rig->windows.onProgress = [this] {
        EXPECT_TRUE(editor->IsBusy());
        EXPECT_EQ(editor->Cancel(), EditorOutcome::Open);
    };
    EXPECT_EQ(editor->Finish(), EditorOutcome::Broken);
    EXPECT_EQ(rig->ui.Lines(u"message"_s).last(),
              u"message 305 クイブラ: 中止するとクイブラ内部のアンケートデータが壊れて保存出来なくなります。 -> Ok"_s);
    EXPECT_EQ(Data().FileName, kUnsavable);
    EXPECT_TRUE(SameDefinition(Data(), survey));
    EXPECT_EQ(SamplesOf(Data()), SamplesOf(survey));
    editor.reset();
    EXPECT_TRUE(SameDefinition(Data(), survey));
}

// More bits than 16 bits can number: an error, and the editor goes on.
TEST_F(Editor, ALayoutThatDoesNotFitIsRefusedWithAllEditsKept) {
    SurveyBuilder builder;
    for (int q = 0; q < 40; ++q)
        builder.Question(u"問"_s, u"本文"_s, q < 32 ? 126 : 1, QStringList(126, u"選択肢"_s));
    builder.Sample({{5}});
    Open(builder.Get());
    for (int q = 32; q < 40; ++q) {
        editor->SelectQuestion(q);
        editor->SetAnum(126);
    }
    const Survey before = Data();
    rig->ui.messageAnswers = {Answer::Ok};
    rig->windows.correction = 15;
    EXPECT_EQ(ErrorOf([&] { editor->Finish(); }), kErrorOverflow);
    EXPECT_TRUE(SameDefinition(Data(), before));
    EXPECT_FALSE(editor->IsBusy());
    rig->ui.messageAnswers = {Answer::Ok};
    EXPECT_EQ(editor->Cancel(), EditorOutcome::Done);
    EXPECT_TRUE(SameDefinition(Data(), builder.Get()));
}

}  // namespace
}  // namespace quibra
