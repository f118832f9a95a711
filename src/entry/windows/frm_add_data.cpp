#include "entry/windows/frm_add_data.h"

#include <QCloseEvent>
#include <QColorDialog>
#include <QFocusEvent>
#include <QKeyEvent>

#include "core/attempt.h"
#include "core/help_topics.h"
#include "ui/desk.h"
#include "ui/font_dialog.h"
#include "ui/form.h"
#include "ui/theme.h"
#include "ui/window_place.h"
#include "ui_frm_add_data.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kGroundColor = 5;  // of the menu's colours, which begin with those of SheetColor

// A menu or another program takes the focus only for a while.
bool IsLeft(const QFocusEvent& event) {
    return event.reason() != Qt::PopupFocusReason && event.reason() != Qt::MenuBarFocusReason &&
           event.reason() != Qt::ActiveWindowFocusReason;
}

// The color, lighter or darker until it can be read on the ground.
QColor Readable(QColor color, const QColor& ground) {
    constexpr int kStep = 8;
    const bool lighten = ground.lightnessF() < 0.5;
    while (Contrast(color, ground) < kReadableContrast) {
        const int lightness = color.lightness() + (lighten ? kStep : -kStep);
        if (lightness < 0 || lightness > 255) break;
        color.setHsl(color.hslHue(), color.hslSaturation(), lightness);
    }
    return color;
}

}  // namespace

bool FrmAddData::Viewer::IsVisible() const {
    return desk_.IsSampleShown();
}

void FrmAddData::Viewer::ShowSample(qint32 dno, int endQ) {
    desk_.ShowSample(dno, endQ);
}

FrmAddData::FrmAddData(SurveySession& session, ExternCaller& caller, Desk& desk, QWidget* parent)
    : QMainWindow(parent),
      controls_(std::make_unique<Ui::FrmAddData>()),
      session_(session),
      desk_(desk),
      viewer_(desk),
      entry_(session, caller, *this) {
    controls_->setupUi(this);
    SetUpForm(this, session.ui, kHelpEntry);
    entry_.SetViewer(&viewer_);
    controls_->txtReply->SetKeyHandler([this](SheetKey key) { return txtReply_Key(key); });
    controls_->txtDno->installEventFilter(this);
    controls_->txtIDno->installEventFilter(this);
    controls_->mnuQDisp->setChecked(entry_.ShowsNames());
    controls_->mnuShowReturn->setChecked(entry_.ShowsMarks());

    connect(controls_->txtReply, &SheetBox::Typed, this, &FrmAddData::txtReply_Change);
    connect(controls_->txtReply, &SheetBox::Left, this, &FrmAddData::txtReply_LostFocus);
    connect(controls_->txtReply, &SheetBox::cursorPositionChanged, this,
            [this] { entry_.MoveCaret(controls_->txtReply->Caret()); });
    connect(controls_->txtDno, &QLineEdit::textEdited, this, [this](const QString& text) { entry_.SetDno(text); });
    connect(controls_->txtIDno, &QLineEdit::textEdited, this, [this](const QString& text) { entry_.SetIDno(text); });
    for (QLineEdit* box : {controls_->txtDno, controls_->txtIDno})
        connect(box, &QLineEdit::returnPressed, controls_->txtReply, qOverload<>(&QWidget::setFocus));
    connect(controls_->scrDno, &QScrollBar::valueChanged, this, [this](int value) {
        if (!refreshing_) Run([this, value] { entry_.Scroll(value); });
    });
    connect(controls_->cmdChangeID, &QPushButton::clicked, this, [this] { Run([this] { entry_.ChangeID(); }); });
    connect(controls_->chkInputID, &QCheckBox::toggled, this, [this](bool on) { entry_.SetInputID(on); });
    connect(controls_->cmdNextInput, &QPushButton::clicked, this, [this] { Run([this] { entry_.NextInput(); }); });
    connect(controls_->cmdDelete, &QPushButton::clicked, this, [this] { Run([this] { entry_.Delete(); }); });
    connect(controls_->cmdExecute, &QPushButton::clicked, this, [this] { Run([this] { entry_.Execute(); }); });
    connect(controls_->cmdClose, &QPushButton::clicked, this, &QWidget::close);
    connect(controls_->mnuAnswer, &QAction::triggered, this, [this] { entry_.FillViewer(); });
    connect(controls_->mnuSearch, &QAction::triggered, this, [this] { desk_.ShowSearch(); });
    connect(controls_->mnuFontChange, &QAction::triggered, this, &FrmAddData::mnuFontChange_Click);
    connect(controls_->mnuQDisp, &QAction::triggered, this,
            [this](bool on) { Run([this, on] { entry_.SetNames(on); }); });
    connect(controls_->mnuShowReturn, &QAction::triggered, this,
            [this](bool on) { Run([this, on] { entry_.SetMarks(on); }); });
    const QAction* colors[] = {controls_->mnuColor_0, controls_->mnuColor_1, controls_->mnuColor_2,
                               controls_->mnuColor_3, controls_->mnuColor_4, controls_->mnuColor_5};
    for (int index = 0; index <= kGroundColor; ++index)
        connect(colors[index], &QAction::triggered, this, [this, index] { mnuColor_Click(index); });
    connect(controls_->mnuHelpContent, &QAction::triggered, this, [this] { session_.ui.HelpContext(kHelpContents); });
    connect(controls_->mnuHelpContext, &QAction::triggered, this, [this] { session_.ui.HelpContext(kHelpEntry); });
    connect(controls_->mnuHelpKeyword, &QAction::triggered, this, [this] { session_.ui.HelpSearch(); });

    const QFontMetrics metrics = fontMetrics();
    resize(100 * metrics.averageCharWidth(), 30 * metrics.lineSpacing());
    WinCenter(this);
    WinPosRestore(session.settings, kPosAddData, this);
    session.changes.AddListener(this);
    ApplyLook();
    Run([this] { entry_.Open(); });
    Refresh();
}

FrmAddData::~FrmAddData() {
    session_.changes.RemoveListener(this);
    // What remains of a shown window still moves the focus, and must not be told so any more.
    for (QWidget* control : findChildren<QWidget*>()) {
        control->disconnect(this);
        control->removeEventFilter(this);
    }
}

// A failure in reading a sheet has stored nothing, and what was typed still stands in the box.
void FrmAddData::Run(const std::function<void()>& step) {
    if (!outlived_) Attempt(session_.ui, step);
}

bool FrmAddData::txtReply_Key(SheetKey key) {
    bool done = true;
    Run([&] {
        if (key == SheetKey::Enter)
            entry_.KeyEnter();
        else if (key == SheetKey::Space)
            done = entry_.KeySpace();
        else
            done = !entry_.KeyUpOrDown();
    });
    return done;
}

void FrmAddData::txtReply_Change() {
    entry_.TypeReply(controls_->txtReply->Text(), controls_->txtReply->Caret());
}

void FrmAddData::txtReply_LostFocus() {
    Run([this] { entry_.ReplyLostFocus(); });
}

void FrmAddData::txtDno_LostFocus() {
    Run([this] { entry_.ShowSample(); });
}

void FrmAddData::txtIDno_LostFocus() {
    Run([this] { entry_.IDnoLostFocus(); });
}

bool FrmAddData::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::FocusOut && IsLeft(*static_cast<QFocusEvent*>(event))) {
        // The box itself has to know first, and what the search says may take the focus elsewhere.
        const auto lost = object == controls_->txtDno ? &FrmAddData::txtDno_LostFocus : &FrmAddData::txtIDno_LostFocus;
        QMetaObject::invokeMethod(
            this, [this, lost] { (this->*lost)(); }, Qt::QueuedConnection);
    } else if (event->type() == QEvent::KeyPress && object == controls_->txtIDno) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            Run([this, key] { entry_.StepDno(key == Qt::Key_Up ? 1 : -1); });
            return true;
        }
    }
    return QMainWindow::eventFilter(object, event);
}

void FrmAddData::mnuFontChange_Click() {
    SheetBox* box = controls_->txtReply;
    QFont font = box->font();
    QColor color = box->palette().color(QPalette::Text);
    if (!PickFont(session_.ui, this, font, color)) return;
    QPalette palette = box->palette();
    palette.setColor(QPalette::Text, color);
    box->setPalette(palette);
    box->setFont(font);
    FontStore(session_.settings, kFontAddData, box);
    ApplyLook();
    Run([this] { entry_.Restyle(); });
}

void FrmAddData::mnuColor_Click(int index) {
    SheetBox* box = controls_->txtReply;
    QPalette palette = box->palette();
    const auto role = index == kGroundColor ? QPalette::Base : QPalette::Text;
    const bool own = index > 0 && index < kGroundColor;
    qint32* setting = own ? &session_.settings.ColorSet[static_cast<size_t>(index - 1)] : nullptr;
    const QColor now = own ? ColorFromSettings(std::abs(*setting)) : palette.color(role);
    const QColor picked = QColorDialog::getColor(now, this, {}, QColorDialog::DontUseNativeDialog);
    if (!picked.isValid()) return;
    if (own) {
        *setting = ColorToSettings(picked);
    } else {
        palette.setColor(role, picked);
        box->setPalette(palette);
        FontStore(session_.settings, kFontAddData, box);
    }
    ApplyLook();
    Run([this] { entry_.Restyle(); });
}

void FrmAddData::ApplyLook() {
    SheetBox* box = controls_->txtReply;
    // Until somebody has chosen a font or a ground the box looks like any other one of the desktop.
    if (!session_.settings.FontSet[kFontAddData].FontName.isEmpty()) FontApply(session_.settings, kFontAddData, box);
    const QColor ground = box->palette().color(QPalette::Base);
    std::array<QColor, kSheetColors> colors;
    colors[0] = box->palette().color(QPalette::Text);
    for (size_t i = 1; i < colors.size(); ++i)
        colors[i] = Readable(ColorFromSettings(std::abs(session_.settings.ColorSet[i - 1])), ground);
    box->SetColors(colors);
    box->SetLook(entry_.Look());
}

void FrmAddData::ShowSheet(const SheetText& sheet) {
    controls_->txtReply->ShowSheet(sheet);
}

void FrmAddData::ShowText(const QString& text) {
    controls_->txtReply->SetText(text);
}

void FrmAddData::MarkError(int start, int length) {
    controls_->txtReply->MarkError(start, length);
}

void FrmAddData::SetFocus(EntryControl control) {
    RefreshEnabled();
    if (control == EntryControl::txtReply)
        controls_->txtReply->setFocus();
    else if (control == EntryControl::cmdNextInput)
        controls_->cmdNextInput->setFocus();
}

void FrmAddData::RaiseDriver() {
    desk_.ShowImport();
}

void FrmAddData::Refresh() {
    const EntryState& state = entry_.State();
    refreshing_ = true;
    RefreshEnabled();
    if (controls_->txtDno->text() != state.Dno) controls_->txtDno->setText(state.Dno);
    if (controls_->txtIDno->text() != state.IDno) controls_->txtIDno->setText(state.IDno);
    controls_->lblMax->setText(state.Max);
    controls_->scrDno->setRange(0, std::max(state.ScrollMax, 0));
    controls_->scrDno->setValue(state.ScrollValue);
    controls_->chkInputID->setChecked(state.InputID);
    FillChoices(state.Choices);
    const QString changed = state.Changed ? u"変更あり"_s : QString();
    controls_->stbInput->setText(state.Status.isEmpty() || changed.isEmpty() ? state.Status + changed
                                                                             : state.Status + u"　"_s + changed);
    SheetBox* box = controls_->txtReply;
    if (!box->IsComposing() && box->Caret() != state.Caret) box->SetCaret(state.Caret);
    refreshing_ = false;
}

void FrmAddData::RefreshEnabled() {
    for (QWidget* control : std::initializer_list<QWidget*>{
             controls_->txtDno, controls_->txtIDno, controls_->cmdChangeID, controls_->cmdDelete, controls_->cmdExecute,
             controls_->txtReply, controls_->scrDno})
        control->setEnabled(entry_.State().Enabled);
}

void FrmAddData::FillChoices(const QStringList& choices) {
    QListWidget* list = controls_->lstChoices;
    bool same = list->count() == choices.size();
    for (int i = 0; same && i < list->count(); ++i)
        same = list->item(i)->text() == choices[i];
    if (same) return;
    list->clear();
    list->addItems(choices);
    if (list->count() == 0) return;
    QFont heading = list->font();
    heading.setBold(true);
    list->item(0)->setFont(heading);
}

void FrmAddData::closeEvent(QCloseEvent* event) {
    bool closes = true;
    Run([&] { closes = entry_.Close(); });
    if (closes) WinPosSave(session_.settings, kPosAddData, this);
    event->setAccepted(closes);
}

void FrmAddData::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    QWidget* first =
        controls_->txtReply->isEnabled() ? static_cast<QWidget*>(controls_->txtReply) : controls_->cmdNextInput;
    first->setFocus();
}

}  // namespace quibra
