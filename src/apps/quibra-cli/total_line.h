// What the verbs of totals share: the options that describe a total, and the console's line while it runs.
#pragma once

#include "apps/quibra-cli/console_interface.h"
#include "apps/quibra-cli/verb_line.h"
#include "core/survey.h"
#include "tabulation/total_option.h"
#include "tabulation/total_run.h"
#include "tabulation/total_view.h"

namespace quibra {

// Which questions, columns and conditions, or a file of them; and how the table is shown.
QList<VerbOption> TableOptions();
QList<VerbOption> TableViewOptions();
// Refuses options that say two things. `columns` are the values of --column that are conditions.
void CheckTableOptions(const VerbLine& line, const QStringList& columns);
TotalOption TableOption(const VerbLine& line, const Survey& survey, const QStringList& columns);
TotalView TableView(const VerbLine& line);

// The condition of an option's value into a column.
void SetCondition(const Survey& survey, const QString& text, TotalOption& option, int column);
// The bytes of a file that an option names; a Refusal when it can't be read.
QByteArray OptionFileBytes(const QString& path);
// A total's options in a file's bytes; `path` is for the refusal.
TotalOption OptionOfJson(const QByteArray& json, const QString& path, const Survey& survey);

// Shows how far a count is on the console's progress line.
class ConsoleMonitor : public TotalMonitor {
  public:
    explicit ConsoleMonitor(ConsoleInterface& console) : console_(console) {}

    void Started() override;
    void ShowPass(int q, int toQno, int L, int limitCount) override { pass_ = {q, toQno, L, limitCount}; }
    void ShowPercent(qint32 done, qint32 of) override;
    void Finished() override { console_.ProgressClose(); }

  private:
    struct Pass {
        int q = 0;
        int toQno = 0;
        int L = 0;
        int limitCount = 0;
    };

    ConsoleInterface& console_;
    Pass pass_;
};

}  // namespace quibra
