#include "tabulation/total_json.h"

#include <nlohmann/json.hpp>
#include <span>

#include "core/labels.h"
#include "tabulation/table_figures.h"

namespace quibra {

namespace {

using Json = nlohmann::ordered_json;

// The figure that the cells show, without its sign.
double Percent(float share) {
    return PercentText(share).chopped(1).toDouble();
}

Json BlockLimitJson(const Survey& survey, const std::vector<BlockRow>& block) {
    const BlockRow& total = block.back();
    Json rows = Json::array();
    for (const BlockRow& row : std::span(block).first(block.size() - 1)) {
        int q, c;
        UnpackPosition(row.RowCode, q, c);
        rows.push_back({{"Cno", c},
                        {"Text", ChoiceLabel(survey, q, c, false, false).toStdString()},
                        {"Count", row.Figure},
                        {"Percent", Percent(row.Share)}});
    }
    return {{"Persons", total.Figure}, {"PercentSum", Percent(total.Share)}, {"Rows", std::move(rows)}};
}

Json TextArray(const QStringList& texts) {
    Json array = Json::array();
    for (const QString& text : texts)
        array.push_back(text.toStdString());
    return array;
}

QByteArray JsonBytes(const Json& json) {
    return QByteArray::fromStdString(json.dump(1)) + '\n';
}

}  // namespace

QByteArray WriteTotalJson(const Survey& survey, const TotalResult& result) {
    const TotalOption& option = result.option;
    Json blocks = Json::array();
    for (int q = option.FromQno; q <= option.ToQno; ++q) {
        Json limits = Json::array();
        for (int L = 0; L < option.LimitCount; ++L)
            limits.push_back(BlockLimitJson(survey, BlockRows(survey, result, q, L)));
        blocks.push_back(
            {{"Qno", q}, {"Label", BlockHeading(survey, result, q).toStdString()}, {"Limits", std::move(limits)}});
    }
    return JsonBytes({{"FromQno", option.FromQno},
                      {"ToQno", option.ToQno},
                      {"Rank", option.Rank},
                      {"Rough", option.Rough},
                      {"ExLimitText", result.ExLimitText.toStdString()},
                      {"LimitTexts", TextArray(result.LimitTexts)},
                      {"Blocks", std::move(blocks)}});
}

QByteArray WriteEssayJson(const TotalResult& result) {
    Json rows = Json::array();
    for (const EssayRow& row : result.EssayRows)
        rows.push_back({{"Dno", row.Dno},
                        {"IDno", row.IDno},
                        {"Cno", row.Cno},
                        {"Choice", row.Choice.toStdString()},
                        {"Essay", row.Essay.toStdString()},
                        {"Refs", TextArray(row.Refs)}});
    return JsonBytes({{"Rows", std::move(rows)},
                      {"Count", result.EssayRows.size()},
                      {"Average", result.EssayAverage()},
                      {"NextDno", result.HasNext ? result.FromDno : -1}});
}

}  // namespace quibra
