#include "tabulation/total_run.h"

#include <QScopeGuard>
#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "conditions/limit_lists.h"
#include "core/answer_store.h"
#include "core/labels.h"
#include "core/numbers.h"
#include "tabulation/table_figures.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr qint32 kReportSamples = 1000;
constexpr qint32 kReportEssaySamples = 50;
constexpr int kRoughSteps = 100;
constexpr int kRowsBesideList = 5;

// RowCode of a row that carries no choice: negative, unlike that of any choice.
qint16 NoChoiceCode(int q) {
    return static_cast<qint16>(PackPosition(q, 0) - 32768);
}

}  // namespace

QString TotalMonitor::PassText(int q, int toQno, int L, int limitCount) {
    return u"質問:Q%1/Q%2まで  限定条件:%3/%4"_s.arg(q).arg(toQno).arg(L + 1).arg(limitCount);
}

QString TotalMonitor::PercentOf(qint32 done, qint32 of) {
    const qint64 percent = of > 0 ? (qint64{200} * done + of) / (qint64{2} * of) : 100;
    return QString::number(percent) + u'%';
}

TotalRun::TotalRun(const Survey& survey, UserInterface& ui, TotalMonitor& monitor, TotalDisplay& display,
                   TotalResult& result)
    : survey_(survey), ui_(ui), monitor_(monitor), display_(display), result_(result) {}

void TotalRun::Run(bool sort) {
    const TotalOption& option = result_.option;
    result_.EssayRows.clear();
    result_.EssaySum = 0;
    result_.ExLimitText = LimitText(survey_, JoinLimits({option.Limits.Column(0)}), false);
    if (option.TotalKind == kEssayList)
        RunEssayList();
    else
        RunTable(sort);
}

void TotalRun::RunTable(bool sort) {
    TotalOption& option = result_.option;
    if (!result_.chkTotaled) PlanRows();
    result_.LimitTexts = QStringList(option.LimitCount);
    display_.ShowPlan();
    std::optional<TableCounter> counter;
    for (int L = 0; L < option.LimitCount; ++L) {
        display_.ShowLimit(L);
        result_.LimitTexts[L] = LimitText(survey_, JoinLimits({option.Limits.Column(L + 1)}), false);
        for (int q = option.FromQno; q <= option.ToQno; ++q) {
            monitor_.ShowPass(q, option.ToQno, L, option.LimitCount);
            if (!result_.chkTotaled) {
                if (!option.Rough && !counter) counter.emplace(survey_, option);
                CountQuestion(counter ? &*counter : nullptr, q, L);
            }
            if (!result_.chkTotaled || sort != result_.chkSorted) OrderRows(q, L, sort);
            monitor_.LetEventsRun();
            if (monitor_.Cancelled()) break;
            display_.ShowBlock(q, L);
        }
    }
    result_.chkTotaled = true;
    result_.chkSorted = sort;
}

void TotalRun::PlanRows() {
    TotalOption& option = result_.option;
    int row = kFirstTableRow;
    for (int q = option.FromQno; q <= option.ToQno; ++q) {
        result_.RowStart[q] = CheckedInt16(row);
        row += survey_.Questions[q].ChoiceCount + kRowsBesideChoices;
        if (row > kMaxTableRows) {
            const LabelParts parts{.number = true, .name = true, .body = true, .answers = true};
            ui_.Message(QuestionLabel(survey_, q - 1, parts) + u"までしかリストに入りません。"_s, kWarning);
            option.ToQno = static_cast<qint16>(q - 1);
            break;
        }
    }
    result_.RowStart[option.ToQno + 1] = CheckedInt16(row);
    CheckSubscript(option.LimitCount, kMaxLimitColumns + 1);
    result_.Counts.Reset(option.LimitCount + 1, row + 2);
    result_.RowCode.Reset(option.LimitCount + 1, row + 2);
}

void TotalRun::CountQuestion(TableCounter* counter, int q, int L) {
    const Figures figures = counter ? CountAll(*counter, q, L) : CountRough(q, L);
    monitor_.ShowPercent(survey_.SampleCount(), survey_.SampleCount());
    const int count = survey_.Questions[q].ChoiceCount;
    const int start = result_.RowStart[q];
    for (int c = 0; c < count; ++c) {
        result_.Counts(L, start + kFirstChoiceRow + c) = figures.counts[c];
        result_.RowCode(L, start + kFirstChoiceRow + c) = PackPosition(q, c);
    }
    result_.Counts(L, start + kFirstChoiceRow + count) = figures.persons;
    for (const int row : {0, kWholeLimitRow, kLimitRow, kFirstChoiceRow + count + 1})
        result_.RowCode(L, start + row) = NoChoiceCode(q);
}

// The counter works on blocks for the whole table at once; the walk over the samples is what the user sees and stops.
Figures TotalRun::CountAll(TableCounter& counter, int q, int L) {
    const qint32 count = survey_.SampleCount();
    qint32 visited = 0;
    while (visited < count && ReportWalk(visited)) {
        visited += std::min(kReportSamples, count - visited);
        counter.CountTo(visited);
    }
    return counter.Count(q, L, visited);
}

Figures TotalRun::CountRough(int q, int L) {
    const TotalOption& option = result_.option;
    const LimitList list = JoinLimits({survey_.QLimit.Column(q), option.Limits.Column(0), option.Limits.Column(L + 1)});
    const qint32 count = survey_.SampleCount();
    Figures figures;
    for (qint64 dno = 0; dno < count;
         dno += static_cast<qint64>(random_.generateDouble() * (count / kRoughSteps)) + 1) {
        const auto place = static_cast<qint32>(dno);
        if (place % kReportSamples == 0 && !ReportWalk(place)) break;
        figures.persons += VerstTotalC(list.Data(), survey_.QIdx.Data(), survey_.Samples.PreLimitBits(place),
                                       survey_.Samples.Bits(place), q, figures.counts, option.Rank);
    }
    return figures;
}

// False when the walk is to end in front of sample `dno`.
bool TotalRun::ReportWalk(qint32 dno) {
    monitor_.ShowPercent(dno, survey_.SampleCount());
    if (monitor_.Cancelled()) return false;
    monitor_.LetEventsRun();
    return true;
}

void TotalRun::OrderRows(int q, int L, bool sort) {
    const int first = result_.RowStart[q] + kFirstChoiceRow;
    const int count = survey_.Questions[q].ChoiceCount;
    // The figures by choice, whatever order the rows are in.
    std::vector<qint32> figures(kMaxChoices);
    for (int i = 0; i < count; ++i)
        figures[static_cast<size_t>(PositionAnswer(result_.RowCode(L, first + i)))] = result_.Counts(L, first + i);
    figures.resize(static_cast<size_t>(count));
    int row = first;
    for (const int c : RowOrder(figures, sort)) {
        result_.RowCode(L, row) = PackPosition(q, c);
        result_.Counts(L, row) = figures[static_cast<size_t>(c)];
        ++row;
    }
}

void TotalRun::RunEssayList() {
    display_.ShowEssayHeads();
    result_.Counts.Reset(0, 0);
    result_.RowCode.Reset(0, 0);
    if (survey_.SampleCount() < 1) return;
    monitor_.Redraw(false);
    {
        const auto redraw = qScopeGuard([this] { monitor_.Redraw(true); });
        ListEssays();
    }
    display_.ShowEssayTotal();
}

void TotalRun::ListEssays() {
    const TotalOption& option = result_.option;
    const LimitList list = JoinLimits({survey_.QLimit.Column(option.FromQno), option.Limits.Column(0)});
    const qint32 count = survey_.SampleCount();
    std::vector<EssayHit> hits;
    for (qint32 dno = result_.FromDno; dno < count; ++dno) {
        if (dno % kReportEssaySamples == 0) {
            monitor_.ShowPercent(dno, count);
            monitor_.Redraw(true);
            monitor_.Redraw(false);
            monitor_.LetEventsRun();
            if (monitor_.Cancelled()) return;
        }
        if (EssayMatch(survey_, dno, option, list, hits)) ListSample(dno, hits);
        result_.HasNext =
            dno < count - 1 && static_cast<int>(result_.EssayRows.size()) + kRowsBesideList >= kMaxEssayRows;
        result_.FromDno = result_.HasNext ? dno + 1 : 0;
        if (result_.HasNext) {
            ui_.Message(
                u"人数が多くて%1番までしか表示出来ませんでした。続きを見るときは『集計の続き』ボタンを押してください。"_s
                    .arg(dno),
                kInformation);
            return;
        }
    }
}

void TotalRun::ListSample(qint32 dno, const std::vector<EssayHit>& hits) {
    const int q = result_.option.FromQno;
    QStringList refs = RefAnswers(dno);
    for (const EssayHit& hit : hits) {
        if (survey_.Choices(hit.Cno, q).Has(kNumber)) result_.EssaySum += LeadingNumber(hit.essay);
        result_.EssayRows.push_back({dno, survey_.Samples.IDno(dno), hit.Cno,
                                     ChoiceLabel(survey_, q, hit.Cno, false, false), hit.essay,
                                     std::exchange(refs, {})});
        display_.ShowEssay(result_.EssayRows.back());
    }
}

// The sample's answers to each reference question.
QStringList TotalRun::RefAnswers(qint32 dno) const {
    QStringList texts;
    std::array<qint16, kMaxAnswers> answers{};
    for (const int q : result_.RefQno) {
        qint16 count = 0;
        GetAnswers(survey_, dno, q, count, answers.data());
        QStringList labels;
        for (int i = 0; i < count; ++i)
            labels << ChoiceLabel(survey_, q, answers[static_cast<size_t>(i)], false, false);
        texts << labels.join(u", "_s);
    }
    return texts;
}

}  // namespace quibra
