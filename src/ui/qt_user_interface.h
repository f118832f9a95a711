// The user at the windows of a Qt program. Made once, behind the QApplication; must not outlive it.
#pragma once

#include <QElapsedTimer>
#include <memory>

#include "core/user_interface.h"
#include "ui/form.h"

class QWidget;

namespace quibra {

class FrmProcessing;
class HelpViewer;

class QtUserInterface : public UserInterface {
  public:
    QtUserInterface();
    ~QtUserInterface() override;
    QtUserInterface(const QtUserInterface&) = delete;
    QtUserInterface& operator=(const QtUserInterface&) = delete;

    Answer Message(const QString& text, int style, const QString& title = DefaultTitle()) override;
    int AskBox(const QString& info1, const QString& info2, const QString& func1, const QString& func2) override;
    bool InputBox(const QString& title, const QString& name, const QString& range, const QString& caution,
                  QString& text) override;
    int QuestionBox(const QString& info, const QStringList& questions, int first) override;
    bool QuestionsBox(const QString& info, const QStringList& questions, QList<bool>& selected) override;
    QString DirBox() override;
    QString FileBox(const QString& path, const QString& filter, bool save) override;
    // Until ProgressClose all open windows but that of the progress are disabled, whether it is shown or not.
    void ProgressOpen(const ProgressSpec& spec) override;
    bool Progress(const QString& text, double fraction) override;
    void ProgressClose() override;
    void Beep() override;
    void Busy(bool on) override;
    void LetEventsRun() override;
    void HelpContext(int topic) override;
    void HelpIndex();
    void HelpSearch() override;

  private:
    class Question;  // while one lives, the pointer is not the busy one

    void RefreshPointer();
    HelpViewer& Help();

    std::unique_ptr<FrmProcessing> processing_;
    std::unique_ptr<HelpViewer> help_;
    FormPause pause_;
    ProgressSpec spec_;
    QElapsedTimer sinceEvents_;  // since waiting events last ran
    QString folder_;             // the last one chosen in DirBox
    int busy_ = 0;
    int questions_ = 0;
    bool busyShown_ = false;
};

}  // namespace quibra
