#include "entry/windows/frm_paragraph.h"

#include <QAbstractListModel>
#include <QCloseEvent>
#include <QFontMetrics>
#include <functional>

#include "core/help_topics.h"
#include "entry/extern_call.h"
#include "session/survey_session.h"
#include "ui/form.h"
#include "ui/theme.h"
#include "ui_frm_paragraph.h"

using namespace Qt::StringLiterals;

namespace quibra {

// The rows of a layout; their texts are made when they come into sight.
class LineRows : public QAbstractListModel {
  public:
    LineRows(const LineLayout& layout, QObject* parent) : QAbstractListModel(parent), layout_(layout) {}

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : layout_.RowCount(); }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role == Qt::DisplayRole) return layout_.Text(index.row()).replace(u'\r', u' ');
        if (role == Qt::ToolTipRole) return layout_.Text(index.row()).replace(u'\r', u'\n').toHtmlEscaped();
        if (role == Qt::SizeHintRole) return QSize(1, QFontMetrics(QGuiApplication::font()).height() * 3 / 2);
        if (role == Qt::BackgroundRole && layout_.CanFlag(index.row()))
            return ColorOf(ThemeColor::HeadingTint, QGuiApplication::palette());
        return {};
    }

    // The rows change while `change` runs.
    void Change(const std::function<void()>& change) {
        beginResetModel();
        change();
        endResetModel();
    }
    void RowChanged(int row) { Q_EMIT dataChanged(index(row), index(row)); }

  private:
    const LineLayout& layout_;
};

FrmParagraph::FrmParagraph(SurveySession& session, ExternCaller& caller, QWidget* parent)
    : QDialog(parent),
      session_(session),
      caller_(caller),
      layout_(session.survey),
      ui_(std::make_unique<Ui::FrmParagraph>()),
      rows_(new LineRows(layout_, this)) {
    ui_->setupUi(this);
    SetUpForm(this, session_.ui, kHelpLines);
    ui_->lstLLocate->setModel(rows_);
    ui_->txtDLL->setText(session_.survey.ExternDLL);

    connect(ui_->lstLLocate->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &FrmParagraph::lstLLocate_Click);
    connect(ui_->cmdInsert, &QPushButton::clicked, this, &FrmParagraph::cmdInsert_Click);
    connect(ui_->cmdRemove, &QPushButton::clicked, this, &FrmParagraph::cmdRemove_Click);
    connect(ui_->chkExeDLL, &QCheckBox::clicked, this, &FrmParagraph::chkExeDLL_Click);
    connect(ui_->txtDLL, &QLineEdit::textEdited, this, &FrmParagraph::txtDLL_Change);
    connect(ui_->cmdTest, &QPushButton::clicked, this, &FrmParagraph::cmdTest_Click);
    connect(ui_->cmdClose, &QPushButton::clicked, this, &FrmParagraph::cmdClose_Click);
    connect(&session_, &SurveySession::StateChanged, this, &FrmParagraph::CloseWhenLocked);

    RefreshRows(0);
    ui_->lstLLocate->setFocus();
    const int em = fontMetrics().horizontalAdvance(u'あ');
    ui_->txtDLL->setMinimumWidth(16 * em);
    resize(sizeHint().expandedTo({56 * em, 34 * em}));
}

FrmParagraph::~FrmParagraph() = default;

void FrmParagraph::lstLLocate_Click() {
    RefreshDeeds();
}

void FrmParagraph::cmdInsert_Click() {
    const int row = Row();
    bool done = false;
    rows_->Change([&] { done = layout_.Insert(row); });
    if (done) session_.ChangedOn();
    RefreshRows(row);
}

void FrmParagraph::cmdRemove_Click() {
    const int row = Row();
    rows_->Change([&] { layout_.Remove(row); });
    session_.ChangedOn();
    RefreshRows(row);
}

void FrmParagraph::chkExeDLL_Click(bool on) {
    layout_.SetFlag(Row(), on);
    session_.ChangedOn();
    rows_->RowChanged(Row());
}

void FrmParagraph::txtDLL_Change(const QString& text) {
    session_.survey.ExternDLL = text;
    session_.ChangedOn();
    programNamed_ = true;
}

void FrmParagraph::cmdTest_Click() {
    if (session_.ui.Message(
            u"このテストはクイブラを強制終了させ、現在扱っているデータを消してしまう可能性があります。よろしいですか？"_s,
            kOkCancel) != Answer::Ok)
        return;
    if (programNamed_) caller_.Trust(session_.survey);
    const QString text = caller_.CallExternal(session_.survey, 0, -1, 0);
    ui_->txtDLL->setText(session_.survey.ExternDLL);
    session_.ui.Message(text.isEmpty() ? u"OKです"_s : text, kOkOnly);
}

void FrmParagraph::cmdClose_Click() {
    if (programNamed_) caller_.Trust(session_.survey);
    session_.ChangedOn();
    accept();
}

void FrmParagraph::reject() {
    cmdClose_Click();
}

// The program closes its windows when the survey has become another one, which this one has not changed.
void FrmParagraph::closeEvent(QCloseEvent* event) {
    if (event->spontaneous())
        cmdClose_Click();
    else
        event->accept();
}

void FrmParagraph::CloseWhenLocked() {
    if (!session_.menu.mnuSetParagraph) close();
}

int FrmParagraph::Row() const {
    return ui_->lstLLocate->currentIndex().row();
}

void FrmParagraph::RefreshRows(int row) {
    ui_->lstLLocate->setCurrentIndex(rows_->index(row));
    RefreshDeeds();
}

void FrmParagraph::RefreshDeeds() {
    const int row = Row();
    ui_->cmdInsert->setEnabled(layout_.CanInsert(row));
    ui_->cmdRemove->setEnabled(layout_.CanRemove(row));
    ui_->chkExeDLL->setEnabled(layout_.CanFlag(row));
    ui_->chkExeDLL->setChecked(layout_.IsFlagged(row));
}

}  // namespace quibra
