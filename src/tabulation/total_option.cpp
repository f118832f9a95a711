#include "tabulation/total_option.h"

#include <algorithm>

#include "core/strict_json.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kMaxJsonLines = 15;

void ClearColumns(TotalOption& option) {
    for (int column = 1; column <= kMaxLimitColumns; ++column)
        std::ranges::fill(option.Limits.Column(column), LimitLine{});
    option.LimitCount = 1;
}

// A condition into a column's header and lines; what lies behind them stays zero.
void ReadCondition(const Json& value, const QString& place, std::span<LimitLine> column) {
    JsonFields fields(value, place);
    fields.Read("Mask", column[0].b);
    if (const Json* lines = fields.Find("Lines")) {
        JsonList(*lines, fields.PlaceOf("Lines"), 0, kMaxJsonLines);
        for (size_t i = 0; i < lines->size(); ++i) {
            const QString linePlace = ElementPlace(fields.PlaceOf("Lines"), static_cast<qsizetype>(i));
            const Json& pair = JsonList((*lines)[i], linePlace, 2, 2);
            column[i + 1] = {JsonInteger16(pair[0], linePlace), JsonInteger16(pair[1], linePlace)};
        }
    }
    fields.RefuseOthers();
}

Json Condition(std::span<const LimitLine> column) {
    Json lines = Json::array();
    for (size_t i = 1; i < column.size() && column[i].a != 0; ++i)
        lines.push_back({column[i].a, column[i].b});
    return {{"Mask", column[0].b}, {"Lines", std::move(lines)}};
}

void ReadLimits(JsonFields& fields, TotalOption& option) {
    if (const Json* limits = fields.Find("Limits")) {
        // The whole limit, and at least one individual one.
        JsonList(*limits, u"Limits"_s, 2, kMaxLimitColumns + 1);
        for (size_t column = 0; column < limits->size(); ++column)
            ReadCondition((*limits)[column], ElementPlace(u"Limits"_s, static_cast<qsizetype>(column)),
                          option.Limits.Column(static_cast<int>(column)));
        option.LimitCount = static_cast<qint16>(limits->size() - 1);
    }
    fields.CheckCount("LimitCount", option.LimitCount);
}

}  // namespace

void SetCrossQuestion(TotalOption& option, const Survey& survey, int q) {
    ClearColumns(option);
    option.CrossMode = kCrossQuestion;
    option.CrossQno = static_cast<qint16>(q);
    const int count = survey.Questions[q].ChoiceCount;
    for (int k = 0; k < count; ++k)
        option.Limits(1, k + 1) = {3, PackPosition(q, (k + 1) % count)};
    option.LimitCount = static_cast<qint16>(count);
}

void SetCrossPreLimit(TotalOption& option, const Survey& survey) {
    ClearColumns(option);
    option.CrossMode = kCrossPreLimit;
    int column = 0;
    for (int slot = 0; slot < kPreLimitSlots; ++slot)
        if (survey.PreLimit(1, slot).a != 0)
            std::ranges::copy(survey.PreLimit.Column(slot), option.Limits.Column(++column).begin());
    option.LimitCount = static_cast<qint16>(std::max(column, 1));
}

TotalOption ReadTotalOptionJson(const QByteArray& json, const Survey& survey) {
    const Json object = ParseJson(json);
    JsonFields fields(object, QString());
    TotalOption option;
    const int lastQuestion = survey.QuestionCount - 1;
    fields.Read("Nname", option.Nname);
    fields.Read("TotalKind", option.TotalKind, kTable, kEssayList);
    const bool isTable = option.TotalKind == kTable;
    fields.Read("FromQno", option.FromQno, 0, lastQuestion);
    option.ToQno = option.FromQno;
    fields.Read("ToQno", option.ToQno, isTable ? option.FromQno : 0, lastQuestion);
    fields.Read("Rank", option.Rank, 0, kMaxAnswers);
    if (const Json* limit = fields.Find("ExLimit")) {
        std::array<LimitLine, 16> lines{};
        ReadCondition(*limit, u"ExLimit"_s, lines);
        option.ExLimit = LimitList(LimitColumn(lines));
    }
    ReadLimits(fields, option);
    if (isTable) {
        fields.Read("CrossQno", option.CrossQno, 0, lastQuestion);
        fields.Read("CrossMode", option.CrossMode, kCrossQuestion, kCrossFree);
    } else {
        fields.Read("CrossQno", option.CrossQno, 0, survey.Questions[option.FromQno].ChoiceCount);
        fields.Read("CrossMode", option.CrossMode, kEssayNoCondition, kEssayAny);
    }
    fields.Read("EssayText", option.EssayText);
    fields.Read("NumLow", option.NumLow);
    fields.Read("NumHigh", option.NumHigh);
    fields.Read("CodeLow", option.CodeLow);
    fields.Read("CodeHigh", option.CodeHigh);
    fields.Read("Rough", option.Rough);
    fields.RefuseOthers();
    return option;
}

QByteArray WriteTotalOptionJson(const TotalOption& option) {
    Json limits = Json::array();
    for (int column = 0; column <= option.LimitCount; ++column)
        limits.push_back(Condition(option.Limits.Column(column)));
    Json object;
    object["Nname"] = option.Nname.toStdString();
    object["TotalKind"] = option.TotalKind;
    object["FromQno"] = option.FromQno;
    object["ToQno"] = option.ToQno;
    object["Rank"] = option.Rank;
    object["ExLimit"] = Condition(std::span(option.ExLimit.Data(), static_cast<size_t>(option.ExLimit.Bound()) + 1));
    object["Limits"] = std::move(limits);
    object["LimitCount"] = option.LimitCount;
    object["CrossQno"] = option.CrossQno;
    object["CrossMode"] = option.CrossMode;
    object["EssayText"] = option.EssayText.toStdString();
    object["NumLow"] = option.NumLow;
    object["NumHigh"] = option.NumHigh;
    object["CodeLow"] = option.CodeLow.toStdString();
    object["CodeHigh"] = option.CodeHigh.toStdString();
    object["Rough"] = option.Rough;
    return QByteArray::fromStdString(object.dump(1)) + '\n';
}

}  // namespace quibra
