// What a result window does with a result that stands: counting and searching texts, charts, pages, printing.
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QPrinter>
#include <QScopeGuard>

#include "core/attempt.h"
#include "core/binary_file.h"
#include "core/numbers.h"
#include "core/whole_file.h"
#include "session/survey_file.h"
#include "session/survey_session.h"
#include "tabulation/cell_essays.h"
#include "tabulation/clip_html.h"
#include "tabulation/essay_search.h"
#include "tabulation/page_file.h"
#include "tabulation/windows/frm_graph.h"
#include "tabulation/windows/frm_grid_base.h"
#include "tabulation/windows/frm_word.h"
#include "tabulation/windows/print_pages.h"
#include "tabulation/windows/result_grid_model.h"
#include "tabulation/windows/sheet_host.h"
#include "tabulation/word_count.h"
#include "ui/desk.h"
#include "ui/print_preview.h"
#include "ui_frm_grid_base.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr double kPrintFontPoints = 9;
const QString kPageFilter = u"集計ページ(*.qbp)|*.qbp|"_s;

}  // namespace

void FrmGridBase::ConnectTools() {
    QAction* const orders[] = {ui_->mnuGraphOrder_0, ui_->mnuGraphOrder_1, ui_->mnuGraphOrder_2, ui_->mnuGraphOrder_3,
                               ui_->mnuGraphOrder_4};
    for (QAction* order : orders)
        connect(order, &QAction::triggered, this, &FrmGridBase::mnuGraphOrder_Click);
    connect(ui_->mnuGoEssay, &QAction::triggered, this, &FrmGridBase::mnuGoEssay_Click);
    connect(ui_->mnuEssayTotal, &QAction::triggered, this, &FrmGridBase::mnuEssayTotal_Click);
    connect(ui_->mnuSearchLetter, &QAction::triggered, this, &FrmGridBase::mnuSearchLetter_Click);
    connect(ui_->mnuSearchNumber, &QAction::triggered, this, &FrmGridBase::mnuSearchNumber_Click);
    connect(ui_->mnuPageLoad, &QAction::triggered, this, &FrmGridBase::mnuPageLoad_Click);
    connect(ui_->mnuPageSave, &QAction::triggered, this, &FrmGridBase::mnuPageSave_Click);
    connect(ui_->mnuPrint, &QAction::triggered, this, &FrmGridBase::mnuPrint_Click);
}

// Gives the reason when the file could not be written.
QString FrmGridBase::WriteResult(const QString& path, const std::function<QByteArray()>& bytes) {
    session_.ui.Busy(true);
    const auto idle = qScopeGuard([this] { session_.ui.Busy(false); });
    try {
        WriteWholeFile(path, bytes());
    } catch (const RuntimeError& error) {
        return error.Text();
    }
    return QString();
}

void FrmGridBase::CopySelection() {
    const CellRange range = ui_->Grid->Selection();
    auto copied = std::make_unique<QMimeData>();
    copied->setText(ClipText(sheet_.grid.Dump(range.column1, range.row1, range.column2, range.row2)));
    copied->setHtml(ClipHtml(sheet_, range.column1, range.row1, range.column2, range.row2));
    QGuiApplication::clipboard()->setMimeData(copied.release());
}

// Runs a tool on the cells, which may change under the view meanwhile, and shows what has become of them.
void FrmGridBase::RunTool(const std::function<void()>& tool) {
    session_.ui.Busy(true);
    ui_->txtGrid->hide();
    ui_->Grid->setUpdatesEnabled(false);
    Attempt(session_.ui, tool);
    model_->Sync();
    ui_->Grid->RefreshSizes(true);
    ui_->Grid->setUpdatesEnabled(true);
    ui_->txtGrid->show();
    session_.ui.Busy(false);
}

void FrmGridBase::mnuEssayTotal_Click() {
    RunTool([this] { ShowWordCount(sheet_.grid, sheet_.FontScale); });
}

void FrmGridBase::mnuSearchLetter_Click() {
    FrmWord window(session_.ui, searchWords_, this);
    if (window.exec() != QDialog::Accepted) return;
    const QStringList words = window.Words();
    if (words.isEmpty()) return;
    searchWords_ = words;
    RunTool([this] { SearchWords(sheet_.grid, searchWords_, sheet_.FontScale); });
}

void FrmGridBase::mnuSearchNumber_Click() {
    const auto ask = [this](const QString& prompt, double& number) {
        QString text;
        if (!session_.ui.InputBox(u"数量の検索"_s, QString(), QString(), prompt, text)) return false;
        return Attempt(session_.ui, [&] { number = LeadingNumber(text); });
    };
    double low = 0, high = 0;
    if (!ask(u"最小値は"_s, low) || !ask(u"最大値は"_s, high)) return;
    RunTool([&] { SearchNumbers(sheet_.grid, low, high, sheet_.FontScale); });
}

void FrmGridBase::mnuGoEssay_Click() {
    if (!sheet_.result.chkTotaled) {
        session_.ui.Beep();
        return;
    }
    const QModelIndex cell = ui_->Grid->currentIndex();
    const bool set = Attempt(session_.ui, [&] {
        SetEssaysOfCell(session_.survey, sheet_.result, cell.row(), sheet_.LimitAt(cell.column()), windows_.option);
    });
    if (set) desk_.TotalAnew();
}

void FrmGridBase::mnuGraphOrder_Click() {
    lastChart_ = {};
    desk_.ShowChart();
    SendChart();
}

void FrmGridBase::ResendGraphData() {
    lastChart_ = {};
    SendChart();
}

void FrmGridBase::SendChart() {
    FrmGraph* graph = windows_.Graph();
    if (!graph || !graph->isVisible() || !sheet_.result.chkTotaled || sheet_.result.option.TotalKind != kTable) return;
    const ChartOrder order{ui_->mnuGraphOrder_0->isChecked(), ui_->mnuGraphOrder_1->isChecked(),
                           ui_->mnuGraphOrder_2->isChecked(), ui_->mnuGraphOrder_3->isChecked()};
    const QModelIndex cell = ui_->Grid->currentIndex();
    if (!cell.isValid()) return;
    Attempt(session_.ui, [&] {
        const auto table = quibra::SendChart(session_.survey, sheet_.result, order, cell.row(),
                                             sheet_.LimitAt(cell.column()), lastChart_);
        if (table) graph->ShowTable(*this, *table);
    });
}

void FrmGridBase::mnuPageSave_Click() {
    const QString path = session_.ui.FileBox(windows_.ProposedPath(u"-集計.qbp"_s), kPageFilter, true);
    if (path.isEmpty()) return;
    const QString fault = WriteResult(
        path, [this] { return WritePage(session_.survey, sheet_, session_.survey.FileName, windowTitle()); });
    TellWritten(path, fault);
    if (fault.isEmpty() && sheet_.result.option.TotalKind == kEssayList)
        session_.ui.Message(EssayPageWarning(), kInformation);
}

void FrmGridBase::mnuPageLoad_Click() {
    const QString path = session_.ui.FileBox(QFileInfo(session_.survey.FileName).path() + u'/', kPageFilter, false);
    if (!path.isEmpty()) PageLoad(path);
}

void FrmGridBase::PageLoad(const QString& path) {
    session_.ui.Busy(true);
    auto idle = qScopeGuard([this] { session_.ui.Busy(false); });
    Attempt(session_.ui, [&] {
        windows_.TakePageFile();
        TotalOption option = windows_.option;
        TotalView view;
        {
            BinaryFile file = BinaryFile::OpenToRead(path);
            ByteReader in(file);
            QString pagePath = path;
            if (ReadFileHead(session_, in, pagePath, 0) != kPageFile) {
                // The file stays open and the pointer busy until a survey is loaded or saved, as the program has
                // always left them.
                windows_.LeavePageFileOpen();
                idle.dismiss();
                session_.ui.Message(u"命令ミス : .error"_s, kOkOnly);
                return;
            }
            ReadPage(in, session_.survey, option, view);
        }
        windows_.option = option;
        ShowView(view);
        sheet_.result.chkSorted = view.sort;
        sheet_.result.FromDno = 0;
        DoTotal();
    });
}

void FrmGridBase::ShowView(const TotalView& view) {
    ui_->mnuPercent_0->setChecked(view.percent == TotalView::CountsOnly);
    ui_->mnuPercent_1->setChecked(view.percent == TotalView::CountsAndPercent);
    ui_->mnuPercent_2->setChecked(view.percent == TotalView::PercentOnly);
    ui_->mnuSort->setChecked(view.sort);
    ui_->mnuSpace->setChecked(view.space);
    sheet_.view = view;
}

void FrmGridBase::mnuPrint_Click() {
    Attempt(session_.ui, [&] {
        const PrintTable table = MakePrintTable(session_.survey, sheet_);
        QFont font = ui_->Grid->font();
        font.setPointSizeF(kPrintFontPoints);
        PreviewPrint(session_.ui, this, windowTitle(), QPageLayout::Portrait,
                     [&](QPrinter& printer) { PaintPages(printer, table, font); });
    });
}

}  // namespace quibra
