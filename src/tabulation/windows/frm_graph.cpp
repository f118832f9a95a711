#include "tabulation/windows/frm_graph.h"

#include <QActionGroup>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QPrinter>
#include <array>

#include "core/attempt.h"
#include "core/help_topics.h"
#include "session/survey_session.h"
#include "tabulation/windows/frm_grid_base.h"
#include "ui/chart/chart_files.h"
#include "ui/form.h"
#include "ui/print_preview.h"
#include "ui/window_place.h"
#include "ui_frm_graph.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr double kClipboardScale = 2;
constexpr double kPrintFontPoints = 11;

}  // namespace

FrmGraph::FrmGraph(SurveySession& session, ResultWindows& windows, QWidget* parent)
    : QMainWindow(parent), ui_(std::make_unique<Ui::frmGraph>()), session_(session), windows_(windows) {
    ui_->setupUi(this);
    ui_->Graph->SetHint(u"集計結果の表で選択肢の行を選ぶと、その質問のグラフを描きます。"_s);
    SetUpForm(this, session.ui, kHelpGraph);

    const std::array types = {ui_->mnuGraphType_0, ui_->mnuGraphType_1, ui_->mnuGraphType_2,
                              ui_->mnuGraphType_3, ui_->mnuGraphType_4, ui_->mnuGraphType_5,
                              ui_->mnuGraphType_6, ui_->mnuGraphType_7, ui_->mnuGraphType_8};
    auto* group = new QActionGroup(this);
    for (size_t i = 0; i < types.size(); ++i) {
        group->addAction(types[i]);
        connect(types[i], &QAction::triggered, this, [this, i] { mnuGraphType_Click(static_cast<int>(i)); });
    }
    connect(ui_->mnuCopy, &QAction::triggered, this, &FrmGraph::mnuCopy_Click);
    connect(ui_->mnuSave, &QAction::triggered, this, &FrmGraph::mnuSave_Click);
    connect(ui_->mnuPrint, &QAction::triggered, this, &FrmGraph::mnuPrint_Click);
    connect(ui_->mnuStack, &QAction::triggered, this, &FrmGraph::mnuStack_Click);
    connect(ui_->mnuClose, &QAction::triggered, this, &FrmGraph::close);

    adjustSize();
    WinPosRestore(session.settings, kPosGraph, this);
    Refresh();
    windows_.AddHost(*this);
    windows_.SetGraph(this);
}

FrmGraph::~FrmGraph() {
    windows_.SetGraph(nullptr);
    windows_.RemoveHost(*this);
}

void FrmGraph::ShowTable(FrmGridBase& sheet, const ChartTable& table) {
    sheet_ = &sheet;
    ui_->Graph->SetTable(table);
    Refresh();
}

void FrmGraph::closeEvent(QCloseEvent* event) {
    if (isVisible()) WinPosSave(session_.settings, kPosGraph, this);
    event->accept();
}

void FrmGraph::mnuCopy_Click() {
    auto copied = std::make_unique<QMimeData>();
    copied->setImageData(
        ChartImage({ui_->Graph->Table(), ui_->Graph->Style(), font(), ui_->Graph->size()}, kClipboardScale));
    QGuiApplication::clipboard()->setMimeData(copied.release());
}

void FrmGraph::mnuSave_Click() {
    const QString path =
        session_.ui.FileBox(windows_.ProposedPath(u"-グラフ.svg"_s),
                            u"SVG 画像(*.svg)|*.svg|PNG 画像(*.png)|*.png|PDF 文書(*.pdf)|*.pdf|"_s, true);
    if (path.isEmpty()) return;
    Attempt(session_.ui, [&] {
        WriteChartFile(path, {ui_->Graph->Table(), ui_->Graph->Style(), font(), ui_->Graph->size()});
    });
}

void FrmGraph::mnuPrint_Click() {
    PreviewPrint(session_.ui, this, ui_->Graph->Table().Title, QPageLayout::Landscape, [this](QPrinter& printer) {
        QPainter painter(&printer);
        QFont letters = font();
        letters.setPointSizeF(kPrintFontPoints);
        const QSize page = printer.pageLayout().paintRectPixels(printer.resolution()).size();
        PaintChart(painter, QRectF(QPointF(0, 0), page), ui_->Graph->Table(), ui_->Graph->Style(),
                   ChartLook::Paper(letters));
    });
}

void FrmGraph::mnuGraphType_Click(int index) {
    ChartStyle style = ui_->Graph->Style();
    style.Kind = static_cast<ChartKind>(index);
    ui_->Graph->SetStyle(style);
    Resend();
}

void FrmGraph::mnuStack_Click() {
    ChartStyle style = ui_->Graph->Style();
    style.Stacked = ui_->mnuStack->isChecked();
    ui_->Graph->SetStyle(style);
    Resend();
}

void FrmGraph::SheetActivated(FrmGridBase& sheet) {
    sheet_ = &sheet;
}

// Its last chart stays, as a picture does.
void FrmGraph::SheetClosed(FrmGridBase& sheet) {
    if (sheet_ == &sheet) sheet_ = nullptr;
}

void FrmGraph::Resend() {
    if (sheet_) sheet_->ResendGraphData();
}

void FrmGraph::Refresh() {
    for (QAction* needsChart : {ui_->mnuCopy, ui_->mnuSave, ui_->mnuPrint})
        needsChart->setEnabled(!ui_->Graph->IsEmpty());
}

}  // namespace quibra
