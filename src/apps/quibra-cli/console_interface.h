// The user at a terminal: messages and questions go to standard error, and nobody is waited for. A question gets the
// safe answer, or Yes and OK when the user has said so beforehand; windows that pick something count as cancelled.
#pragma once

#include <QElapsedTimer>

#include "core/user_interface.h"

namespace quibra {

class ConsoleInterface : public UserInterface {
  public:
    // `assumeYes` answers every question with Yes or OK.
    explicit ConsoleInterface(bool assumeYes);
    ~ConsoleInterface() override;

    Answer Message(const QString& text, int style, const QString& title) override;
    int AskBox(const QString& info1, const QString& info2, const QString& func1, const QString& func2) override;
    bool InputBox(const QString& title, const QString& name, const QString& range, const QString& caution,
                  QString& text) override;
    int QuestionBox(const QString& info, const QStringList& questions, int first) override;
    bool QuestionsBox(const QString& info, const QStringList& questions, QList<bool>& selected) override;
    QString DirBox() override { return QString(); }
    QString FileBox(const QString&, const QString&, bool) override { return QString(); }

    // What messages call the file at `path`.
    void CallFile(const QString& path, const QString& name);

    // One line that is written over and over, and only where somebody can see it.
    void ProgressOpen(const ProgressSpec& spec) override;
    bool Progress(const QString& text, double fraction) override;
    void ProgressClose() override;
    // True when the line would be written now: seen by somebody and not written just before. Texts that cost something
    // need not be made otherwise.
    bool IsProgressDue() const;

    void Beep() override {}
    void Busy(bool) override {}
    void LetEventsRun() override {}
    void HelpContext(int) override {}

  private:
    void ClearLine();

    bool assumeYes_;
    bool terminal_;
    bool lineShown_ = false;
    QElapsedTimer sinceLine_;
    QString progressTitle_;
    QString path_;
    QString name_;
};

}  // namespace quibra
