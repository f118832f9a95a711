// The user at the windows of a Qt program.
#pragma once

#include <QPointer>
#include <memory>

#include "core/user_interface.h"

class QWidget;

namespace quibra {

class FrmProcessing;

class QtUserInterface : public UserInterface {
  public:
    QtUserInterface();
    ~QtUserInterface() override;

    Answer Message(const QString& text, int style, const QString& title) override;
    int AskBox(const QString& info1, const QString& info2, const QString& func1, const QString& func2) override;
    bool InputBox(const QString& title, const QString& name, const QString& range, const QString& caution,
                  QString& text) override;
    int QuestionBox(const QString& info, const QStringList& questions, int first) override;
    bool QuestionsBox(const QString& info, const QStringList& questions, QList<bool>& selected) override;
    QString DirBox() override;
    QString FileBox(const QString& path, const QString& filter, bool save) override;
    void ProgressOpen(const ProgressSpec& spec) override;
    bool Progress(const QString& text, double fraction) override;
    void ProgressClose() override;
    void Beep() override;
    void Busy(bool on) override;
    void LetEventsRun() override;
    void HelpContext(int topic) override;
    void HelpIndex();
    void HelpSearch();

  private:
    std::unique_ptr<FrmProcessing> processing_;
    QList<QPointer<QWidget>> disabled_;  // windows that ProgressClose enables again
    int busy_ = 0;
};

}  // namespace quibra
