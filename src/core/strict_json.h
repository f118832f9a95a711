// One way to read JSON, for surveys, options of totals and the commands of the command-line tool. Strict: nothing is
// corrected silently. A key twice in one object, a key that nobody asked for, a number out of range and text behind the
// value are refused with a RuntimeError whose text names the place ("Questions[2].Anum：...").
#pragma once

#include <QByteArrayView>
#include <QString>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

namespace quibra {

using Json = nlohmann::ordered_json;

QString ToQString(const std::string& text);

// Throws a RuntimeError (6 overflow, 9 subscript, 13 type mismatch) that names `place`; none stands for the whole text.
[[noreturn]] void RefuseJson(int number, const QString& place, const QString& reason);
// The same for what the parser itself can't take.
[[noreturn]] void RefuseJsonText(const Json::exception& error);

QString ElementPlace(const QString& place, qsizetype index);  // "place[index]"

// Watches the keys of the objects that are open while a text is read, and refuses one that comes twice.
class JsonKeys {
  public:
    void Open() { open_.emplace_back(); }
    void Close() { open_.pop_back(); }
    void Take(const std::string& key);

  private:
    std::vector<std::set<std::string>> open_;
};

Json ParseJson(QByteArrayView text);

// A value of one kind. An integer beyond 64 bits is out of range as any other.
qint64 JsonInteger(const Json& value, const QString& place, qint64 low, qint64 high);
qint16 JsonInteger16(const Json& value, const QString& place);
double JsonNumber(const Json& value, const QString& place);
bool JsonBoolean(const Json& value, const QString& place);
QString JsonText(const Json& value, const QString& place);
const Json& JsonList(const Json& value, const QString& place, size_t low, size_t high);

// One object. Its keys are asked for one by one; RefuseOthers refuses those that nobody asked for.
class JsonFields {
  public:
    // `object` must outlive this.
    JsonFields(const Json& object, QString place);

    QString PlaceOf(const char* key) const;
    const Json* Find(const char* key);  // nullptr for an absent key
    const Json& Need(const char* key);

    // An absent key leaves the target alone.
    void Read(const char* key, QString& target);
    void Read(const char* key, qint16& target);
    void Read(const char* key, qint16& target, int low, int high);
    void Read(const char* key, double& target);
    void Read(const char* key, bool& target);
    // A count that the text gives beside the list it counts.
    void CheckCount(const char* key, qint64 count);
    void RefuseOthers() const;

  private:
    const Json& object_;
    QString place_;
    std::set<std::string> asked_;
};

}  // namespace quibra
