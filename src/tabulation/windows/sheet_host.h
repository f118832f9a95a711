// The result windows of a program, and who listens to them. The program owns one ResultWindows and hands it down; the
// session and the desk must outlive it. It owns the windows it makes, until they are closed.
#pragma once

#include <QMetaObject>
#include <memory>
#include <vector>

#include "tabulation/total_option.h"

namespace quibra {

class Desk;
class FrmGraph;
class FrmGridBase;
class SurveySession;

// Learns which result window is in front: the set-up window, for one, which shows that window's options.
class SheetHost {
  public:
    virtual ~SheetHost() = default;
    // `sheet` has come to the front and the current options are its own.
    virtual void SheetActivated(FrmGridBase& sheet) = 0;
    // `sheet` has been closed and is deleted with the next turn of the message loop.
    virtual void SheetClosed(FrmGridBase& sheet) = 0;
};

class ResultWindows {
  public:
    ResultWindows(SurveySession& session, Desk& desk);
    ~ResultWindows();

    // The options that "Do Total" takes: those of the set-up window, or of the window that came to the front last.
    TotalOption option;

    // A new window, not yet shown.
    FrmGridBase& New();
    // All that are not closed, shown or not.
    std::vector<FrmGridBase*> All() const;

    // A host stays added until it is removed.
    void AddHost(SheetHost& host);
    void RemoveHost(SheetHost& host);

    // The chart window that results send their charts to; null while there is none.
    FrmGraph* Graph() const { return graph_; }
    void SetGraph(FrmGraph* graph) { graph_ = graph; }

    // The one file that pages are read from. A file that proved to be none stays open, and the pointer busy, until a
    // survey is loaded or saved; until then it can't be taken: run-time error 55.
    void TakePageFile() const;
    void LeavePageFileOpen();

    // Where a file of a result is proposed to be kept: beside the survey, by its name with `ending` behind it.
    QString ProposedPath(const QString& ending) const;

    // What a window tells of itself.
    void Activated(FrmGridBase& sheet);
    void Closed(FrmGridBase& sheet);

  private:
    bool IsCovered(const FrmGridBase& sheet) const;

    SurveySession& session_;
    Desk& desk_;
    std::vector<std::unique_ptr<FrmGridBase>> sheets_;
    std::vector<SheetHost*> hosts_;
    FrmGraph* graph_ = nullptr;
    bool pageFileOpen_ = false;
    QMetaObject::Connection sessionChanged_;
};

}  // namespace quibra
