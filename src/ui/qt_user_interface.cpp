#include "ui/qt_user_interface.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QHeaderView>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTreeView>
#include <algorithm>
#include <cmath>

#include "core/help_topics.h"
#include "core/numbers.h"
#include "ui/frm_ask.h"
#include "ui/frm_dir_box.h"
#include "ui/frm_input.h"
#include "ui/frm_processing.h"
#include "ui/frm_q_box.h"
#include "ui/help_viewer.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Loops report far more often than anyone can see or press.
constexpr qint64 kMillisecondsBetweenEvents = 30;

// The window that a question belongs to. Not one that is closed and about to be deleted, and never the help, which is
// made anew where a dialog needs it: the question would go with them.
QWidget* Asker() {
    static QPointer<QWidget> last;
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    const auto usable = [](const QWidget* window) { return window->isVisible() && window->isEnabled(); };
    // While something long runs the windows beside it are off; what it has to say belongs to its own.
    if (QWidget* active = QApplication::activeWindow(); active && usable(active) && !IsAside(active))
        return last = active;
    // Just behind a dialog no window is active, and the next question is of the window that asked before.
    if (last && usable(last)) return last;
    QList<QWidget*> forms = OpenForms();
    forms.removeIf([&](const QWidget* window) { return IsAside(window) || !usable(window); });
    return forms.isEmpty() ? nullptr : forms.constLast();
}

QMessageBox::Icon IconOf(int style) {
    switch (style & 0x70) {
        case kCritical:
            return QMessageBox::Critical;
        case kQuestion:
            return QMessageBox::Question;
        case kWarning:
            return QMessageBox::Warning;
        case kInformation:
            return QMessageBox::Information;
        default:
            return QMessageBox::NoIcon;
    }
}

struct Choice {
    Answer answer;
    QString caption;
    QString name;  // for screen readers, without the key
    QMessageBox::ButtonRole role;
};

QList<Choice> ChoicesOf(int style) {
    const Choice ok{Answer::Ok, u"OK"_s, u"OK"_s, QMessageBox::AcceptRole};
    const Choice cancel{Answer::Cancel, u"キャンセル"_s, u"キャンセル"_s, QMessageBox::RejectRole};
    const Choice yes{Answer::Yes, u"はい(&Y)"_s, u"はい"_s, QMessageBox::YesRole};
    const Choice no{Answer::No, u"いいえ(&N)"_s, u"いいえ"_s, QMessageBox::NoRole};
    switch (style & 7) {
        case kOkCancel:
            return {ok, cancel};
        case kYesNoCancel:
            return {yes, no, cancel};
        case kYesNo:
            return {yes, no};
        default:
            return {ok};
    }
}

// "説明(*.qb)|*.qb|…" as Qt wants it: "説明 (*.qb)", one an entry.
QStringList FiltersOf(const QString& pairs) {
    static const QRegularExpression ownPattern(u"\\s*\\([^()]*\\*[^()]*\\)\\s*$"_s);
    QStringList filters;
    const QStringList parts = pairs.split(u'|');
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString patterns = parts[i + 1].split(u';', Qt::SkipEmptyParts).join(u' ');
        // Files without a dot are files too.
        patterns.replace(u"*.*"_s, u"*"_s);
        QString description = parts[i];
        filters += description.remove(ownPattern) + u" ("_s + patterns + u')';
    }
    return filters;
}

// What a save under a filter appends to a name without a suffix; empty for "*".
QString SuffixOf(const QString& filter) {
    static const QRegularExpression simple(u"\\(\\*\\.(\\w+)[ )]"_s);
    return simple.match(filter).captured(1);
}

// Qt's Japanese lacks this one word.
class FileIcons : public QFileIconProvider {
  public:
    QString type(const QFileInfo& file) const override {
        return file.isDir() ? u"フォルダー"_s : QFileIconProvider::type(file);
    }
};

}  // namespace

class QtUserInterface::Question {
  public:
    explicit Question(QtUserInterface& ui) : ui_(ui) {
        ++ui_.questions_;
        ui_.RefreshPointer();
    }
    ~Question() {
        --ui_.questions_;
        ui_.RefreshPointer();
    }
    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;

  private:
    QtUserInterface& ui_;
};

QtUserInterface::QtUserInterface()
    : processing_(std::make_unique<FrmProcessing>(*this, [this] { return ConfirmStop(spec_); })) {}

QtUserInterface::~QtUserInterface() {
    ProgressClose();
    busy_ = 0;
    RefreshPointer();
}

Answer QtUserInterface::Message(const QString& text, int style, const QString& title) {
    const Question question(*this);
    QString shown = text;
    shown.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    QMessageBox box(IconOf(style), title, {}, QMessageBox::NoButton, Asker());
    box.setObjectName(u"messageBox"_s);
    // A path may look like markup; it is shown as it stands and can be copied.
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setText(shown);
    const QList<Choice> choices = ChoicesOf(style);
    QList<QPushButton*> buttons;
    for (const Choice& choice : choices) {
        buttons += box.addButton(choice.caption, choice.role);
        buttons.constLast()->setAccessibleName(choice.name);
        if (choice.answer == SafeAnswer(style)) box.setEscapeButton(buttons.constLast());
    }
    const qsizetype wanted = style & kSecondDefault ? 1 : 0;
    box.setDefaultButton(buttons[std::min(wanted, buttons.size() - 1)]);
    SetUpForm(&box, *this, kHelpDialogs);
    box.exec();
    for (qsizetype i = 0; i < buttons.size(); ++i)
        if (box.clickedButton() == buttons[i]) return choices[i].answer;
    return SafeAnswer(style);
}

int QtUserInterface::AskBox(const QString& info1, const QString& info2, const QString& func1, const QString& func2) {
    const Question question(*this);
    FrmAsk window(*this, info1, info2, func1, func2, Asker());
    return window.Ask();
}

bool QtUserInterface::InputBox(const QString& title, const QString& name, const QString& range, const QString& caution,
                               QString& text) {
    const Question question(*this);
    FrmInput window(*this, title, name, range, caution, text, Asker());
    const bool accepted = window.exec() == QDialog::Accepted;
    text = accepted ? window.Text() : QString();
    return accepted;
}

int QtUserInterface::QuestionBox(const QString& info, const QStringList& questions, int first) {
    const Question question(*this);
    FrmQBox window(*this, FrmQBox::Pick::One, info, questions.mid(first), Asker());
    if (window.exec() != QDialog::Accepted) return -1;
    return window.Row() + first;
}

bool QtUserInterface::QuestionsBox(const QString& info, const QStringList& questions, QList<bool>& selected) {
    const Question question(*this);
    FrmQBox window(*this, FrmQBox::Pick::Several, info, questions, Asker());
    if (window.exec() != QDialog::Accepted) return false;
    selected = window.Selected();
    return true;
}

QString QtUserInterface::DirBox() {
    const Question question(*this);
    FrmDirBox window(*this, folder_, Asker());
    if (window.exec() != QDialog::Accepted) return {};
    folder_ = window.Folder();
    return folder_;
}

QString QtUserInterface::FileBox(const QString& path, const QString& filter, bool save) {
    const Question question(*this);
    QFileDialog dialog(Asker(), save ? u"名前を付けて保存"_s : u"開く"_s);
    dialog.setObjectName(u"fileDialog"_s);
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    const QStringList filters = FiltersOf(filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        dialog.setDefaultSuffix(SuffixOf(filters.constFirst()));
        QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                         [&dialog](const QString& chosen) { dialog.setDefaultSuffix(SuffixOf(chosen)); });
    }
    const qsizetype slash = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
    const QString folder = path.left(slash + 1).replace(u'\\', u'/');
    if (!folder.isEmpty() && QDir(folder).exists()) dialog.setDirectory(folder);
    dialog.selectFile(path.mid(slash + 1));
    FileIcons icons;
    dialog.setIconProvider(&icons);
    if (auto* list = dialog.findChild<QTreeView*>()) {
        list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
    SetUpForm(&dialog, *this, kHelpDialogs);
    if (dialog.exec() != QDialog::Accepted) return {};
    return dialog.selectedFiles().value(0);
}

void QtUserInterface::ProgressOpen(const ProgressSpec& spec) {
    ProgressClose();
    spec_ = spec;
    pause_.Begin(processing_.get());
    processing_->Open(spec);
    sinceEvents_.invalidate();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

bool QtUserInterface::Progress(const QString& text, double fraction) {
    // Also right for what is no number.
    const double part = fraction > 0 ? std::min(fraction, 1.0) : 0.0;
    processing_->Progress(RoundToInt16(std::floor(part * 100)));
    if (!sinceEvents_.isValid() || sinceEvents_.hasExpired(kMillisecondsBetweenEvents)) {
        processing_->SetText(text);
        QCoreApplication::processEvents();
        sinceEvents_.start();
    }
    return !processing_->IsStopped();
}

void QtUserInterface::ProgressClose() {
    pause_.End();
    processing_->Close();
}

void QtUserInterface::Beep() {
    QApplication::beep();
}

void QtUserInterface::Busy(bool on) {
    busy_ = std::max(0, busy_ + (on ? 1 : -1));
    RefreshPointer();
}

void QtUserInterface::RefreshPointer() {
    const bool wanted = busy_ > 0 && questions_ == 0;
    if (wanted == busyShown_) return;
    busyShown_ = wanted;
    if (wanted)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QGuiApplication::restoreOverrideCursor();
}

void QtUserInterface::LetEventsRun() {
    if (sinceEvents_.isValid() && !sinceEvents_.hasExpired(kMillisecondsBetweenEvents)) return;
    QCoreApplication::processEvents();
    sinceEvents_.start();
}

HelpViewer& QtUserInterface::Help() {
    if (!help_) help_ = std::make_unique<HelpViewer>(*this);
    return *help_;
}

void QtUserInterface::HelpContext(int topic) {
    Help().ShowTopic(topic);
}

void QtUserInterface::HelpIndex() {
    Help().ShowIndex();
}

void QtUserInterface::HelpSearch() {
    Help().ShowSearch();
}

}  // namespace quibra
