#include "design/windows/frm_table.h"

#include <QClipboard>
#include <QCloseEvent>

#include "core/attempt.h"
#include "core/help_topics.h"
#include "core/labels.h"
#include "design/question_listing.h"
#include "ui/form.h"
#include "ui/window_place.h"
#include "ui_frm_table.h"

namespace quibra {

FrmTable::FrmTable(SurveySession& session, QWidget* parent)
    : QMainWindow(parent), session_(session), controls_(std::make_unique<Ui::FrmTable>()) {
    controls_->setupUi(this);
    SetUpForm(this, session_.ui, kHelpTable);
    RefreshQuestions();
    connect(controls_->lstQno, &QListWidget::currentRowChanged, this, &FrmTable::lstQno_Click);
    connect(controls_->mnuOutput, &QAction::triggered, this, [this] { OutputListing(session_); });
    connect(controls_->mnuOutputQuestion, &QAction::triggered, this, [this] { OutputQuestionText(session_); });
    connect(controls_->mnuClose, &QAction::triggered, this, &QWidget::close);
    connect(controls_->cmdClose, &QPushButton::clicked, this, &QWidget::close);
    connect(controls_->mnuListQuesCopy, &QAction::triggered, this, &FrmTable::mnuListQuesCopy_Click);
    connect(controls_->mnuHelpContent, &QAction::triggered, this, [this] { session_.ui.HelpContext(kHelpContents); });
    connect(controls_->mnuHelpContext, &QAction::triggered, this, [this] { session_.ui.HelpContext(kHelpTable); });
    // The pages' window has the search in it.
    connect(controls_->mnuHelpKeyword, &QAction::triggered, this, [this] { session_.ui.HelpContext(kHelpContents); });
    connect(&session_, &SurveySession::StateChanged, this, &FrmTable::RefreshQuestions);

    controls_->lstQno->setFocus();
    const int em = fontMetrics().horizontalAdvance(u'あ');
    resize(QSize(60 * em, 34 * em));
    controls_->splitter->setSizes({26 * em, 34 * em});
    WinPosRestore(session_.settings, kPosTable, this);
}

FrmTable::~FrmTable() = default;

void FrmTable::lstQno_Click(int row) {
    const bool any = row >= 0 && row < session_.survey.QuestionCount;
    controls_->txtChoice->setPlainText(any ? QuestionListing(session_.survey, row) : QString());
}

void FrmTable::mnuListQuesCopy_Click() {
    QApplication::clipboard()->setText(controls_->txtChoice->toPlainText());
}

void FrmTable::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QMainWindow::keyPressEvent(event);
}

void FrmTable::closeEvent(QCloseEvent* event) {
    WinPosSave(session_.settings, kPosTable, this);
    QMainWindow::closeEvent(event);
}

// The same question stays in view when the survey has only changed otherwise.
void FrmTable::RefreshQuestions() {
    const int row = std::clamp(controls_->lstQno->currentRow(), 0, session_.survey.QuestionCount - 1);
    QStringList questions;
    if (!Attempt(session_.ui, [&] { questions = RefreshQuestionList(session_.survey, 0); })) return;
    const QSignalBlocker quiet(controls_->lstQno);
    controls_->lstQno->clear();
    controls_->lstQno->addItems(questions);
    controls_->lstQno->setCurrentRow(row);
    lstQno_Click(row);
}

}  // namespace quibra
