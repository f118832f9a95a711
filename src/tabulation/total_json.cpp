#include "tabulation/total_json.h"

#include <nlohmann/json.hpp>
#include <span>

#include "core/labels.h"
#include "tabulation/table_figures.h"

namespace quibra {

namespace {

using Json = nlohmann::ordered_json;

Json BlockLimitJson(const Survey& survey, const std::vector<TotalSheet::BlockRow>& block) {
    const TotalSheet::BlockRow& total = block.back();
    Json rows = Json::array();
    for (const TotalSheet::BlockRow& row : std::span(block).first(block.size() - 1)) {
        int q, c;
        UnpackPosition(row.RowCode, q, c);
        rows.push_back({{"Cno", c},
                        {"Text", ChoiceLabel(survey, q, c, false, false).toStdString()},
                        {"Count", row.Figure},
                        {"Percent", PercentText(row.Share).toStdString()}});
    }
    return {
        {"Persons", total.Figure}, {"PercentSum", PercentText(total.Share).toStdString()}, {"Rows", std::move(rows)}};
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

QByteArray WriteTotalJson(const Survey& survey, const TotalSheet& sheet) {
    const TotalOption& option = sheet.option;
    Json blocks = Json::array();
    for (int q = option.FromQno; q <= option.ToQno; ++q) {
        Json limits = Json::array();
        for (int L = 0; L < option.LimitCount; ++L)
            limits.push_back(BlockLimitJson(survey, sheet.Block(q, L)));
        blocks.push_back({{"Qno", q}, {"Label", sheet.BlockHeading(q).toStdString()}, {"Limits", std::move(limits)}});
    }
    return JsonBytes({{"FromQno", option.FromQno},
                      {"ToQno", option.ToQno},
                      {"Rank", option.Rank},
                      {"Rough", option.Rough},
                      {"ExLimitText", sheet.ExLimitText.toStdString()},
                      {"LimitTexts", TextArray(sheet.LimitTexts)},
                      {"Blocks", std::move(blocks)}});
}

QByteArray WriteEssayJson(const TotalSheet& sheet) {
    Json rows = Json::array();
    for (const TotalSheet::EssayRow& row : sheet.EssayRows)
        rows.push_back({{"Dno", row.Dno},
                        {"IDno", row.IDno},
                        {"Cno", row.Cno},
                        {"Choice", row.Choice.toStdString()},
                        {"Essay", row.Essay.toStdString()},
                        {"Refs", TextArray(row.Refs)}});
    return JsonBytes({{"Rows", std::move(rows)},
                      {"Count", sheet.EssayRows.size()},
                      {"Average", sheet.EssayAverage()},
                      {"NextDno", sheet.HasNext ? sheet.FromDno : -1}});
}

}  // namespace quibra
