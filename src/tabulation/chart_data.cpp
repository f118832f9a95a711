#include "tabulation/chart_data.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "core/labels.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kLongestText = 80;
constexpr int kFewestLabels = 2;

int ChoiceOf(const TotalResult& result, int L, int row) {
    return PositionAnswer(result.RowCode(L, row));
}

// The choices that someone gave in one of the limits, or the first ones up to two.
std::vector<bool> UsedChoices(const TotalResult& result, int count, const std::vector<int>& rows, int L0, int L1) {
    std::vector<bool> used(static_cast<size_t>(count));
    for (int L = L0; L <= L1; ++L)
        for (const int row : rows)
            if (result.Counts(L, row) > 0) used.at(static_cast<size_t>(ChoiceOf(result, L, row))) = true;
    auto left = kFewestLabels - std::count(used.begin(), used.end(), true);
    for (size_t c = 0; c < used.size() && left > 0; ++c) {
        if (used[c]) continue;
        used[c] = true;
        --left;
    }
    return used;
}

QString SharedLabel(const QString& label, qint32 figure, qint32 persons) {
    if (persons == 0) throw RuntimeError(kErrorOverflow);
    return label + QString::number(std::floor(double(figure) / persons * 100 + 0.5)) + u'%';
}

}  // namespace

std::optional<ChartTable> SendChart(const Survey& survey, const TotalResult& result, const ChartOrder& order, int row,
                                    int L, LastChart& last) {
    if (result.option.TotalKind != kTable || !result.chkTotaled) return std::nullopt;
    const int L0 = order.oneColumn ? L : 0;
    const int L1 = order.oneColumn ? L : result.option.LimitCount - 1;
    if (result.RowCode(0, row) < 0) return std::nullopt;
    int q, c;
    UnpackPosition(result.RowCode(0, row), q, c);
    if (c < 1 || (q == last.LastGraphQ && (!order.oneColumn || L0 == last.LastGraphL))) return std::nullopt;
    last = {static_cast<qint16>(q), static_cast<qint16>(L0)};
    while (result.RowCode(0, row) >= 0)
        --row;
    ++row;

    ChartTable table;
    table.IsPercent = order.percent;
    table.Title = QuestionLabel(survey, q, {.body = true, .answers = true});
    if (L0 == L1 && result.LimitTexts.at(L0) != u"条件なし") table.Title += u'[' + result.LimitTexts.at(L0) + u']';
    table.Title.truncate(kLongestText);

    const int count = survey.Questions[q].ChoiceCount;
    std::vector<int> rows;
    for (int i = 0; i < count; ++i)
        rows.push_back(row + (order.reverse ? count - 1 - i : i));
    const std::vector<bool> used = UsedChoices(result, count, rows, L0, L1);
    // Places go by the first limit's order of choices: in a sorted table others have other ones.
    std::vector<size_t> position(used.size());
    for (const int place : rows) {
        const int choice = ChoiceOf(result, 0, place);
        if (!used.at(static_cast<size_t>(choice))) continue;
        QString label = ChoiceLabel(survey, q, choice, false, false);
        if (order.labelPercent) label = SharedLabel(label, result.Counts(0, place), result.Counts(0, row + count));
        position[static_cast<size_t>(choice)] = static_cast<size_t>(table.Labels.size());
        table.Labels << label.left(kLongestText);
    }
    for (int limit = L0; limit <= L1; ++limit) {
        ChartTable::Row values{result.LimitTexts.at(limit).left(kLongestText),
                               std::vector<double>(static_cast<size_t>(table.Labels.size()))};
        const qint32 persons = result.Counts(limit, row + count);
        for (const int place : rows) {
            const auto choice = static_cast<size_t>(ChoiceOf(result, limit, place));
            if (!used.at(choice)) continue;
            const double figure = result.Counts(limit, place);
            values.Values[position[choice]] = !order.percent ? figure : persons < 1 ? 0 : figure / persons * 100;
        }
        table.Rows.push_back(std::move(values));
    }
    return table;
}

QByteArray WriteChartJson(const ChartTable& table) {
    using Json = nlohmann::ordered_json;
    const auto number = [](double value) {
        return value == std::floor(value) ? Json(static_cast<qint64>(value)) : Json(value);
    };
    Json heads = Json::array({""});
    for (const QString& label : table.Labels)
        heads.push_back(label.toStdString());
    Json data = Json::array({heads});
    for (const ChartTable::Row& row : table.Rows) {
        Json line = Json::array({row.Name.toStdString()});
        for (const double value : row.Values)
            line.push_back(number(value));
        data.push_back(std::move(line));
    }
    const Json chart = {{"Title", table.Title.toStdString()}, {"Data", std::move(data)}};
    return QByteArray::fromStdString(chart.dump(1, ' ', false, Json::error_handler_t::replace)) + '\n';
}

}  // namespace quibra
