#include "tabulation/total_option.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kMinInt16 = std::numeric_limits<qint16>::min();
constexpr int kMaxInt16 = std::numeric_limits<qint16>::max();
constexpr int kMaxJsonLines = 15;

void ClearColumns(TotalOption& option) {
    for (int column = 1; column <= kMaxLimitColumns; ++column)
        std::ranges::fill(option.Limits.Column(column), LimitLine{});
    option.LimitCount = 1;
}

[[noreturn]] void Refuse(int number, const QString& key, const QString& what) {
    throw RuntimeError(number, u"%1: %2"_s.arg(key, what));
}

int ReadInteger(const Json& value, const QString& key, int low, int high) {
    if (!value.is_number_integer()) Refuse(kErrorTypeMismatch, key, u"整数ではありません。"_s);
    // A JSON integer above the signed range would turn negative on the way.
    const bool huge = value.is_number_unsigned() && value.get<quint64>() > std::numeric_limits<qint32>::max();
    const qint64 number = huge ? std::numeric_limits<qint64>::max() : value.get<qint64>();
    if (number < low || number > high)
        Refuse(kErrorSubscript, key, u"%1 から %2 までの数ではありません。"_s.arg(low).arg(high));
    return static_cast<int>(number);
}

// A condition into a column's header and lines; what lies behind them stays zero.
void ReadCondition(const Json& value, const QString& key, std::span<LimitLine> column) {
    if (!value.is_object()) Refuse(kErrorTypeMismatch, key, u"Mask と Lines を持つオブジェクトではありません。"_s);
    for (const auto& [name, part] : value.items()) {
        const QString partKey = key + u'.' + QString::fromStdString(name);
        if (name == "Mask") {
            column[0].b = static_cast<qint16>(ReadInteger(part, partKey, kMinInt16, kMaxInt16));
        } else if (name == "Lines") {
            if (!part.is_array()) Refuse(kErrorTypeMismatch, partKey, u"配列ではありません。"_s);
            if (part.size() > kMaxJsonLines)
                Refuse(kErrorSubscript, partKey, u"%1 行を超えています。"_s.arg(kMaxJsonLines));
            for (size_t i = 0; i < part.size(); ++i) {
                const QString lineKey = u"%1[%2]"_s.arg(partKey).arg(i);
                if (!part[i].is_array() || part[i].size() != 2)
                    Refuse(kErrorTypeMismatch, lineKey, u"[a, b] ではありません。"_s);
                column[i + 1].a = static_cast<qint16>(ReadInteger(part[i][0], lineKey, kMinInt16, kMaxInt16));
                column[i + 1].b = static_cast<qint16>(ReadInteger(part[i][1], lineKey, kMinInt16, kMaxInt16));
            }
        } else {
            Refuse(kErrorTypeMismatch, partKey, u"知らない項目です。"_s);
        }
    }
}

Json Condition(std::span<const LimitLine> column) {
    Json lines = Json::array();
    for (size_t i = 1; i < column.size() && column[i].a != 0; ++i)
        lines.push_back({column[i].a, column[i].b});
    return {{"Mask", column[0].b}, {"Lines", std::move(lines)}};
}

// The members of one JSON object, each taken once; what nobody asked for is refused at the end.
class Members {
  public:
    explicit Members(const Json& object) : object_(object) {}

    const Json* Find(const char* key) {
        known_.insert(key);
        const auto found = object_.find(key);
        return found == object_.end() ? nullptr : &*found;
    }
    void Integer(const char* key, qint16& field, int low, int high) {
        if (const Json* value = Find(key))
            field = static_cast<qint16>(ReadInteger(*value, QString::fromUtf8(key), low, high));
    }
    void Number(const char* key, double& field) {
        const Json* value = Find(key);
        if (value && !value->is_number()) Refuse(kErrorTypeMismatch, QString::fromUtf8(key), u"数ではありません。"_s);
        if (value) field = value->get<double>();
    }
    void Text(const char* key, QString& field) {
        const Json* value = Find(key);
        if (value && !value->is_string())
            Refuse(kErrorTypeMismatch, QString::fromUtf8(key), u"文字列ではありません。"_s);
        if (value) field = QString::fromStdString(value->get_ref<const std::string&>());
    }
    void Boolean(const char* key, bool& field) {
        const Json* value = Find(key);
        if (value && !value->is_boolean())
            Refuse(kErrorTypeMismatch, QString::fromUtf8(key), u"true でも false でもありません。"_s);
        if (value) field = value->get<bool>();
    }
    void RefuseOthers() const {
        for (const auto& [name, value] : object_.items())
            if (!known_.contains(name))
                Refuse(kErrorTypeMismatch, QString::fromStdString(name), u"知らない項目です。"_s);
    }

  private:
    const Json& object_;
    std::set<std::string> known_;
};

void ReadLimits(Members& members, TotalOption& option) {
    if (const Json* limits = members.Find("Limits")) {
        const QString key = u"Limits"_s;
        if (!limits->is_array()) Refuse(kErrorTypeMismatch, key, u"配列ではありません。"_s);
        if (limits->size() < 2 || limits->size() > kMaxLimitColumns + 1)
            Refuse(kErrorSubscript, key,
                   u"全体の限定と、1 から %1 までの個別の限定がありません。"_s.arg(kMaxLimitColumns));
        for (size_t column = 0; column < limits->size(); ++column)
            ReadCondition((*limits)[column], u"Limits[%1]"_s.arg(column),
                          option.Limits.Column(static_cast<int>(column)));
        option.LimitCount = static_cast<qint16>(limits->size() - 1);
    }
    const int columns = option.LimitCount;
    members.Integer("LimitCount", option.LimitCount, columns, columns);
}

Json ParseObject(const QByteArray& json) {
    try {
        Json object = Json::parse(json.begin(), json.end());
        if (object.is_object()) return object;
    } catch (const Json::exception& error) {
        throw RuntimeError(kErrorTypeMismatch, QString::fromUtf8(error.what()));
    }
    throw RuntimeError(kErrorTypeMismatch, u"TotalOption のオブジェクトではありません。"_s);
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
    const Json object = ParseObject(json);
    Members members(object);
    TotalOption option;
    const int lastQuestion = survey.QuestionCount - 1;
    members.Text("Nname", option.Nname);
    members.Integer("TotalKind", option.TotalKind, kTable, kEssayList);
    const bool isTable = option.TotalKind == kTable;
    members.Integer("FromQno", option.FromQno, 0, lastQuestion);
    option.ToQno = option.FromQno;
    members.Integer("ToQno", option.ToQno, isTable ? option.FromQno : 0, lastQuestion);
    members.Integer("Rank", option.Rank, 0, kMaxAnswers);
    if (const Json* limit = members.Find("ExLimit")) {
        std::array<LimitLine, 16> lines{};
        ReadCondition(*limit, u"ExLimit"_s, lines);
        option.ExLimit = LimitList(LimitColumn(lines));
    }
    ReadLimits(members, option);
    if (isTable) {
        members.Integer("CrossQno", option.CrossQno, 0, lastQuestion);
        members.Integer("CrossMode", option.CrossMode, kCrossQuestion, kCrossFree);
    } else {
        members.Integer("CrossQno", option.CrossQno, 0, survey.Questions[option.FromQno].ChoiceCount);
        members.Integer("CrossMode", option.CrossMode, kEssayNoCondition, kEssayAny);
    }
    members.Text("EssayText", option.EssayText);
    members.Number("NumLow", option.NumLow);
    members.Number("NumHigh", option.NumHigh);
    members.Text("CodeLow", option.CodeLow);
    members.Text("CodeHigh", option.CodeHigh);
    members.Boolean("Rough", option.Rough);
    members.RefuseOthers();
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
