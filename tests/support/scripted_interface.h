// The user of the tests. Answers come from queues, one a kind of question; a question that finds its queue empty gets
// the answer that changes nothing. Everything that happens is one line of the transcript, so that a test reads like a
// conversation and compares exact words:
//
//   message 48 クイブラ: text -> Ok
//   ask info1 | info2 | func1 | func2 -> 1
//   input title | name | range | caution | default -> typed          (or "-> cancel", as below)
//   question info from 0 of 3 -> 2
//   questions info of 3 -> 101
//   folder -> /path
//   file save path | filter -> /path
//   progress open title | info | caption, progress text 0.5, progress close, beep, busy on, help 12
//
// Line ends inside a text show as \r and \n.
#pragma once

#include <deque>
#include <optional>

#include "core/user_interface.h"

namespace quibra {

class ScriptedInterface : public UserInterface {
  public:
    std::deque<Answer> messageAnswers;
    std::deque<int> askAnswers;
    std::deque<std::optional<QString>> inputAnswers;
    std::deque<int> questionAnswers;
    std::deque<std::optional<QList<bool>>> questionsAnswers;
    std::deque<QString> folderAnswers;
    std::deque<QString> fileAnswers;

    // Stop is pressed at this call of Progress, counted from 1 in each progress window, and at each further one until
    // it is confirmed; kStopAtOpen: already as the window opens. 0 never presses it. The confirmation is answered like
    // any message.
    int stopAtProgress = 0;
    static constexpr int kStopAtOpen = -1;

    QStringList transcript;
    // An answer's word in it.
    static QString NameOf(Answer answer);
    // The transcript's lines that begin with `prefix`.
    QStringList Lines(const QString& prefix) const;
    // Gives the transcript and starts a new one.
    QStringList TakeTranscript();

    // 0 and false after any finished work.
    int OpenProgressWindows() const { return openProgressWindows_; }
    bool IsBusy() const { return busy_; }

    Answer Message(const QString& text, int style, const QString& title = DefaultTitle()) override;
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
    void LetEventsRun() override {}
    void HelpContext(int topic) override;

  private:
    void Note(QString line);

    ProgressSpec spec_;
    int progressCalls_ = 0;
    int openProgressWindows_ = 0;
    bool stopped_ = false;
    bool busy_ = false;
};

}  // namespace quibra
