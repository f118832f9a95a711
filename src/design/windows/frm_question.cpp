#include "design/windows/frm_question.h"

#include <QClipboard>
#include <QListWidget>
#include <QShortcut>
#include <QSignalBlocker>

#include "conditions/windows/edit_limit.h"
#include "core/attempt.h"
#include "core/help_topics.h"
#include "design/windows/frm_auto_q.h"
#include "design/windows/frm_q_anum.h"
#include "entry/windows/frm_collect.h"
#include "ui/form.h"
#include "ui/theme.h"
#include "ui_frm_question.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

void ShowRows(QListWidget* list, const QStringList& rows, int current) {
    const QSignalBlocker quiet(list);
    while (list->count() > rows.size())
        delete list->takeItem(list->count() - 1);
    for (int i = 0; i < rows.size(); ++i) {
        if (i == list->count()) list->addItem(QString());
        list->item(i)->setText(rows[i]);
        list->item(i)->setToolTip(rows[i].toHtmlEscaped());
    }
    list->setCurrentRow(current);
    list->scrollToItem(list->currentItem());
}

}  // namespace

FrmQuestion::FrmQuestion(SurveySession& session, Desk& desk, QWidget* parent)
    : QDialog(parent),
      session_(session),
      desk_(desk),
      editor_(session, *this),
      ui_(std::make_unique<Ui::FrmQuestion>()) {
    ui_->setupUi(this);
    texts_ = {ui_->QuesText_0, ui_->QuesText_1, ui_->QuesText_2};
    status_ = {ui_->chkStatus_0, ui_->chkStatus_1, ui_->chkStatus_2,
               ui_->chkStatus_3, ui_->chkStatus_4, ui_->chkStatus_5};
    kinds_ = {ui_->optChr_0, ui_->optChr_1, ui_->optChr_2, ui_->optChr_3};
    SetUpForm(this, session_.ui, kHelpQuestion);
    QPalette alarm = ui_->lblChanged->palette();
    alarm.setColor(QPalette::WindowText, ColorOf(ThemeColor::Error, alarm));
    ui_->lblChanged->setPalette(alarm);
    // While the samples are made anew the frame is hidden; the window keeps its size.
    QSizePolicy policy = ui_->Frame1->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    ui_->Frame1->setSizePolicy(policy);
    RefreshAll();

    connect(ui_->lstQno, &QListWidget::currentRowChanged, this, &FrmQuestion::lstQno_Click);
    connect(ui_->lstCno, &QListWidget::currentRowChanged, this, &FrmQuestion::lstCno_Click);
    connect(ui_->InsertQuestion, &QPushButton::clicked, this, &FrmQuestion::InsertQuestion_Click);
    connect(ui_->DeleteQuestion, &QPushButton::clicked, this, [this] { Edit([this] { editor_.DeleteQuestion(); }); });
    connect(ui_->cmdDirUp, &QPushButton::clicked, this, [this] { Edit([this] { editor_.MoveUp(); }); });
    connect(ui_->cmdDirDown, &QPushButton::clicked, this, [this] { Edit([this] { editor_.MoveDown(); }); });
    connect(ui_->lblQLimit, &ClickLabel::clicked, this, [this] { Edit([this] { editor_.EditLimit(); }); });
    connect(ui_->cmdQAnum, &QPushButton::clicked, this, &FrmQuestion::cmdQAnum_Click);
    connect(ui_->InsertChoice, &QPushButton::clicked, this, [this] {
        Edit([this] { editor_.InsertChoice(); });
        if (editor_.HasChoice()) ui_->ChoiceText->setFocus();
    });
    connect(ui_->DeleteChoice, &QPushButton::clicked, this, [this] { Edit([this] { editor_.DeleteChoice(); }); });
    connect(ui_->cmdAuto, &QPushButton::clicked, this, &FrmQuestion::cmdAuto_Click);
    connect(ui_->cmdAllMulti, &QPushButton::clicked, this, [this] { Edit([this] { editor_.ApplyMultipleToAll(); }); });
    for (int i = 0; i < 6; ++i)
        connect(status_[static_cast<size_t>(i)], &QCheckBox::clicked, this,
                [this, i](bool on) { chkStatus_Click(i, on); });
    for (int i = 0; i < 4; ++i)
        connect(kinds_[static_cast<size_t>(i)], &QRadioButton::clicked, this,
                [this, i] { Edit([this, i] { editor_.SetLabelKind(i); }); });
    for (QLineEdit* box : {texts_[0], texts_[1], texts_[2], ui_->ChoiceText}) {
        connect(box, &QLineEdit::editingFinished, this, [this] { Edit([] {}); });
        connect(box, &QLineEdit::returnPressed, this, [this, box] { GoOnFrom(box); });
    }
    ui_->ChoiceText->installEventFilter(this);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Up), this), &QShortcut::activated, this,
            [this] { GoToQuestion(editor_.Question() - 1); });
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Down), this), &QShortcut::activated, this,
            [this] { GoToQuestion(editor_.Question() + 1); });
    connect(ui_->cmdDo, &QPushButton::clicked, this, &FrmQuestion::cmdDo_Click);
    connect(ui_->cmdCancel, &QPushButton::clicked, this, &FrmQuestion::reject);
    connect(ui_->cmdHelpContext, &QPushButton::clicked, this, [this] { session_.ui.HelpContext(kHelpQuestion); });

    ui_->lstQno->setFocus();
    const int em = fontMetrics().horizontalAdvance(u'あ');
    resize(sizeHint().expandedTo({68 * em, 40 * em}));
}

FrmQuestion::~FrmQuestion() = default;

void FrmQuestion::lstQno_Click(int row) {
    Edit([this, row] { editor_.SelectQuestion(row); });
}

void FrmQuestion::lstCno_Click(int row) {
    Edit([this, row] { editor_.SelectChoice(row); });
}

// The typing goes on in the new question's name, which stands there to be typed over.
void FrmQuestion::InsertQuestion_Click() {
    const int before = session_.survey.QuestionCount;
    Edit([this] { editor_.InsertQuestion(); });
    if (session_.survey.QuestionCount == before) return;
    ui_->QuesText_0->setFocus();
    ui_->QuesText_0->selectAll();
}

void FrmQuestion::cmdQAnum_Click() {
    Edit([this] {
        if (!editor_.HasQuestion() || !editor_.ConfirmRewrite()) return;
        FrmQAnum window(session_.ui, editor_.Question() + 1, editor_.Anum(), editor_.MostAnswers(), this);
        if (window.exec() == Accepted) editor_.SetAnum(window.Anum());
    });
}

void FrmQuestion::cmdAuto_Click() {
    Edit([this] {
        if (!editor_.CanInsertChoice() || !editor_.ConfirmRewrite()) return;
        FrmAutoQ window(
            session_.ui, [this](const QString& text, const auto& goOn) { editor_.AddChoices(text, goOn); }, this);
        window.exec();
    });
}

void FrmQuestion::chkStatus_Click(int index, bool on) {
    Edit([this, index, on] { editor_.SetStatus(index, on); });
}

void FrmQuestion::cmdDo_Click() {
    StoreTexts();
    EditorOutcome outcome = EditorOutcome::Open;
    Attempt(session_.ui, [&] { outcome = editor_.Finish(); });
    if (outcome != EditorOutcome::Open) return done(Accepted);
    ShowProgress(u"終了(&X)"_s);
    RefreshAll();
}

void FrmQuestion::reject() {
    const bool stops = editor_.IsBusy();
    if (!stops) StoreTexts();
    if (editor_.Cancel() != EditorOutcome::Open) done(Rejected);
}

void FrmQuestion::Edit(const std::function<void()>& edit) {
    if (editor_.IsBusy()) return;
    StoreTexts();
    Attempt(session_.ui, edit);
    RefreshAll();
}

void FrmQuestion::StoreTexts() {
    for (int part = 0; part < 3; ++part) {
        QLineEdit* box = texts_[static_cast<size_t>(part)];
        if (box->isModified()) editor_.SetQuesText(part, box->text());
        box->setModified(false);
    }
    if (ui_->ChoiceText->isModified()) editor_.SetChoiceText(ui_->ChoiceText->text());
    ui_->ChoiceText->setModified(false);
}

// Behind the last choice the next question begins, or where there is none, its insertion.
void FrmQuestion::GoOnFrom(const QLineEdit* box) {
    if (box == texts_[0] || box == texts_[1]) {
        QLineEdit* next = texts_[box == texts_[0] ? 1 : 2];
        next->setFocus();
        next->selectAll();
    } else if (box == texts_[2]) {
        GoToQuestion(editor_.Question() + 1);
    } else {
        Edit([this] { editor_.SelectChoice(editor_.Choice() + 1); });
        if (!editor_.HasChoice()) return GoToQuestion(editor_.Question() + 1);
        ui_->ChoiceText->setFocus();
        ui_->ChoiceText->selectAll();
    }
}

void FrmQuestion::GoToQuestion(int row) {
    Edit([this, row] { editor_.SelectQuestion(row); });
    if (!editor_.HasQuestion()) return ui_->InsertQuestion->setFocus();
    if (ui_->lstQno->hasFocus()) return;
    ui_->QuesText_0->setFocus();
    ui_->QuesText_0->selectAll();
}

void FrmQuestion::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // Enter goes on from box to box, so no button is the default one.
        if (auto* button = qobject_cast<QPushButton*>(focusWidget())) button->click();
        return;
    }
    QDialog::keyPressEvent(event);
}

// A column of cells is as many choices; a line edit would make one of it.
bool FrmQuestion::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Paste) &&
        PasteCells())
        return true;
    return QDialog::eventFilter(object, event);
}

bool FrmQuestion::PasteCells() {
    const QString text = QApplication::clipboard()->text();
    if (!text.contains(u'\n') && !text.contains(u'\r')) return false;
    Edit([&] { editor_.PasteChoices(text, [this] { return MayGoOn(); }); });
    return true;
}

bool FrmQuestion::MayGoOn() {
    session_.ui.LetEventsRun();
    return true;
}

void FrmQuestion::RefreshAll() {
    const QStringList questions = editor_.QuestionRows();
    ShowRows(ui_->lstQno, questions, editor_.Question());
    QStringList choices = editor_.ChoiceRows();
    if (editor_.HasQuestion()) choices += questions.last();  // the place behind the last one
    ShowRows(ui_->lstCno, choices, editor_.HasQuestion() ? editor_.Choice() : -1);
    RefreshQuestion();
    RefreshChoice();
    ui_->lblChanged->setVisible(editor_.IsChanged());
    ui_->lblRewrite->setVisible(editor_.WillAsk());
}

void FrmQuestion::RefreshQuestion() {
    const bool any = editor_.HasQuestion();
    ui_->lblQno->setText(QString::number(editor_.Question() + 1));
    for (int part = 0; part < 3; ++part) {
        QLineEdit* box = texts_[static_cast<size_t>(part)];
        if (box->text() != editor_.QuesText(part)) box->setText(editor_.QuesText(part));
        box->setEnabled(any);
    }
    ui_->lblQLimit->Show(editor_.LimitInWords());
    ui_->lblQLimit->setEnabled(any);
    ui_->lblAnum->setText(QString::number(editor_.Anum()) + u"つまで"_s);
    ui_->cmdQAnum->setEnabled(any);
    for (int kind = 0; kind < 4; ++kind) {
        QRadioButton* option = kinds_[static_cast<size_t>(kind)];
        option->setEnabled(any);
        option->setChecked(any && editor_.LabelKind() == kind);
    }
    ui_->DeleteQuestion->setEnabled(editor_.CanDeleteQuestion());
    ui_->cmdDirUp->setEnabled(editor_.CanMoveUp());
    ui_->cmdDirDown->setEnabled(editor_.CanMoveDown());
}

void FrmQuestion::RefreshChoice() {
    const bool any = editor_.HasChoice();
    ui_->lblCno->setText(editor_.HasQuestion() ? QString::number(editor_.Choice()) : QString());
    if (ui_->ChoiceText->text() != editor_.ChoiceText()) ui_->ChoiceText->setText(editor_.ChoiceText());
    ui_->ChoiceText->setEnabled(any);
    for (int i = 0; i < 6; ++i) {
        status_[static_cast<size_t>(i)]->setChecked(editor_.Status(i));
        status_[static_cast<size_t>(i)]->setEnabled(any);
    }
    ui_->cmdAllMulti->setEnabled(any);
    ui_->InsertChoice->setEnabled(editor_.CanInsertChoice());
    ui_->cmdAuto->setEnabled(editor_.CanInsertChoice());
    ui_->DeleteChoice->setEnabled(editor_.CanDeleteChoice());
}

bool FrmQuestion::ChooseCorrection() {
    return EditCorrectFlags(session_.ui, this, session_.survey.CorrectFlags);
}

LimitList FrmQuestion::EditLimit(const LimitList& list) {
    LimitList picked = list;
    quibra::EditLimit(session_, desk_, this, picked, kPickLines);
    return picked;
}

// Nothing but Cancel can be used while samples are made anew.
void FrmQuestion::ShowProgress(const QString& caption) {
    const bool busy = editor_.IsBusy();
    ui_->cmdDo->setText(busy ? caption : u"終了(&X)"_s);
    ui_->Frame1->setVisible(!busy);
    ui_->cmdDo->setEnabled(!busy);
    ui_->cmdHelpContext->setEnabled(!busy);
}

}  // namespace quibra
