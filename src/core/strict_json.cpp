#include "core/strict_json.h"

#include <cmath>
#include <limits>

#include "core/runtime_error.h"

using namespace Qt::StringLiterals;

namespace quibra {

QString ToQString(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void RefuseJson(int number, const QString& place, const QString& reason) {
    throw RuntimeError(number, (place.isEmpty() ? u"JSON"_s : place) + u"："_s + reason);
}

void RefuseJsonText(const Json::exception& error) {
    if (const auto* fault = dynamic_cast<const Json::parse_error*>(&error))
        RefuseJson(kErrorTypeMismatch, u"JSON の %1 バイト目"_s.arg(fault->byte), u"JSON として読めません"_s);
    // The parser's other complaint is about a number that no 64-bit float holds; it quotes the number.
    RefuseJson(kErrorOverflow, QString(),
               u"大きすぎる数があります（%1）"_s.arg(QString::fromUtf8(error.what()).section(u'\'', 1, 1)));
}

QString ElementPlace(const QString& place, qsizetype index) {
    return u"%1[%2]"_s.arg(place).arg(index);
}

void JsonKeys::Take(const std::string& key) {
    if (!open_.back().insert(key).second) RefuseJson(kErrorTypeMismatch, ToQString(key), u"同じキーが二つあります"_s);
}

Json ParseJson(QByteArrayView text) {
    JsonKeys keys;
    const Json::parser_callback_t watch = [&keys](int, Json::parse_event_t event, Json& parsed) {
        if (event == Json::parse_event_t::object_start) keys.Open();
        if (event == Json::parse_event_t::object_end) keys.Close();
        if (event == Json::parse_event_t::key) keys.Take(parsed.get_ref<const std::string&>());
        return true;
    };
    try {
        return Json::parse(text.begin(), text.end(), watch);
    } catch (const Json::exception& error) {
        RefuseJsonText(error);
    }
}

qint64 JsonInteger(const Json& value, const QString& place, qint64 low, qint64 high) {
    // An integer that no 64 bits hold has become a float on the way.
    const bool huge = value.is_number_float() && std::abs(value.get<double>()) >= std::ldexp(1.0, 63);
    if (!value.is_number_integer() && !huge) RefuseJson(kErrorTypeMismatch, place, u"整数ではありません"_s);
    const bool above = value.is_number_unsigned() && value.get<quint64>() > quint64(std::numeric_limits<qint64>::max());
    if (huge || above || value.get<qint64>() < low || value.get<qint64>() > high)
        RefuseJson(kErrorOverflow, place, u"%1から%2までの整数ではありません"_s.arg(low).arg(high));
    return value.get<qint64>();
}

qint16 JsonInteger16(const Json& value, const QString& place) {
    return static_cast<qint16>(
        JsonInteger(value, place, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max()));
}

double JsonNumber(const Json& value, const QString& place) {
    if (!value.is_number()) RefuseJson(kErrorTypeMismatch, place, u"数ではありません"_s);
    return value.get<double>();
}

bool JsonBoolean(const Json& value, const QString& place) {
    if (!value.is_boolean()) RefuseJson(kErrorTypeMismatch, place, u"true か false ではありません"_s);
    return value.get<bool>();
}

QString JsonText(const Json& value, const QString& place) {
    if (!value.is_string()) RefuseJson(kErrorTypeMismatch, place, u"文字列ではありません"_s);
    return ToQString(value.get_ref<const std::string&>());
}

const Json& JsonList(const Json& value, const QString& place, size_t low, size_t high) {
    if (!value.is_array()) RefuseJson(kErrorTypeMismatch, place, u"配列ではありません"_s);
    if (value.size() < low || value.size() > high)
        RefuseJson(kErrorSubscript, place,
                   u"要素が%1個あります（%2個から%3個まで）"_s.arg(value.size()).arg(low).arg(high));
    return value;
}

JsonFields::JsonFields(const Json& object, QString place) : object_(object), place_(std::move(place)) {
    if (!object.is_object()) RefuseJson(kErrorTypeMismatch, place_, u"オブジェクトではありません"_s);
}

QString JsonFields::PlaceOf(const char* key) const {
    const QString name = QString::fromUtf8(key);
    return place_.isEmpty() ? name : place_ + u'.' + name;
}

const Json* JsonFields::Find(const char* key) {
    asked_.insert(key);
    const auto found = object_.find(key);
    return found == object_.end() ? nullptr : &*found;
}

const Json& JsonFields::Need(const char* key) {
    const Json* value = Find(key);
    if (value == nullptr) RefuseJson(kErrorTypeMismatch, PlaceOf(key), u"必要なキーがありません"_s);
    return *value;
}

void JsonFields::Read(const char* key, QString& target) {
    if (const Json* value = Find(key)) target = JsonText(*value, PlaceOf(key));
}

void JsonFields::Read(const char* key, qint16& target) {
    if (const Json* value = Find(key)) target = JsonInteger16(*value, PlaceOf(key));
}

void JsonFields::Read(const char* key, qint16& target, int low, int high) {
    if (const Json* value = Find(key)) target = static_cast<qint16>(JsonInteger(*value, PlaceOf(key), low, high));
}

void JsonFields::Read(const char* key, double& target) {
    if (const Json* value = Find(key)) target = JsonNumber(*value, PlaceOf(key));
}

void JsonFields::Read(const char* key, bool& target) {
    if (const Json* value = Find(key)) target = JsonBoolean(*value, PlaceOf(key));
}

void JsonFields::CheckCount(const char* key, qint64 count) {
    const Json* value = Find(key);
    if (value == nullptr) return;
    if (JsonInteger(*value, PlaceOf(key), 0, std::numeric_limits<qint32>::max()) != count)
        RefuseJson(kErrorSubscript, PlaceOf(key), u"実際の数は%1個です"_s.arg(count));
}

void JsonFields::RefuseOthers() const {
    for (const auto& item : object_.items())
        if (!asked_.contains(item.key()))
            RefuseJson(kErrorTypeMismatch, PlaceOf(item.key().c_str()), u"知らないキーです"_s);
}

}  // namespace quibra
