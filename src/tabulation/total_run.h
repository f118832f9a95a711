// The run of a total: it walks the samples and fills a TotalResult. Whoever shows the result is told of each piece as
// soon as it is there, and may put it off the screen and on again as it likes.
#pragma once

#include <QRandomGenerator>

#include "core/limit_list.h"
#include "core/user_interface.h"
#include "tabulation/essay_list.h"
#include "tabulation/table_counter.h"
#include "tabulation/total_result.h"

namespace quibra {

// How a running total speaks to whoever shows it. Calls come often: an implementation that draws should look at the
// clock first. Texts are made only when asked for.
class TotalMonitor {
  public:
    virtual ~TotalMonitor() = default;
    virtual void Started() {}  // "集計中"; cancel can be pressed
    virtual void ShowPass(int /*q*/, int /*toQno*/, int /*L*/, int /*limitCount*/) {}
    virtual void ShowPercent(qint32 /*done*/, qint32 /*of*/) {}
    virtual void LetEventsRun() {}
    virtual bool Cancelled() const { return false; }
    virtual void Redraw(bool /*on*/) {}
    virtual void Finished() {}

    static QString PassText(int q, int toQno, int L, int limitCount);
    static QString PercentOf(qint32 done, qint32 of);
};

// Takes the pieces of a result in the order in which they are found.
class TotalDisplay {
  public:
    virtual ~TotalDisplay() = default;
    virtual void ShowPlan() = 0;               // a table's rows are known
    virtual void ShowLimit(int L) = 0;         // limit L is begun
    virtual void ShowBlock(int q, int L) = 0;  // question q stands counted and in order under limit L
    virtual void ShowEssayHeads() = 0;         // an essay list is begun
    virtual void ShowEssay(const EssayRow& row) = 0;
    virtual void ShowEssayTotal() = 0;  // no row follows
};

class TotalRun {
  public:
    // All must outlive the run.
    TotalRun(const Survey& survey, UserInterface& ui, TotalMonitor& monitor, TotalDisplay& display,
             TotalResult& result);

    // Fills the result of its options. A table that stands totalled is not counted again, only put in order (`sort`:
    // the largest figure first) and shown. A cancelled table goes on to the next limit, where the first question's walk
    // ends at once.
    void Run(bool sort);

  private:
    void RunTable(bool sort);
    void PlanRows();
    void CountQuestion(TableCounter* counter, int q, int L);
    Figures CountAll(TableCounter& counter, int q, int L);
    Figures CountRough(int q, int L);
    bool ReportWalk(qint32 dno);
    void OrderRows(int q, int L, bool sort);
    void RunEssayList();
    void ListEssays();
    void ListSample(qint32 dno, const std::vector<EssayHit>& hits);
    QStringList RefAnswers(qint32 dno) const;

    const Survey& survey_;
    UserInterface& ui_;
    TotalMonitor& monitor_;
    TotalDisplay& display_;
    TotalResult& result_;
    QRandomGenerator random_;  // steps of a rough total; not seeded, so that one can be repeated
};

}  // namespace quibra
