// A survey's title and maker, the IDs that this computer may issue, and how much was typed into it.
#pragma once

#include <functional>

#include "session/survey_session.h"

namespace quibra {

// What the window of the properties says.
struct AboutTexts {
    QString title;
    QString editor;
    QString fileName;
    QString usedBytes;
    QString sampleBytes;
    QString samples;
    QString quotaFirst;
    QString quotaLast;
    QString quotaUsed;
};
AboutTexts AboutOf(const Survey& survey);

// Takes title and maker over and marks the survey as changed when one of them is another.
void SetTitleAndEditor(SurveySession& session, const QString& title, const QString& editor);

// Takes the range of IDs over, the smaller number first. False when one is too large, which the user is told; run-time
// error 6 for one that 32 bits don't hold. The settings are the caller's to write.
bool SetQuota(Survey& survey, UserInterface& ui, const QString& from, const QString& to);

// What it has cost to type all samples.
struct TypingFigures {
    qint64 answers = 0;
    qint64 characters = 0;  // of texts
    // Symbols that cost more than a digit.
    qint64 dotted = 0;  // 2ｹﾀ以上
    qint64 letters = 0;
    qint64 kana = 0;
};

// Counts them. The window shows the figures and its cancel button stops them; a stopped count keeps what it has.
class MeasureRun {
  public:
    // `show` gets the run with each turn of events.
    MeasureRun(const Survey& survey, UserInterface& ui, std::function<void(const MeasureRun&)> show);

    void Run();
    // Asks whether to stop.
    void Cancel();

    const TypingFigures& Figures() const { return figures_; }
    // The totals as the window says them, with the share that is done while the run goes on.
    QString AnswerText() const;
    QString EssayText() const;

  private:
    void Count(qint32 dno);
    void CountTexts(qint32 dno);

    const Survey& survey_;
    UserInterface& ui_;
    std::function<void(const MeasureRun&)> show_;
    TypingFigures figures_;
    std::vector<qint16> counts_;
    std::vector<qint16> answers_;
    qint32 next_ = 0;
    bool stopped_ = false;
    bool ended_ = false;
};

}  // namespace quibra
