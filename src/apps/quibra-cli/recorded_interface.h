// The user of a verb that takes commands as JSON: boxes are not shown but recorded, and answered from a queue.
//
// Each box is one object in the order in which they came up:
//   {"Box":"Message","Style":48,"Text":T}
//   {"Box":"Ask","Text":T,"Info":T,"Buttons":[T,T]}
//   {"Box":"Input","Title":T,"Text":T,"Range":T,"Caution":T,"Default":T}
//   {"Box":"Question","Text":T,"First":N}, {"Box":"Questions","Text":T}
//   {"Box":"File","Path":T,"Filter":T,"Save":B}, {"Box":"Dir"}
// Verbs add windows of their own ("Collect") by Record.
//
// Each box takes the next answer: "ok", "cancel", "yes" or "no" for a message; 1 or 2 for Ask; a text for Input, File
// and Dir; a question's number, from 0, for Question, and a list of them for Questions; null is Cancel everywhere. A
// box that finds no answer, or one that its buttons do not offer, gets the safe one.
#pragma once

#include <deque>

#include "core/strict_json.h"
#include "core/user_interface.h"

namespace quibra {

class RecordedInterface : public UserInterface {
  public:
    // In place of those that are left over. RuntimeError 13 unless it is an array.
    void SetAnswers(const Json& answers);
    // The boxes since the last call, as an array.
    Json TakeBoxes();

    // A box that is none of the user interface's, and its answer: null when there is none.
    Json Record(Json box);

    Answer Message(const QString& text, int style, const QString& title = DefaultTitle()) override;
    int AskBox(const QString& info1, const QString& info2, const QString& func1, const QString& func2) override;
    bool InputBox(const QString& title, const QString& name, const QString& range, const QString& caution,
                  QString& text) override;
    int QuestionBox(const QString& info, const QStringList& questions, int first) override;
    bool QuestionsBox(const QString& info, const QStringList& questions, QList<bool>& selected) override;
    QString DirBox() override;
    QString FileBox(const QString& path, const QString& filter, bool save) override;

    void ProgressOpen(const ProgressSpec&) override {}
    bool Progress(const QString&, double) override { return true; }
    void ProgressClose() override {}
    void Beep() override {}
    void Busy(bool) override {}
    void LetEventsRun() override {}
    void HelpContext(int) override {}

  private:
    Json boxes_ = Json::array();
    std::deque<Json> answers_;
};

}  // namespace quibra
