// The user, as logic sees them: everything that asks, warns, shows progress or lets waiting events run. The program's
// windows, the console and the tests each have their own. Handed in, owned by whoever made it, outlives all that use
// it.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

namespace quibra {

// Style of a message box: buttons + icon + default button.
enum MessageStyle {
    kOkOnly = 0,
    kOkCancel = 1,
    kYesNoCancel = 3,
    kYesNo = 4,
    kCritical = 16,
    kQuestion = 32,
    kWarning = 48,
    kInformation = 64,
    kSecondDefault = 256,
};

enum class Answer { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

// The answer a box gives when nobody is there to answer: the one that changes nothing.
Answer SafeAnswer(int style);

// What a progress window shows and what a Stop in it means.
struct ProgressSpec {
    QString title;
    QString info;
    QString caption;
    bool fatal = true;  // stopping breaks what is in memory, or with `save` what is on the disk
    bool show = true;
    bool save = false;
    std::function<void()> onFatalStop;  // run when the user confirms a Stop that breaks the survey in memory
};

class UserInterface {
  public:
    virtual ~UserInterface() = default;

    // A message box with one of the styles above; gives the button pressed.
    virtual Answer Message(const QString& text, int style, const QString& title = DefaultTitle()) = 0;
    // 1 or 2 for the two buttons, 0 for Cancel.
    virtual int AskBox(const QString& info1, const QString& info2, const QString& func1, const QString& func2) = 0;
    // `text` is the default and takes what was typed: true. On Cancel it is emptied: false.
    virtual bool InputBox(const QString& title, const QString& name, const QString& range, const QString& caution,
                          QString& text) = 0;
    // One question of `questions` from number `first` on: its number, or -1 on Cancel.
    virtual int QuestionBox(const QString& info, const QStringList& questions, int first) = 0;
    // Several: `selected` has an element for each question. False on Cancel, which leaves it alone.
    virtual bool QuestionsBox(const QString& info, const QStringList& questions, QList<bool>& selected) = 0;
    // The folder chosen, or an empty text.
    virtual QString DirBox() = 0;
    // The path chosen, or an empty text. `filter` is in pairs with "|".
    virtual QString FileBox(const QString& path, const QString& filter, bool save) = 0;

    virtual void ProgressOpen(const ProgressSpec& spec) = 0;
    // Shows text and fraction (above 1 counts as 1) and lets waiting events run. False once the user has stopped.
    virtual bool Progress(const QString& text, double fraction) = 0;
    virtual void ProgressClose() = 0;

    virtual void Beep() = 0;
    virtual void Busy(bool on) = 0;
    virtual void LetEventsRun() = 0;
    virtual void HelpContext(int topic) = 0;
    // The help where a word is looked up; its contents where it can't be searched.
    virtual void HelpSearch() { HelpContext(0); }

    static QString DefaultTitle();

  protected:
    // What a press of Stop does: asks as the work's flags demand and, when confirmed, tells or breaks what they say.
    // True when the work is to stop.
    bool ConfirmStop(const ProgressSpec& spec);
};

}  // namespace quibra
