// The essay list of a TotalSheet: its headings, its rows and the walk over the samples it lists.
#include <QScopeGuard>
#include <algorithm>
#include <array>
#include <utility>

#include "conditions/limit_lists.h"
#include "core/answer_store.h"
#include "core/labels.h"
#include "core/numbers.h"
#include "tabulation/total_sheet.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr qint32 kReportSamples = 50;
constexpr int kPresetRows = 200;
constexpr int kSpareColumns = 7;
constexpr int kLabelRowHeight = 600;
constexpr int kFirstRefColumn = 3;
constexpr int kRowsBesideList = 5;

}  // namespace

void TotalSheet::RunEssayList() {
    const int q = option.FromQno;
    EssayHeader();
    const LimitList work = JoinLimits({survey_.QLimit.Column(q), option.Limits.Column(0)});
    const LabelParts parts{.name = true, .limit = true, .body = true, .answers = true};
    grid.SetText(0, 1, QuestionLabel(survey_, q, parts));
    grid.SetText(0, 2, u"[全体の限定]"_s);
    grid.SetText(1, 2, LimitText(survey_, work, false));
    if (option.Rank > 0) grid.SetText(2, 2, QString::number(option.Rank) + u'位');
    counts_.clear();
    rowCode_.clear();
    ListEssays(work);
}

void TotalSheet::EssayHeader() {
    const int refCount = static_cast<int>(RefQno.size());
    grid.SetRows(kPresetRows);
    grid.SetColumns(option.LimitCount + refCount + kSpareColumns);
    grid.SetRowHeight(1, kLabelRowHeight);
    const QString heads[] = {u"ＩＤ"_s, u"選択肢"_s, u"記述文"_s};
    for (int column = 0; column < kFirstRefColumn; ++column) {
        grid.SetColumnWidth(column, ScaledWidth(widths_.at(static_cast<size_t>(column) + 5)));
        grid.SetText(column, kEssayHeadRow, heads[column]);
    }
    // Choices keep the grid's own alignment; long texts and the first reference start at the top.
    for (const int column : {0, 2, 3})
        grid.SetAlignment(column, CellAlignment::LeftTop);
    if (option.LimitCount >= 1) grid.SetText(kFirstRefColumn, 2, u"参照回答"_s);
    for (int i = 0; i < refCount; ++i) {
        const int q = RefQno[static_cast<size_t>(i)];
        grid.SetColumnWidth(kFirstRefColumn + i, ScaledWidth(widths_[9]));
        grid.SetText(kFirstRefColumn + i, kEssayHeadRow, QuestionLabel(survey_, q, {.body = true, .answers = true}));
    }
}

void TotalSheet::ListEssays(const LimitList& list) {
    const qint32 count = survey_.SampleCount();
    if (count < 1) return;
    grid.SetRows(kEssayHeadRow + 1);
    monitor_.Redraw(false);
    {
        const auto redraw = qScopeGuard([this] { monitor_.Redraw(true); });
        std::vector<EssayHit> hits;
        for (qint32 dno = FromDno; dno < count; ++dno) {
            if (dno % kReportSamples == 0) {
                monitor_.ShowPercent(dno, count);
                monitor_.Redraw(true);
                monitor_.Redraw(false);
                monitor_.LetEventsRun();
                if (monitor_.Cancelled()) break;
            }
            if (EssayMatch(survey_, dno, option, list, hits)) ListSample(dno, hits);
            HasNext = dno < count - 1 && static_cast<int>(EssayRows.size()) + kRowsBesideList >= kMaxEssayRows;
            FromDno = HasNext ? dno + 1 : 0;
            if (HasNext) {
                ui_.Message(
                    u"人数が多くて%1番までしか表示出来ませんでした。続きを見るときは『集計の続き』ボタンを押してください。"_s
                        .arg(dno),
                    kInformation);
                break;
            }
        }
    }
    QString total = u"のべ%1人"_s.arg(EssayRows.size());
    if (!EssayRows.empty()) total += u"\t平均 \t"_s + NumberText(EssayAverage());
    grid.AddRow(total);
}

void TotalSheet::ListSample(qint32 dno, const std::vector<EssayHit>& hits) {
    const int q = option.FromQno;
    QStringList refs = RefAnswers(dno);
    for (const EssayHit& hit : hits) {
        if (survey_.Choices(hit.Cno, q).Has(kNumber)) EssaySum += LeadingNumber(hit.essay);
        EssayRow row{dno,       survey_.Samples.IDno(dno), hit.Cno, ChoiceLabel(survey_, q, hit.Cno, false, false),
                     hit.essay, std::exchange(refs, {})};
        QStringList cells{QString::number(row.IDno), row.Choice, row.Essay};
        grid.AddRow((cells + row.Refs).join(u'\t'));
        EssayRows.push_back(std::move(row));
    }
}

// The sample's answers to each reference question.
QStringList TotalSheet::RefAnswers(qint32 dno) const {
    QStringList texts;
    std::array<qint16, kMaxAnswers> answers{};
    for (const int q : RefQno) {
        qint16 count = 0;
        GetAnswers(survey_, dno, q, count, answers.data());
        QStringList labels;
        for (int i = 0; i < count; ++i)
            labels << ChoiceLabel(survey_, q, answers[static_cast<size_t>(i)], false, false);
        texts << labels.join(u", "_s);
    }
    return texts;
}

double TotalSheet::EssayAverage() const {
    return EssayRows.empty() ? 0 : EssaySum / static_cast<double>(EssayRows.size());
}

qint32 TotalSheet::EssayDnoCount() const {
    return std::max(static_cast<qint32>(EssayRows.size()), 1);
}

qint32 TotalSheet::EssayDno() {
    const auto cursor = static_cast<size_t>(essayCursor_);
    if (cursor >= EssayRows.size()) return -1;
    ++essayCursor_;
    return EssayRows[cursor].Dno;
}

}  // namespace quibra
