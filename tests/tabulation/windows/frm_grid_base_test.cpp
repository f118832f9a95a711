#include "tabulation/windows/frm_grid_base.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFontDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "core/answer_store.h"
#include "core/code_page.h"
#include "core/settings.h"
#include "session/survey_file.h"
#include "session/survey_session.h"
#include "support/qt_printers.h"
#include "support/random_survey.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "support/survey_bytes.h"
#include "support/windows/form_driver.h"
#include "support/windows/scripted_desk.h"
#include "tabulation/html_result.h"
#include "tabulation/windows/sheet_host.h"
#include "tree_paths.h"
#include "ui/accessibility.h"
#include "ui/flex_grid.h"
#include "ui/theme.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Lets events run as the program does, and does something at each turn.
class TurningUser : public ScriptedInterface {
  public:
    std::function<void()> atTurn;
    void LetEventsRun() override {
        if (atTurn) atTurn();
        QCoreApplication::processEvents();
    }
};

class FrmGridBaseTest : public testing::Test {
  protected:
    // Ten people: fruit (6 りんご, 3 みかん, 1 none) and sex (5 男, 4 女, 1 none).
    void SetUp() override {
        SurveyBuilder builder;
        builder.Question(u"果物"_s, u"どちらが好きですか"_s, 1, {u"りんご"_s, u"みかん"_s});
        builder.Question(u"性別"_s, u"性別は"_s, 1, {u"男"_s, u"女"_s});
        for (const auto& [fruit, sex] :
             {std::pair{1, 1}, {1, 2}, {1, 2}, {2, 1}, {2, 0}, {1, 1}, {0, 2}, {1, 2}, {2, 1}, {1, 1}})
            builder.Sample({Given(fruit), Given(sex)});
        session.survey = std::move(builder.Get());
        cross.FromQno = cross.ToQno = 0;
        SetCrossQuestion(cross, session.survey, 1);
        form = &windows.New();
    }
    static std::vector<GivenAnswer> Given(int c) {
        return c == 0 ? std::vector<GivenAnswer>{} : std::vector<GivenAnswer>{c};
    }

    void Total(const TotalOption& option) {
        windows.option = option;
        form->DoTotal();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    }
    template <typename T>
    T* Find(const char* name) {
        return form->findChild<T*>(QString::fromLatin1(name));
    }
    FlexGrid* Grid() { return Find<FlexGrid>("Grid"); }
    void Trigger(const char* name) { quibra::Trigger(form, QString::fromLatin1(name)); }
    // The cells of a row as the grid shows them.
    QString Row(int row) {
        QStringList cells;
        for (int column = 0; column < Grid()->model()->columnCount(); ++column)
            cells += Grid()->model()->index(row, column).data().toString();
        return cells.join(u'|');
    }
    // What the menus offer: "-" for a separator, "*" before what is marked and "." before what can be.
    QStringList Items() {
        QStringList items;
        for (const char* menu : {"mnuFile", "mnuEdit", "mnuFont"})
            for (const QAction* item : Find<QMenu>(menu)->actions()) {
                const QString mark = item->isChecked() ? u"*"_s : item->isCheckable() ? u"."_s : QString();
                if (item->isVisible()) items += item->isSeparator() ? u"-"_s : mark + item->text();
            }
        return items;
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(Grid(), key, modifiers); }
    static QString Copied() { return QGuiApplication::clipboard()->text(); }

    TurningUser ui;
    SurveySession session{ui, QString()};
    Settings& settings = session.settings;
    ScriptedDesk desk;
    ResultWindows windows{session, desk};
    FrmGridBase* form = nullptr;  // owned by `windows`
    TotalOption cross;
    QTemporaryDir folder;
};

}  // namespace

TEST_F(FrmGridBaseTest, MenusAreThoseOfTheKind) {
    // Marked by t what only tables have, by l what only lists have.
    const QString all =
        u" 集計結果ﾌｧｲﾙを開く(&O)/ この集計結果をﾌｧｲﾙに保存(&S)/ "
        u"印刷(&P)/l-/l追加・変更(&C)/l書き出す(&O)/l参照質問(&R)/ -/ "
        u"閉じる(&C)/"
        u" コピー(&C)/ 全てを選択(&A)/ 集計結果をﾃｷｽﾄﾌｧｲﾙで保存(&T)/ 集計結果をHTMLﾌｧｲﾙで保存(&H)/ "
        u".Excelにデータを送る(&E)/t-/"
        u"t.人数だけ表示/t*人数と％を表示/t.％だけ表示/ -/t*グラフ描画に％を使用(&P)/t.グラフの数値の順を逆にする(&I)/"
        u"t.グラフのラベルに％を使用(&L)/t.円グラフ用に、データを一列だけ送る(&C)/ "
        u"グラフを描き直す(&R)/t-/t.多い順に並び変える(&S)/t-/"
        u"t*個別限定の間に空白を入れる(&P)/ "
        u"-/tこの選択肢の記述集計(&E)/l記述文を集計(&T)/l記述文を検索(&D)/l記述数量を検索(&M)/"
        u" ﾌｫﾝﾄを変更する(&F)"_s;
    Trigger("mnuSort");  // nothing has been totalled yet
    EXPECT_EQ(Grid()->model()->rowCount(), 1);
    Trigger("mnuSort");
    TotalOption list;
    list.TotalKind = kEssayList;
    list.CrossMode = kEssayNoCondition;
    for (const bool isList : {false, true, false}) {
        Total(isList ? list : cross);
        EXPECT_EQ(form->windowTitle(), u"集計結果"_s);
        QStringList wanted;
        for (const QString& item : all.split(u'/'))
            if (item.front() == u' ' || item.front() == (isList ? u'l' : u't')) wanted += item.mid(1);
        EXPECT_EQ(Items(), wanted);
        EXPECT_EQ(Find<QPushButton>("cmdNext")->isVisible(), isList);
        EXPECT_EQ(Find<QPushButton>("cmdCancel")->isVisible(), !isList);
        EXPECT_EQ(Find<QLabel>("lblInfo")->text(), u"100%"_s);
    }
    EXPECT_EQ(Find<QLabel>("lblInfo2")->text(), u"質問:Q0/Q0まで  限定条件:3/3"_s);
    EXPECT_EQ(UnnamedControls(form), QStringList());
    EXPECT_TRUE(ui.TakeTranscript().isEmpty());

    Trigger("mnuSendToExcel");
    EXPECT_TRUE(Find<QAction>("mnuSendToExcel")->isChecked());
    Trigger("mnuGraphOrder_0");
    EXPECT_FALSE(Find<QAction>("mnuGraphOrder_0")->isChecked());
    EXPECT_EQ(desk.TakeAsked(), QStringList{u"chart"_s});
    EXPECT_EQ(ui.TakeTranscript(), QStringList());
    QTest::mouseClick(Grid()->viewport(), Qt::RightButton, {}, QPoint(20, 20));
    EXPECT_TRUE(Find<QMenu>("mnuEdit")->isVisible());
    Find<QMenu>("mnuEdit")->close();
}

TEST_F(FrmGridBaseTest, EveryViewShowsTheSameFigures) {
    // The second choice row: 2 of 5 men, 0 of 4 women, the one of unknown sex likes みかん; sorted, each column has its
    // own second.
    const struct {
        const char* percent;
        bool sort;
        bool space;
        QString row;
    } cases[] = {
        {"mnuPercent_0", false, false, u"みかん|2|0|1"_s},
        {"mnuPercent_0", false, true, u"みかん|2||0||1||"_s},
        {"mnuPercent_0", true, false, u"みかん|2|無回答|1|りんご|0"_s},
        {"mnuPercent_0", true, true, u"みかん|2||無回答|1||りんご|0||"_s},
        {"mnuPercent_1", false, false, u"みかん|2|40.0%|0|0.0%|1|100.0%"_s},
        {"mnuPercent_1", false, true, u"みかん|2|40.0%||0|0.0%||1|100.0%||"_s},
        {"mnuPercent_1", true, false, u"みかん|2|40.0%|無回答|1|25.0%|りんご|0|0.0%"_s},
        {"mnuPercent_1", true, true, u"みかん|2|40.0%||無回答|1|25.0%||りんご|0|0.0%||"_s},
        {"mnuPercent_2", false, false, u"みかん|40.0%|0.0%|100.0%"_s},
        {"mnuPercent_2", false, true, u"みかん|40.0%||0.0%||100.0%||"_s},
        {"mnuPercent_2", true, false, u"みかん|40.0%|無回答|25.0%|りんご|0.0%"_s},
        {"mnuPercent_2", true, true, u"みかん|40.0%||無回答|25.0%||りんご|0.0%||"_s},
    };
    Total(cross);
    // What is not counted again keeps its figures.
    session.survey.Samples.Erase(0);
    for (const auto& view : cases) {
        SCOPED_TRACE(view.row.toStdString());
        Trigger(view.percent);
        for (const auto& [name, on] : {std::pair{"mnuSort", view.sort}, {"mnuSpace", view.space}})
            if (Find<QAction>(name)->isChecked() != on) Trigger(name);
        EXPECT_EQ(Row(5), view.row);
        EXPECT_EQ(Row(1).section(u'|', 0, 0), u" どちらが好きですか"_s);
        EXPECT_EQ(Row(3).section(u'|', 0, 1), u"[個別の限定]|男"_s);
        EXPECT_EQ(Find<QLineEdit>("txtGrid")->text(), u" どちらが好きですか"_s);
    }
    Key(Qt::Key_F5);
    EXPECT_EQ(Row(7), u"[人数]|100.0%||[人数]|100.0%||[人数]|100.0%||"_s);
    Trigger("mnuPercent_0");
    EXPECT_EQ(Row(7), u"[人数]|4||[人数]|4||[人数]|1||"_s) << "F5 counts again";
    Key(Qt::Key_Right);
    Key(Qt::Key_Down);
    EXPECT_EQ(Find<QLineEdit>("txtGrid")->text(), u"条件なし"_s);
    QTest::keyClicks(Find<QLineEdit>("txtGrid"), u"x"_s);
    EXPECT_EQ(Find<QLineEdit>("txtGrid")->text(), u"条件なし"_s);

    // A result that no longer goes with the data, as a stored one may not.
    ui.TakeTranscript();
    session.survey.Questions[0].ChoiceCount = 100;
    Trigger("mnuPercent_1");
    const QString damaged =
        u"message 0 クイブラ: "
        u"結果表示の際にエラーが起きました。集計結果ファイルが現在のデータと対応していない可能性があります。"
        u"正しい集計結果ファイルを読み込むか、集計をやり直してください。 -> Ok"_s;
    EXPECT_EQ(ui.TakeTranscript(), QStringList({damaged, damaged, damaged}));
    session.survey.Questions[0].ChoiceCount = 3;
    Trigger("mnuPercent_0");
    EXPECT_EQ(Row(7), u"[人数]|4||[人数]|4||[人数]|1||"_s);
}

TEST_F(FrmGridBaseTest, StoppedTotalsShowWhatWasCounted) {
    FrmGridBase& other = windows.New();
    other.show();
    int stopAt = 1;
    int turns = 0;
    ui.atTurn = [&] {
        EXPECT_FALSE(other.isEnabled() || Find<QLineEdit>("txtGrid")->isVisible());
        if (++turns != stopAt) return;
        Key(Qt::Key_F5);
        Key(Qt::Key_C, Qt::ControlModifier);
        form->close();
        for (int i = 0; i < 3; ++i)
            QTest::mouseClick(Find<QPushButton>("cmdCancel"), Qt::LeftButton);
    };
    const QString question = u"message 257 クイブラ: 中止しますか？ -> "_s;
    const QStringList refused = {u"beep"_s, question + u"Cancel"_s, question + u"Ok"_s};
    const auto expectIdle = [&] {
        EXPECT_TRUE(form->isVisible() && other.isEnabled() && Find<QLineEdit>("txtGrid")->isVisible());
        EXPECT_FALSE(Find<QPushButton>("cmdCancel")->isEnabled());
        EXPECT_EQ(ui.TakeTranscript(), refused);
        ui.messageAnswers = {Answer::Cancel, Answer::Ok};
    };
    ui.messageAnswers = {Answer::Cancel, Answer::Ok};
    Total(cross);
    expectIdle();
    EXPECT_EQ(Row(7), u"||||||||||"_s) << "no block was finished";
    Trigger("mnuPercent_0");
    EXPECT_EQ(Row(7), u"[人数]|5||0||0||"_s) << "the first thousand, and nothing with a view";

    // Long enough for a second turn on any machine.
    session.survey.Samples.Allocate(2'000'000);
    const qint16 choice[] = {2, 0};
    const QString none;
    SetAnswersEssay(session.survey, 3, 0, 1, choice, &none);
    TotalOption list;
    list.TotalKind = kEssayList;
    list.CrossMode = kEssayAny;
    list.CrossQno = 3;
    turns = 0;
    stopAt = 2;
    Total(list);
    expectIdle();
    EXPECT_EQ(Row(4), u"0|みかん||||||"_s);
    EXPECT_EQ(Row(5), u"のべ1人|平均 |0|||||"_s);
    EXPECT_NE(Find<QLabel>("lblInfo")->text(), u"100%"_s);
    ui.atTurn = nullptr;
    ui.messageAnswers.clear();
    session.survey.Samples.Allocate(10);
    Total(cross);
    EXPECT_EQ(Row(7), u"[人数]|0||0||10||"_s);
    EXPECT_EQ(ui.TakeTranscript(), QStringList());
}

TEST_F(FrmGridBaseTest, LongEssayListsGoOnInParts) {
    constexpr int kPeople = 10'100;
    SurveyBuilder builder;
    const int visits = builder.Question(u"回数"_s, u"何回"_s, 2, {u"回数"_s, u"他"_s});
    builder.Status(visits, 1, {kEssay, kNumber});
    builder.Status(visits, 2, {kEssay, kOther});
    builder.Question(u"性別"_s, u"性別は"_s, 2, {u"男"_s, u"女"_s});
    for (int i = 0; i < kPeople; ++i) {
        std::vector<GivenAnswer> answers = {GivenAnswer(1, QString::number(i % 2))};
        if (i == kPeople - 2) answers.push_back(GivenAnswer(2, u"たまに"_s));
        builder.Sample({answers, {1, 2}});
    }
    session.survey = std::move(builder.Get());
    TotalOption option;
    option.TotalKind = kEssayList;
    option.CrossQno = 3;
    option.CrossMode = kEssayAny;
    const QStringList full = {
        u"message 64 クイブラ: 人数が多くて9993番までしか表示出来ませんでした。"
        u"続きを見るときは『集計の続き』ボタンを押してください。 -> Ok"_s};
    Total(option);
    EXPECT_EQ(ui.TakeTranscript(), full);
    EXPECT_EQ(Grid()->model()->rowCount(), 4 + 9994 + 1);
    EXPECT_EQ(Row(1), u"回数 何回［2つまで］|||||||"_s);
    EXPECT_EQ(Row(2), u"[全体の限定]|条件なし||参照回答||||"_s);
    EXPECT_EQ(Row(9998), u"のべ9994人|平均 |0.5|||||"_s);
    EXPECT_TRUE(Find<QLabel>("lblFromDno")->isVisible());
    Grid()->Select({0, 4, 0, 4});
    EXPECT_TRUE(ui.transcript.isEmpty()) << "there is nothing yet that shows one sample";
    // "Look only" leaves the list, and turns off what changes samples or gives them away.
    for (const bool locked : {false, true}) {
        session.survey.LockLevel = 1;
        locked ? session.Lock() : session.Unlock();
        for (const char* item : {"mnuSearch", "mnuOutput"})
            EXPECT_EQ(Find<QAction>(item)->isEnabled(), !locked) << item;
        EXPECT_TRUE(Find<QAction>("mnuRefQno")->isEnabled());
    }
    ui.atTurn = [&] { EXPECT_FALSE(Find<QPushButton>("cmdNext")->isEnabled()) << "its key would begin another"; };
    ui.questionsAnswers = {QList<bool>{false, true}};
    Trigger("mnuRefQno");
    EXPECT_EQ(ui.TakeTranscript(), QStringList{u"questions 参照する質問を選択してください of 2 -> 01"_s} + full);
    EXPECT_EQ(Row(3), u"ＩＤ|選択肢|記述文| 性別は［2つまで］|||||"_s);
    ui.inputAnswers = {u"9994"_s};
    QTest::mouseClick(Find<QPushButton>("cmdNext"), Qt::LeftButton);
    EXPECT_EQ(Row(108), u"10099|回数|0|男, 女|||||"_s);
    EXPECT_EQ(Row(109), u"10099|他|たまに||||||"_s) << "references stand with a sample's first answer";
    Key(Qt::Key_F5);
    EXPECT_EQ(Row(111), u"のべ107人|平均 |0.495327102803738||||||"_s) << "the same part again";

    ui.TakeTranscript();
    Total(option);
    EXPECT_EQ(ui.TakeTranscript(), full);
    // What is no Dno of the survey does nothing.
    const QString asked = u"input 集計の続き | ﾛｰｶﾙ番号 | ～10099 | ﾛｰｶﾙ番号何番から集計を続けますか？ | 9994 -> "_s;
    for (const QString& typed : {QString(), u"-1"_s, u"10100"_s, u"はじめ"_s, u"10098"_s}) {
        EXPECT_EQ(Find<QLabel>("lblFromDno")->text(), u"9994"_s);
        ui.inputAnswers = {typed.isNull() ? std::nullopt : std::optional(typed)};
        QTest::mouseClick(Find<QPushButton>("cmdNext"), Qt::LeftButton);
        EXPECT_EQ(ui.TakeTranscript(), QStringList{asked + (typed.isNull() ? u"cancel"_s : typed)});
    }
    EXPECT_EQ(Row(7), u"のべ3人|平均 |0.333333333333333||||||"_s);
    EXPECT_FALSE(Find<QPushButton>("cmdNext")->isEnabled() || Find<QLabel>("lblFromDno")->isVisible());
}

TEST_F(FrmGridBaseTest, ResultsLeaveByClipboardTextAndHtml) {
    Total(cross);
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(Copied().startsWith(u" どちらが好きですか\t\t\t\t\t\t\t\t\t\t\r\n[全体の限定]\t条件なし\t"_s))
        << Copied().toStdString();
    const struct {
        CellRange range;
        QString text;
    } copies[] = {{{0, 4, 0, 4}, u"りんご\r\n"_s},
                  {{0, 4, 2, 5}, u"りんご\t3\t60.0%\r\nみかん\t2\t40.0%\r\n"_s},
                  {{1, 3, 1, 4}, u"男\r\n"_s}};  // a last row of one character is lost
    for (const auto& copy : copies) {
        Grid()->Select(copy.range);
        Key(Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(Copied(), copy.text);
    }

    const QString path = folder.filePath(u"a"_s);
    session.survey.FileName = folder.filePath(u"調査.qb"_s);
    ui.TakeTranscript();
    ui.fileAnswers = {QString(), path, path, folder.filePath(u"none/a"_s)};
    Trigger("mnuTextSave");
    EXPECT_FALSE(QFile::exists(path));
    Trigger("mnuTextSave");
    QString saved =
        uR"(集計結果
 どちらが好きですか||||||
[全体の限定]|条件なし|||||
[個別の限定]|男||女||無回答|
りんご|3|60.0%|3|75.0%|0|0.0%
みかん|2|40.0%|0|0.0%|1|100.0%
無回答|0|0.0%|1|25.0%|0|0.0%
[人数]|5|100.0%|4|100.0%|1|100.0%
||||||

)"_s;
    EXPECT_EQ(FileBytes(path), EncodeCodePage(saved.replace(u'|', u'\t').replace(u'\n', u"\r\n"_s)));
    EXPECT_TRUE(Find<QAction>("mnuSpace")->isChecked());
    EXPECT_EQ(Grid()->model()->columnCount(), 11);
    Trigger("mnuPercent_2");
    Trigger("mnuHTMLSave");
    EXPECT_EQ(FileBytes(path), WriteHtml(session.survey, form->Sheet().result, form->Sheet().view, form->Sheet().grid));
    EXPECT_EQ(FileBytes(path).count("100.0%"), 4) << "as the view is";
    Trigger("mnuTextSave");
    const QStringList said = ui.Lines(u"message"_s);
    EXPECT_TRUE(said.size() == 1 && said[0].startsWith(u"message 0 クイブラ: "_s)) << said.join(u'\n').toStdString();
    EXPECT_EQ(ui.Lines(u"beep"_s).size(), 3);
    EXPECT_EQ(ui.Lines(u"file"_s)[1],
              u"file save %1/調査-集計.txt | 全てのファイル(*.*)|*.*| -> "_s.arg(folder.path()) + path);
    EXPECT_EQ(ui.Lines(u"file"_s)[2],
              u"file save %1/調査-集計.htm | HTMLファイル(*.htm)|*.htm|HTMLファイル(*.html)|*.html| -> "_s.arg(
                  folder.path()) +
                  path);
    // A screen reader says where a figure stands.
    EXPECT_EQ(Grid()->model()->index(4, 1).data(Qt::AccessibleTextRole).toString(), u"りんご、男、60.0%"_s);
    EXPECT_EQ(Find<QLabel>("lblInfo2")->toolTip(), path + u" に保存しました。"_s);
}

TEST_F(FrmGridBaseTest, WindowsHandTheirOptionsOverAndKeepTheirLooks) {
    struct Host : SheetHost {
        void SheetActivated(FrmGridBase& sheet) override { active = &sheet; }
        void SheetClosed(FrmGridBase& sheet) override { closed = &sheet; }
        FrmGridBase* active = nullptr;
        FrmGridBase* closed = nullptr;
    } host;
    windows.AddHost(host);
    Total(cross);
    FrmGridBase* first = form;
    form = &windows.New();
    EXPECT_GT((form->pos() - first->pos()).y(), 5) << "the title of the first stays in sight";
    TotalOption simple;
    simple.FromQno = simple.ToQno = 1;
    form->SetActivationCounts(false);
    Total(simple);
    EXPECT_EQ(host.active, first) << "a window that is being set up is not listened to";
    form->SetActivationCounts(true);
    first->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return host.active == first && windows.option.FromQno == 0; }));
    form->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return host.active == form && windows.option.FromQno == 1; }));

    QTimer::singleShot(0, form, [] {
        auto* dialog = qobject_cast<QFontDialog*>(QApplication::activeModalWidget());
        ASSERT_TRUE(dialog);
        dialog->setCurrentFont(QFont(u"IPAexGothic"_s, 20));
        dialog->accept();
    });
    Trigger("mnuFontChange");
    EXPECT_EQ(settings.FontSet[kFontGridBase].FontSize, 20);
    EXPECT_EQ(form->Sheet().FontScale, first->Sheet().FontScale) << "widths grow with the next window";
    settings.WinPos[kPosGridBase] = {};
    windows.New().close();
    EXPECT_EQ(settings.WinPos[kPosGridBase].Width, 0) << "never shown, it had no place";
    FrmGridBase* second = form;
    EXPECT_TRUE(form->close());
    EXPECT_EQ(host.closed, second);
    EXPECT_GT(settings.WinPos[kPosGridBase].Width, 0);
    settings.FontSet[kFontGridBase].ForeColor = 0xffffff;
    settings.FontSet[kFontGridBase].BackColor = -1;
    form = &windows.New();
    EXPECT_EQ(form->size(), second->size());
    EXPECT_GE(Contrast(Grid()->palette().color(QPalette::Text), Grid()->palette().color(QPalette::Base)),
              kReadableContrast);
    // A first result starts from the grid's own widths, which at this font are no whole numbers at scale 1.
    Total(simple);
    const double scale = form->Sheet().FontScale;
    EXPECT_NEAR(scale, 20 / 9.75, 0.05) << "a font has whole pixels";
    EXPECT_EQ(settings.GridWidth[0], 1400) << "nobody has dragged a column";
    QHeaderView* header = Grid()->horizontalHeader();
    const auto middle = header->height() / 2;
    QTest::mousePress(header->viewport(), Qt::LeftButton, {}, QPoint(header->sectionSize(0) - 1, middle));
    QTest::mouseMove(header->viewport(), QPoint(200, middle));
    QTest::mouseRelease(header->viewport(), Qt::LeftButton, {}, QPoint(200, middle));
    const int dragged = header->sectionSize(0);
    EXPECT_NEAR(dragged, 201, 1);
    for (int again = 0; again < 5; ++again) {
        Key(Qt::Key_F5);
        EXPECT_NEAR(header->sectionSize(0), dragged, 1);
        EXPECT_NEAR(settings.GridWidth[0], dragged * 15 / scale, 2);
    }
    Trigger("mnuSort");
    EXPECT_NEAR(header->sectionSize(0), dragged, 1);
    windows.RemoveHost(host);
}

// Whatever is totalled, the window shows what the tool prints, be it an error.
TEST_F(FrmGridBaseTest, WindowAndToolAgreeOnRandomTotals) {
    QString path = QStringLiteral(QUIBRA_SOURCE_DIR "/data/samples/residents.qb");
    ASSERT_EQ(SurveyLoad(session, path, kExpectSurvey), kLoaded);
    const Survey& survey = session.survey;
    Random random(20261125);
    const auto choice = [&](int q) { return Pick(random, 0, survey.Questions[q].ChoiceCount - 1); };
    int shownTables = 0;
    for (int run = 0; run < 220; ++run) {
        TotalOption option;
        const int q = Pick(random, 0, survey.QuestionCount - 1);
        option.FromQno = option.ToQno = static_cast<qint16>(q);
        option.Rank = static_cast<qint16>(std::max(0, Pick(random, -3, 3)));
        QStringList words = {u"essays"_s, path, QString::number(q + 1), u"--rank=%1"_s.arg(option.Rank)};
        if (Pick(random, 0, 3) == 0) {
            option.TotalKind = kEssayList;
            option.CrossMode = static_cast<qint16>(Pick(random, kEssayNoCondition, kEssayFilled));
            words += QStringList{u"--none"_s, u"--empty"_s, u"--filled"_s}[option.CrossMode + 1];
            option.CrossQno = static_cast<qint16>(choice(q));
            words += u"--choice=%1"_s.arg(option.CrossQno);
            option.Limits(1, 0) = {3, PackPosition(1, 4)};
            words += u"--where=Q2=4"_s;
        } else {
            option.ToQno = static_cast<qint16>(std::min(q + Pick(random, 0, 3), survey.QuestionCount - 1));
            const int crossing = Pick(random, kCrossQuestion, kCrossFree);
            if (crossing == kCrossQuestion) SetCrossQuestion(option, survey, Pick(random, 0, survey.QuestionCount - 1));
            if (crossing == kCrossPreLimit) SetCrossPreLimit(option, survey);
            if (crossing == kCrossFree) option.LimitCount = static_cast<qint16>(Pick(random, 1, 5));
            for (int L = 0; L <= (crossing == kCrossFree ? option.LimitCount : 0); ++L)
                std::ranges::copy(MakeRandomColumn(random, survey, 3), option.Limits.Column(L).begin());
            const char* const views[] = {"mnuPercent_0", "mnuPercent_1", "mnuPercent_2"};
            const int percent = Pick(random, 0, 2);
            for (const char* item : {views[percent], Pick(random, 0, 1) > 0 ? "mnuSort" : "mnuSpace"})
                Find<QAction>(item)->trigger();  // hidden behind a list, and yet kept for the next table
            words = {u"total"_s, path, u"--option"_s, folder.filePath(u"option.json"_s), u"--show"_s};
            words += QStringList{u"counts"_s, u"both"_s, u"percent"_s}[percent];
            if (Find<QAction>("mnuSort")->isChecked()) words += u"--sort"_s;
            if (!Find<QAction>("mnuSpace")->isChecked()) words += u"--no-space"_s;
            WriteFileBytes(words[3], WriteTotalOptionJson(option));
        }
        QProcess tool;
        tool.start(QStringLiteral(QUIBRA_BIN_DIR "/quibra-cli"), words);
        ui.TakeTranscript();
        Total(option);
        ASSERT_TRUE(tool.waitForFinished());
        if (tool.exitCode() != 0) {
            const QString error = QString::fromUtf8(tool.readAllStandardError()).trimmed();
            ASSERT_EQ(ui.TakeTranscript(), QStringList{u"message 48 クイブラ: %1 -> Ok"_s.arg(error)});
            continue;
        }
        QStringList cells;
        for (int row = 1; row < Grid()->model()->rowCount(); ++row)
            cells += Row(row);
        ASSERT_EQ(cells.join(u'\n') + u'\n', QString::fromUtf8(tool.readAllStandardOutput()).replace(u'\t', u'|'))
            << words.join(u' ').toStdString() << WriteTotalOptionJson(option).toStdString();
        ++shownTables;
    }
    EXPECT_GT(shownTables, 180);
}

}  // namespace quibra
