#include "tabulation/total_sheet.h"

#include <QScopeGuard>

#include "conditions/limit_lists.h"
#include "core/labels.h"
#include "core/numbers.h"
#include "tabulation/table_figures.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kBlankColumnWidth = 50;
constexpr int kHeadingRowHeight = 400;
constexpr int kFixedRowHeight = 100;
constexpr int kEssayPresetRows = 200;
constexpr int kEssaySpareColumns = 7;
constexpr int kEssayLabelRowHeight = 600;
constexpr int kFirstRefColumn = 3;

static_assert(kFirstTableRow == ResultGrid::kFixedRows);

}  // namespace

qint16 TotalView::Flags() const {
    constexpr int kPercentBits[] = {1, 3, 2};
    return static_cast<qint16>(kPercentBits[percent] + (sort ? 4 : 0) + (space ? 8 : 0));
}

TotalSheet::TotalSheet(const Survey& survey, UserInterface& ui, TotalMonitor& monitor, ColumnWidths& widths)
    : survey_(survey), ui_(ui), monitor_(monitor), widths_(widths), run_(survey, ui, monitor, *this, result) {}

void TotalSheet::DoTotal(const TotalOption& option) {
    SaveColumnWidths();  // those of the kind that stood here before
    result.option = option;
    grid.SetColumns(4);
    grid.SetRows(2);
    if (option.TotalKind != lastKind_)
        for (int column = 0; column < 4; ++column)
            grid.SetColumnWidth(column, ResultGrid::kDefaultColumnWidth);
    lastKind_ = option.TotalKind;
    result.option.ExLimit = LimitList(LimitColumn(option.Limits.Column(0)));
    result.chkTotaled = false;
    ready_ = true;
    RunTotal();
}

void TotalSheet::RunTotal() {
    if (!ready_) return;
    monitor_.Started();
    const auto finish = qScopeGuard([this] { monitor_.Finished(); });
    SaveColumnWidths();
    grid.ClearText();
    grid.SetRowHeight(0, ScaledWidth(kFixedRowHeight));
    run_.Run(view.sort);
}

// What the user has dragged carries over to the next result.
void TotalSheet::SaveColumnWidths() {
    const auto save = [this](int entry, int column) {
        if (column >= grid.Columns() || !grid.IsDragged(column)) return;
        widths_.at(static_cast<size_t>(entry)) =
            static_cast<qint32>(static_cast<float>(grid.ColumnWidth(column)) / FontScale);
    };
    if (result.option.TotalKind == kEssayList) {
        for (int column = 0; column < 4; ++column)
            save(column + 5, column);
    } else {
        save(0, 0);
        save(1, 1);
        if ((ViewFlags & 3) == 3) save(2, 2);
    }
}

bool TotalSheet::IsDragged(int column, int entry) const {
    const auto place = static_cast<size_t>(entry);
    return grid.IsDragged(column) || widths_.at(place) != kDefaultColumnWidths.at(place);
}

int TotalSheet::ScaledWidth(int twips) const {
    return static_cast<int>(FontScale * static_cast<float>(twips));
}

int TotalSheet::ColStart(int L) const {
    CheckSubscript(L, static_cast<qint64>(colStart_.size()));
    return colStart_[static_cast<size_t>(L)];
}

void TotalSheet::ShowPlan() {
    const TotalOption& option = result.option;
    LayoutColumns();
    grid.SetRows(result.RowStart[option.ToQno + 1]);
    for (int q = option.FromQno; q <= option.ToQno; ++q)
        grid.SetRowHeight(result.RowStart[q], ScaledWidth(kHeadingRowHeight));
    grid.SetColumns(ColStart(option.LimitCount));
}

void TotalSheet::LayoutColumns() {
    const int limits = result.option.LimitCount;
    colStart_.assign(static_cast<size_t>(limits) + 1, 0);
    int column = 0;
    for (int L = 0; L < limits; ++L) {
        if (view.sort || L == 0) ++column;
        ++column;
        if (view.percent == TotalView::CountsAndPercent) ++column;
        if (view.space) ++column;
        colStart_[static_cast<size_t>(L) + 1] = CheckedInt16(column);
    }
    if (view.space) ++colStart_.back();
    ViewFlags = view.Flags();
}

void TotalSheet::ShowLimit(int L) {
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
    const int start = result.RowStart[q];
    const int rows = survey_.Questions[q].ChoiceCount + 1;
    int column = ColStart(L);
    if (L == 0) {
        grid.SetText(column, start, BlockHeading(survey_, result, q));
        grid.SetText(column + 1, start + kWholeLimitRow, result.ExLimitText);
        grid.SetText(column, start + kWholeLimitRow, u"[全体の限定]"_s);
    }
    if (L == 0 || view.sort) {
        grid.SetText(column, start + kLimitRow, u"[個別の限定]"_s);
        for (int i = 0; i < rows; ++i)
            grid.SetText(column, start + kFirstChoiceRow + i, RowLabel(survey_, result, L, q, i));
        ++column;
    }
    grid.SetText(column, start + kLimitRow, result.LimitTexts.at(L));
    int row = start + kFirstChoiceRow;
    for (const BlockRow& figures : BlockRows(survey_, result, q, L)) {
        int place = column;
        if (view.ShowsCounts()) grid.SetText(place++, row, QString::number(figures.Figure));
        if (view.ShowsPercent()) grid.SetText(place, row, PercentText(figures.Share));
        ++row;
    }
}

void TotalSheet::ShowEssayHeads() {
    const TotalOption& option = result.option;
    WriteEssayColumns();
    const LabelParts parts{.name = true, .limit = true, .body = true, .answers = true};
    grid.SetText(0, 1, QuestionLabel(survey_, option.FromQno, parts));
    grid.SetText(0, 2, u"[全体の限定]"_s);
    const LimitList limit = JoinLimits({survey_.QLimit.Column(option.FromQno), option.Limits.Column(0)});
    grid.SetText(1, 2, LimitText(survey_, limit, false));
    if (option.Rank > 0) grid.SetText(2, 2, QString::number(option.Rank) + u'位');
    // Rows that are preset stay only where there is nobody to list.
    if (survey_.SampleCount() > 0) grid.SetRows(kEssayHeadRow + 1);
}

void TotalSheet::WriteEssayColumns() {
    const int refCount = static_cast<int>(result.RefQno.size());
    grid.SetRows(kEssayPresetRows);
    grid.SetColumns(result.option.LimitCount + refCount + kEssaySpareColumns);
    grid.SetRowHeight(1, kEssayLabelRowHeight);
    const QString heads[] = {u"ＩＤ"_s, u"選択肢"_s, u"記述文"_s};
    for (int column = 0; column < kFirstRefColumn; ++column) {
        grid.SetColumnWidth(column, ScaledWidth(widths_.at(static_cast<size_t>(column) + 5)));
        grid.SetText(column, kEssayHeadRow, heads[column]);
    }
    // Choices keep the grid's own alignment; long texts and the first reference start at the top.
    for (const int column : {0, 2, 3})
        grid.SetAlignment(column, CellAlignment::LeftTop);
    if (result.option.LimitCount >= 1) grid.SetText(kFirstRefColumn, 2, u"参照回答"_s);
    for (int i = 0; i < refCount; ++i) {
        const int q = result.RefQno[static_cast<size_t>(i)];
        grid.SetColumnWidth(kFirstRefColumn + i, ScaledWidth(widths_[9]));
        grid.SetText(kFirstRefColumn + i, kEssayHeadRow, QuestionLabel(survey_, q, {.body = true, .answers = true}));
    }
}

void TotalSheet::ShowEssay(const EssayRow& row) {
    const QStringList cells{QString::number(row.IDno), row.Choice, row.Essay};
    grid.AddRow((cells + row.Refs).join(u'\t'));
}

void TotalSheet::ShowEssayTotal() {
    QString total = u"のべ%1人"_s.arg(result.EssayRows.size());
    if (!result.EssayRows.empty()) total += u"\t平均 \t"_s + NumberText(result.EssayAverage());
    grid.AddRow(total);
}

int TotalSheet::LimitAt(int column) const {
    int L = 0;
    while (ColStart(L + 1) <= column)
        ++L;
    return L;
}

std::optional<qint32> TotalSheet::PersonAt(int column, int row) const {
    const bool listed = row > kEssayHeadRow && row < grid.Rows() - 1;  // the last row counts the others
    if (result.option.TotalKind != kEssayList || column != 0 || !listed) return std::nullopt;
    const QString& id = grid.Text(column, row);
    if (id.isEmpty()) return std::nullopt;
    return RoundToInt32(LeadingNumber(id));
}

}  // namespace quibra
