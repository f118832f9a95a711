// The result window's tools, charts, pages and paper, driven through its menus.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "core/answer_store.h"
#include "session/survey_file.h"
#include "session/survey_session.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/survey_bytes.h"
#include "support/windows/form_driver.h"
#include "support/windows/scripted_desk.h"
#include "support/windows/when_asked.h"
#include "tabulation/windows/frm_graph.h"
#include "tabulation/windows/frm_grid_base.h"
#include "tabulation/windows/print_pages.h"
#include "tabulation/windows/sheet_host.h"
#include "tree_paths.h"
#include "ui/chart/pdf_text.h"
#include "ui/chart_view.h"
#include "ui/flex_grid.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Question 3 of the sample survey by question 1, and the texts of question 7.
class ResultTools : public testing::Test {
  protected:
    void SetUp() override {
        QString path = QStringLiteral(QUIBRA_SOURCE_DIR "/data/samples/residents.qb");
        ASSERT_EQ(SurveyLoad(session, path, kExpectSurvey), kLoaded);
        session.Unlock();
        form = &windows.New();
    }
    void Table(int from = 2, int to = 2) {
        windows.option = TotalOption();
        windows.option.FromQno = static_cast<qint16>(from);
        windows.option.ToQno = static_cast<qint16>(to);
        SetCrossQuestion(windows.option, session.survey, 0);
        Total();
    }
    void Essays(int q) {
        windows.option = TotalOption();
        windows.option.TotalKind = kEssayList;
        windows.option.FromQno = windows.option.ToQno = static_cast<qint16>(q);
        windows.option.CrossQno = session.survey.Questions[q].ChoiceCount;
        windows.option.CrossMode = kEssayFilled;
        Total();
    }
    void Total() {
        form->DoTotal();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
        user.TakeTranscript();
    }
    template <typename T>
    T* Find(const char* name, QWidget* of = nullptr) {
        return (of ? of : form)->findChild<T*>(QString::fromLatin1(name));
    }
    FlexGrid* Grid() { return Find<FlexGrid>("Grid"); }
    void Trigger(const char* name, QWidget* of = nullptr) {
        quibra::Trigger(of ? of : form, QString::fromLatin1(name));
    }
    QString Cell(int column, int row) { return Grid()->model()->index(row, column).data().toString(); }
    int Columns() { return Grid()->model()->columnCount(); }
    void GoTo(int column, int row) { Grid()->setCurrentIndex(Grid()->model()->index(row, column)); }

    ScriptedInterface user;
    QTemporaryDir folder;
    SurveySession session{user, folder.path()};
    ScriptedDesk desk;
    ResultWindows windows{session, desk};
    FrmGridBase* form = nullptr;  // owned by `windows`
};

}  // namespace

TEST_F(ResultTools, CountTextsAndSearchThemByWordsAndNumbers) {
    Essays(7);
    const int columns = Columns();
    Trigger("mnuEssayTotal");
    EXPECT_EQ(Columns(), columns);
    EXPECT_EQ(Cell(columns - 3, 2), u"順位"_s);
    EXPECT_EQ(Cell(columns - 3, 3), u"1位"_s);
    EXPECT_GT(Cell(columns - 2, 3).toInt(), 1);
    const QString most = Cell(columns - 1, 3);
    EXPECT_TRUE(Find<QLineEdit>("txtGrid")->isVisible());

    WhenAsked([&](QWidget& window) {
        auto* word = Find<QLineEdit>("txtWord", &window);
        auto* list = Find<QListWidget>("lstWord", &window);
        EXPECT_EQ(list->count(), 1) << "an empty word to begin with";
        QTest::keyClicks(word, u"xx"_s);
        QTest::keyClick(word, Qt::Key_Return);
        EXPECT_EQ(list->count(), 2) << "Return adds";
        word->insert(most);
        EXPECT_EQ(list->item(1)->text(), most);
        for (int i = list->count(); i < 16; ++i)
            Find<QPushButton>("cmdAdd", &window)->click();
        EXPECT_FALSE(Find<QPushButton>("cmdAdd", &window)->isEnabled());
        QTest::keyClick(word, Qt::Key_Return);
        EXPECT_EQ(list->count(), 16);
        list->setCurrentRow(0);
        EXPECT_EQ(word->text(), u"xx"_s);
        Find<QPushButton>("cmdDel", &window)->click();
        EXPECT_EQ(list->count(), 15);
        Find<QPushButton>("cmdDo", &window)->click();
    });
    Trigger("mnuSearchLetter");
    EXPECT_EQ(Cell(columns - 3, 1), u"文字の検索"_s);
    EXPECT_EQ(Cell(columns - 2, 3), most);
    WhenAsked([&](QWidget& window) {
        EXPECT_EQ(Find<QListWidget>("lstWord", &window)->count(), 1) << "the words of before, without empty ones";
        Find<QPushButton>("cmdAllDel", &window)->click();
        Find<QPushButton>("cmdDo", &window)->click();
    });
    Trigger("mnuSearchLetter");
    EXPECT_EQ(Cell(columns - 2, 3), most) << "no word, no search";

    user.inputAnswers = {u"10"_s, u"５"_s, std::nullopt};
    Trigger("mnuSearchNumber");
    EXPECT_EQ(Cell(columns - 3, 1), u"数値の検索"_s);
    Trigger("mnuSearchNumber");
    EXPECT_EQ(user.Lines(u"input"_s).size(), 3);
    EXPECT_FALSE(user.IsBusy());
}

TEST_F(ResultTools, ShowThePersonWhoseNumberIsSelected) {
    Essays(7);
    desk.TakeAsked();
    const int last = form->Sheet().grid.Rows() - 1;
    // Headings and the closing line name nobody, and neither does another column.
    for (const auto& [column, row] : {std::pair(0, 3), {0, 4}, {1, 5}, {0, 5}, {0, last}, {0, last - 1}})
        GoTo(column, row);
    const qint32 lastDno = DnoOfID(session.survey, Cell(0, last - 1).toInt());
    EXPECT_EQ(desk.TakeAsked(), (QStringList{u"sample 0 before Q32"_s, u"sample 1 before Q32"_s,
                                             u"sample %1 before Q32"_s.arg(lastDno)}));
    Table();
    GoTo(0, 5);
    EXPECT_EQ(desk.TakeAsked(), QStringList());
}

TEST_F(ResultTools, LeadFromACellToItsEssays) {
    Table(6, 7);
    GoTo(1, 4);
    Trigger("mnuGoEssay");
    EXPECT_EQ(desk.TakeAsked(), QStringList{u"total"_s});
    EXPECT_EQ(windows.option.TotalKind, kEssayList);
    EXPECT_EQ(windows.option.FromQno, 6);
    EXPECT_EQ(windows.option.CrossMode, kEssayAny);
}

TEST_F(ResultTools, ChartTheQuestionOfTheCell) {
    FrmGraph graph(session, windows);
    auto* view = graph.findChild<ChartView*>(u"Graph"_s);
    Table(2, 3);
    GoTo(1, 4);
    EXPECT_TRUE(view->IsEmpty()) << "the window is not shown";
    graph.show();
    EXPECT_FALSE(Find<QAction>("mnuCopy", &graph)->isEnabled());
    Trigger("mnuGraphOrder_4");
    EXPECT_EQ(desk.TakeAsked(), QStringList{u"chart"_s});
    EXPECT_EQ(view->Table().Title, u" あなたの主なお仕事"_s);
    EXPECT_EQ(view->Table().Rows.size(), 4U);
    EXPECT_TRUE(view->accessibleDescription().contains(u"会社員・団体職員"_s));
    const auto charted = [&](int column, int row) {
        GoTo(column, row);
        return view->Table();
    };
    const int next = form->Sheet().result.RowStart[3];
    EXPECT_NE(charted(1, next + 3).Title, u" あなたの主なお仕事"_s);
    EXPECT_NE(charted(1, next).Title, u" あなたの主なお仕事"_s) << "a heading draws nothing";
    EXPECT_EQ(charted(4, 4).Title, u" あなたの主なお仕事"_s);
    Trigger("mnuGraphOrder_3");
    EXPECT_EQ(view->Table().Title, u" あなたの主なお仕事[女性]"_s);
    Trigger("mnuGraphOrder_0");
    EXPECT_FALSE(view->Table().IsPercent);
    for (int kind = 0; kind < 9; ++kind) {
        Trigger(qPrintable(u"mnuGraphType_%1"_s.arg(kind)), &graph);
        EXPECT_EQ(static_cast<int>(view->Style().Kind), kind);
        EXPECT_FALSE(graph.grab().isNull());
    }
    Trigger("mnuStack", &graph);
    EXPECT_TRUE(view->Style().Stacked);
    Trigger("mnuCopy", &graph);
    EXPECT_TRUE(QGuiApplication::clipboard()->mimeData()->hasImage());
    EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasText());
    const QString svg = folder.filePath(u"chart.svg"_s);
    user.fileAnswers = {svg, folder.filePath(u"none/chart.pdf"_s)};
    Trigger("mnuSave", &graph);
    EXPECT_TRUE(FileBytes(svg).contains("公務員"));
    EXPECT_TRUE(user.Lines(u"file save"_s).constFirst().contains(u"/data/samples/residents-グラフ.svg | "_s));
    user.TakeTranscript();
    Trigger("mnuSave", &graph);
    EXPECT_EQ(user.Lines(u"message"_s).size(), 1);
    WhenAsked([](QWidget& preview) { preview.close(); }, "QPrintPreviewDialog");
    Trigger("mnuPrint", &graph);
    Trigger("mnuClose", &graph);
    EXPECT_FALSE(graph.isVisible());
}

TEST_F(ResultTools, CopyAsTextAndAsATable) {
    Table();
    Grid()->Select({0, 4, 2, 4});
    Trigger("mnuCopy");
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(data->text(), u"会社員・団体職員\t397\t43.7%\r\n"_s);
    EXPECT_TRUE(data->html().contains(u"<td align=\"right\">43.7%</td>"_s));
}

TEST_F(ResultTools, KeepAPageAndOpenItAgain) {
    const QString page = folder.filePath(u"職業.qbp"_s);
    Table();
    Trigger("mnuSort");
    Trigger("mnuPercent_2");
    const QString shown = form->Sheet().grid.Dump(0, 1, Columns() - 1, Grid()->model()->rowCount() - 1);
    user.fileAnswers = {page};
    Trigger("mnuPageSave");
    EXPECT_EQ(Find<QLabel>("lblInfo2")->toolTip(), page + u" に保存しました。"_s);
    EXPECT_TRUE(user.Lines(u"file save"_s).constFirst().contains(u"/data/samples/residents-集計.qbp | "_s));
    EXPECT_TRUE(user.Lines(u"message"_s).isEmpty());

    FrmGridBase& other = windows.New();
    other.PageLoad(page);
    EXPECT_EQ(other.Sheet().grid.Dump(0, 1, other.Sheet().grid.Columns() - 1, other.Sheet().grid.Rows() - 1), shown);
    EXPECT_TRUE(other.findChild<QAction*>(u"mnuSort"_s)->isChecked());
    EXPECT_EQ(windows.option.Nname, u"集計結果"_s);

    // Cut off: told, and the window stays as it is. No page at all: the pages' file stays open until a survey is
    // loaded or saved.
    const QString cut = folder.filePath(u"cut.qbp"_s);
    WriteFileBytes(cut, FileBytes(page).first(150));
    user.TakeTranscript();
    other.PageLoad(cut);
    EXPECT_EQ(user.TakeTranscript().filter(u"message"_s),
              QStringList{u"message 48 クイブラ: ファイルにこれ以上データがありません。 -> Ok"_s});
    EXPECT_FALSE(user.IsBusy());
    WriteFileBytes(cut, "text");
    other.PageLoad(cut);
    EXPECT_TRUE(user.Lines(u"message"_s).contains(u"message 0 クイブラ: 命令ミス : .error -> Ok"_s));
    EXPECT_TRUE(user.IsBusy());
    user.TakeTranscript();
    other.PageLoad(page);
    EXPECT_EQ(user.Lines(u"message"_s).size(), 1) << "the file is open already";
    session.Refresh(SurveySession::Change::File);
    EXPECT_FALSE(user.IsBusy());
    user.TakeTranscript();
    other.PageLoad(page);
    EXPECT_TRUE(user.Lines(u"message"_s).isEmpty());

    Essays(7);
    user.fileAnswers = {folder.filePath(u"texts.qbp"_s), page};
    Trigger("mnuPageSave");
    EXPECT_TRUE(user.Lines(u"message"_s).join(QString()).contains(u"限定条件は正しく戻りません"_s));
    Trigger("mnuPageLoad");
    EXPECT_EQ(form->Sheet().result.option.TotalKind, kTable);
}

// Every label and figure on paper, in the order of the table, with head and number on each page.
TEST_F(ResultTools, PrintPagesThatCanBeSearched) {
    Table(0, session.survey.QuestionCount - 1);
    WhenAsked([](QWidget& preview) { preview.close(); }, "QPrintPreviewDialog");
    Trigger("mnuPrint");
    const QString pdf = folder.filePath(u"table.pdf"_s);
    const PrintTable table = MakePrintTable(session.survey, form->Sheet());
    int pages = 0;
    {
        QPdfWriter writer(pdf);
        writer.setPageSize(QPageSize(QPageSize::A4));
        pages = PaintPages(writer, table, QFont(u"IPAexGothic"_s, 9));
    }
    EXPECT_GT(pages, 5);
    RestoreCharacters(pdf);
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s});
    ASSERT_TRUE(reader.waitForFinished());
    const auto plain = [](QString text) { return text.remove(u' ').remove(u'\n'); };
    const QStringList texts = plain(QString::fromUtf8(reader.readAllStandardOutput())).split(u'\f', Qt::SkipEmptyParts);
    ASSERT_EQ(texts.size(), pages);
    QString all;
    for (int i = 0; i < pages; ++i) {
        EXPECT_TRUE(texts[i].startsWith(plain(session.survey.Title))) << i;
        EXPECT_TRUE(texts[i].contains(u"[全体の限定]条件なし"_s)) << i;
        EXPECT_TRUE(texts[i].contains(u"%1/%2"_s.arg(i + 1).arg(pages))) << i;
        all += texts[i];
    }
    for (const PrintBlock& block : table.Blocks)
        for (const PrintRow& row : block.Rows)
            for (const PrintCell& cell : row.Cells)
                EXPECT_TRUE(all.contains(plain(cell.Text))) << qUtf8Printable(cell.Text);
    EXPECT_GE(all.count(u"[個別の限定]"_s), static_cast<qsizetype>(table.Blocks.size()));
}

}  // namespace quibra
