// A user who is not there: every question gets the answer that changes nothing, progress is never stopped.
#pragma once

#include "core/user_interface.h"

namespace quibra {

class SilentInterface : public UserInterface {
  public:
    Answer Message(const QString&, int style, const QString&) override { return SafeAnswer(style); }
    int AskBox(const QString&, const QString&, const QString&, const QString&) override { return 0; }
    bool InputBox(const QString&, const QString&, const QString&, const QString&, QString& text) override {
        text.clear();
        return false;
    }
    int QuestionBox(const QString&, const QStringList&, int) override { return -1; }
    bool QuestionsBox(const QString&, const QStringList&, QList<bool>&) override { return false; }
    QString DirBox() override { return QString(); }
    QString FileBox(const QString&, const QString&, bool) override { return QString(); }
    void ProgressOpen(const ProgressSpec&) override {}
    bool Progress(const QString&, double) override { return true; }
    void ProgressClose() override {}
    void Beep() override {}
    void Busy(bool) override {}
    void LetEventsRun() override {}
    void HelpContext(int) override {}
};

}  // namespace quibra
