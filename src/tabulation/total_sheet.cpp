#include "tabulation/total_sheet.h"

#include <QScopeGuard>
#include <algorithm>
#include <optional>

#include "conditions/limit_lists.h"
#include "core/labels.h"
#include "core/numbers.h"
#include "tabulation/table_figures.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr qint32 kReportSamples = 1000;
constexpr int kRoughSteps = 100;
constexpr int kBlankColumnWidth = 50;
constexpr int kHeadingRowHeight = 400;
constexpr int kFixedRowHeight = 100;

// RowCode of a row that carries no choice: negative, unlike that of any choice.
qint16 NoChoiceCode(int q) {
    return static_cast<qint16>(PackPosition(q, 0) - 32768);
}

template <typename Table>
auto& CellOf(Table& table, int L, int row) {
    CheckSubscript(L, static_cast<qint64>(table.size()));
    auto& column = table[static_cast<size_t>(L)];
    CheckSubscript(row, static_cast<qint64>(column.size()));
    return column[static_cast<size_t>(row)];
}

}  // namespace

QString TotalMonitor::PassText(int q, int toQno, int L, int limitCount) {
    return u"質問:Q%1/Q%2まで  限定条件:%3/%4"_s.arg(q).arg(toQno).arg(L + 1).arg(limitCount);
}

QString TotalMonitor::PercentOf(qint32 done, qint32 of) {
    const qint64 percent = of > 0 ? (qint64{200} * done + of) / (qint64{2} * of) : 100;
    return QString::number(percent) + u'%';
}

qint16 TotalView::Flags() const {
    constexpr int kPercentBits[] = {1, 3, 2};
    return static_cast<qint16>(kPercentBits[percent] + (sort ? 4 : 0) + (space ? 8 : 0));
}

TotalSheet::TotalSheet(const Survey& survey, UserInterface& ui, TotalMonitor& monitor, ColumnWidths& widths)
    : survey_(survey), ui_(ui), monitor_(monitor), widths_(widths) {}

void TotalSheet::DoTotal(const TotalOption& newOption) {
    option = newOption;
    grid.SetColumns(4);
    grid.SetRows(2);
    if (option.TotalKind != lastKind_)
        for (int column = 0; column < 4; ++column)
            grid.SetColumnWidth(column, ResultGrid::kDefaultColumnWidth);
    lastKind_ = option.TotalKind;
    option.ExLimit = LimitList(LimitColumn(option.Limits.Column(0)));
    chkTotaled = false;
    ready_ = true;
    RunTotal();
}

void TotalSheet::RunTotal() {
    if (!ready_) return;
    monitor_.Started();
    const auto finish = qScopeGuard([this] { monitor_.Finished(); });
    SaveColumnWidths();
    EssayRows.clear();
    EssaySum = 0;
    ExLimitText = LimitText(survey_, JoinLimits({option.Limits.Column(0)}), false);
    if (option.TotalKind == kEssayList)
        RunEssayList();
    else
        RunTable();
}

// What the user has dragged carries over to the next result.
void TotalSheet::SaveColumnWidths() {
    const auto save = [this](int entry, int column) {
        qint32& saved = widths_.at(static_cast<size_t>(entry));
        const int width = grid.ColumnWidth(column);
        // Both ways are cut to whole numbers: a width nobody has dragged would shrink with every total.
        if (width != ScaledWidth(saved)) saved = static_cast<qint32>(static_cast<float>(width) / FontScale);
    };
    grid.ClearText();
    grid.SetRowHeight(0, ScaledWidth(kFixedRowHeight));
    if (option.TotalKind == kEssayList) {
        for (int column = 0; column < 4; ++column)
            save(column + 5, column);
    } else {
        save(0, 0);
        save(1, 1);
        if ((ViewFlags & 3) == 3) save(2, 2);
    }
}

int TotalSheet::ScaledWidth(int twips) const {
    return static_cast<int>(FontScale * static_cast<float>(twips));
}

void TotalSheet::RunTable() {
    if (!chkTotaled) PlanRows();
    LayoutColumns();
    std::optional<TableCounter> counter;
    for (int L = 0; L < option.LimitCount; ++L) {
        SetLimitColumn(L);
        LimitTexts[L] = LimitText(survey_, JoinLimits({option.Limits.Column(L + 1)}), false);
        // A cancelled total goes on to the next limit, where the first question's walk ends at once.
        for (int q = option.FromQno; q <= option.ToQno; ++q) {
            monitor_.ShowPass(q, option.ToQno, L, option.LimitCount);
            if (!chkTotaled) {
                if (!option.Rough && !counter) counter.emplace(survey_, option);
                CountQuestion(counter ? &*counter : nullptr, q, L);
            }
            if (!chkTotaled || view.sort != chkSorted) OrderRows(q, L);
            monitor_.LetEventsRun();
            if (monitor_.Cancelled()) break;
            ShowBlock(q, L);
        }
    }
    chkTotaled = true;
    chkSorted = view.sort;
}

void TotalSheet::PlanRows() {
    int row = ResultGrid::kFixedRows;
    for (int q = option.FromQno; q <= option.ToQno; ++q) {
        rowStart_[q] = CheckedInt16(row);
        row += survey_.Questions[q].ChoiceCount + kRowsBesideChoices;
        if (row > kMaxRows) {
            const LabelParts parts{.number = true, .name = true, .body = true, .answers = true};
            ui_.Message(QuestionLabel(survey_, q - 1, parts) + u"までしかリストに入りません。"_s, kWarning);
            option.ToQno = static_cast<qint16>(q - 1);
            break;
        }
    }
    rowStart_[option.ToQno + 1] = CheckedInt16(row);
    CheckSubscript(option.LimitCount, kMaxLimitColumns + 1);
    const auto limits = static_cast<size_t>(option.LimitCount) + 1;
    const auto rows = static_cast<size_t>(row) + 2;
    counts_.assign(limits, std::vector<qint32>(rows));
    rowCode_.assign(limits, std::vector<qint16>(rows));
}

void TotalSheet::LayoutColumns() {
    colStart_.assign(static_cast<size_t>(option.LimitCount) + 1, 0);
    LimitTexts = QStringList(option.LimitCount);
    int column = 0;
    for (int L = 0; L < option.LimitCount; ++L) {
        if (view.sort || L == 0) ++column;
        ++column;
        if (view.percent == TotalView::CountsAndPercent) ++column;
        if (view.space) ++column;
        colStart_[static_cast<size_t>(L) + 1] = CheckedInt16(column);
    }
    if (view.space) ++colStart_.back();
    ViewFlags = view.Flags();
    grid.SetRows(RowStart(option.ToQno + 1));
    for (int q = option.FromQno; q <= option.ToQno; ++q)
        grid.SetRowHeight(RowStart(q), ScaledWidth(kHeadingRowHeight));
    grid.SetColumns(ColStart(option.LimitCount));
}

void TotalSheet::SetLimitColumn(int L) {
    int column = ColStart(L);
    const auto next = [&](int twips, CellAlignment alignment) {
        grid.SetColumnWidth(column, ScaledWidth(twips));
        grid.SetAlignment(column, alignment);
        ++column;
    };
    if (L == 0 || view.sort) next(widths_[0], CellAlignment::LeftTop);
    next(widths_[1], CellAlignment::LeftCenter);
    if (view.percent == TotalView::CountsAndPercent) next(widths_[2], CellAlignment::LeftCenter);
    if (view.space) next(kBlankColumnWidth, CellAlignment::LeftCenter);
}

void TotalSheet::CountQuestion(TableCounter* counter, int q, int L) {
    const Figures figures = counter ? CountAll(*counter, q, L) : CountRough(q, L);
    monitor_.ShowPercent(survey_.SampleCount(), survey_.SampleCount());
    const int count = survey_.Questions[q].ChoiceCount;
    const int start = RowStart(q);
    for (int c = 0; c < count; ++c) {
        CellOf(counts_, L, start + kFirstChoiceRow + c) = figures.counts[c];
        CellOf(rowCode_, L, start + kFirstChoiceRow + c) = PackPosition(q, c);
    }
    CellOf(counts_, L, start + kFirstChoiceRow + count) = figures.persons;
    for (const int row : {0, kWholeLimitRow, kLimitRow, kFirstChoiceRow + count + 1})
        CellOf(rowCode_, L, start + row) = NoChoiceCode(q);
}

// The counter works on blocks for the whole table at once; the walk over the samples is what the user sees and stops.
Figures TotalSheet::CountAll(TableCounter& counter, int q, int L) {
    const qint32 count = survey_.SampleCount();
    qint32 visited = 0;
    while (visited < count && ReportWalk(visited)) {
        visited += std::min(kReportSamples, count - visited);
        counter.CountTo(visited);
    }
    return counter.Count(q, L, visited);
}

Figures TotalSheet::CountRough(int q, int L) {
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
bool TotalSheet::ReportWalk(qint32 dno) {
    monitor_.ShowPercent(dno, survey_.SampleCount());
    if (monitor_.Cancelled()) return false;
    monitor_.LetEventsRun();
    return true;
}

void TotalSheet::OrderRows(int q, int L) {
    const int first = RowStart(q) + kFirstChoiceRow;
    const int count = survey_.Questions[q].ChoiceCount;
    // The figures by choice, whatever order the rows are in.
    std::vector<qint32> figures(kMaxChoices);
    for (int i = 0; i < count; ++i)
        figures[static_cast<size_t>(PositionAnswer(RowCode(L, first + i)))] = Counts(L, first + i);
    figures.resize(static_cast<size_t>(count));
    int row = first;
    for (const int c : RowOrder(figures, view.sort)) {
        CellOf(rowCode_, L, row) = PackPosition(q, c);
        CellOf(counts_, L, row) = figures[static_cast<size_t>(c)];
        ++row;
    }
}

void TotalSheet::ShowBlock(int q, int L) {
    monitor_.Redraw(false);
    const auto redraw = qScopeGuard([this] { monitor_.Redraw(true); });
    try {
        WriteBlock(q, L);
    } catch (const RuntimeError&) {
        ui_.Message(
            u"結果表示の際にエラーが起きました。集計結果ファイルが現在のデータと対応していない可能性があります。"
            u"正しい集計結果ファイルを読み込むか、集計をやり直してください。"_s,
            kOkOnly);
    }
}

void TotalSheet::WriteBlock(int q, int L) {
    const int start = RowStart(q);
    const int rows = survey_.Questions[q].ChoiceCount + 1;
    int column = ColStart(L);
    if (L == 0) {
        grid.SetText(column, start, BlockHeading(q));
        grid.SetText(column + 1, start + kWholeLimitRow, ExLimitText);
        grid.SetText(column, start + kWholeLimitRow, u"[全体の限定]"_s);
    }
    if (L == 0 || view.sort) {
        grid.SetText(column, start + kLimitRow, u"[個別の限定]"_s);
        for (int i = 0; i < rows; ++i)
            grid.SetText(column, start + kFirstChoiceRow + i, RowLabel(L, q, i));
        ++column;
    }
    grid.SetText(column, start + kLimitRow, LimitTexts.at(L));
    int row = start + kFirstChoiceRow;
    for (const BlockRow& figures : Block(q, L)) {
        int place = column;
        if (view.ShowsCounts()) grid.SetText(place++, row, QString::number(figures.Figure));
        if (view.ShowsPercent()) grid.SetText(place, row, PercentText(figures.Share));
        ++row;
    }
}

QString TotalSheet::BlockHeading(int q) const {
    const QString label = QuestionLabel(survey_, q, {.body = true, .answers = true});
    return option.Rank > 0 ? label + u"(%1位)"_s.arg(option.Rank) : label;
}

QString TotalSheet::RowLabel(int L, int q, int i) const {
    if (i == survey_.Questions[q].ChoiceCount) return option.Rough ? u"[粗集計人数]"_s : u"[人数]"_s;
    int rowQuestion, c;
    UnpackPosition(RowCode(L, RowStart(q) + kFirstChoiceRow + i), rowQuestion, c);
    return ChoiceLabel(survey_, rowQuestion, c, false, false);
}

std::vector<TotalSheet::BlockRow> TotalSheet::Block(int q, int L) const {
    const int count = survey_.Questions[q].ChoiceCount;
    const int first = RowStart(q) + kFirstChoiceRow;
    const qint32 persons = Counts(L, first + count);
    PercentColumn percent(persons);
    std::vector<BlockRow> rows;
    for (int row = first; row < first + count; ++row)
        rows.push_back({RowCode(L, row), Counts(L, row), percent.Add(Counts(L, row))});
    rows.push_back({RowCode(L, first + count), persons, percent.Sum()});
    return rows;
}

int TotalSheet::RowStart(int q) const {
    return rowStart_[q];
}

int TotalSheet::ColStart(int L) const {
    CheckSubscript(L, static_cast<qint64>(colStart_.size()));
    return colStart_[static_cast<size_t>(L)];
}

qint32 TotalSheet::Counts(int L, int row) const {
    return CellOf(counts_, L, row);
}

qint16 TotalSheet::RowCode(int L, int row) const {
    return CellOf(rowCode_, L, row);
}

}  // namespace quibra
