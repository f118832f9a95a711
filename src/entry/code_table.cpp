#include "entry/code_table.h"

#include <QFileInfo>
#include <algorithm>

#include "core/binary_file.h"
#include "core/code_page.h"
#include "core/file_names.h"
#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// A table is read whole; what is larger is none.
constexpr qint64 kLargestTable = qint64{64} << 20;

// 0 for a number that is too large, too: it is no code.
double CodeNumber(const QString& code) {
    try {
        return LeadingNumber(code);
    } catch (const RuntimeError&) {
        return 0;
    }
}

QByteArray ReadWhole(const QString& path) {
    // A pipe or a device would never end.
    if (KindOfPath(path) == PathKind::Other) throw RuntimeError(kErrorPathAccess);
    BinaryFile file = BinaryFile::OpenToRead(path);
    const qint64 size = file.Size();
    if (size > kLargestTable) throw RuntimeError(kErrorOutOfMemory);
    QByteArray bytes(size, Qt::Uninitialized);
    bytes.resize(static_cast<qsizetype>(
        file.Read(reinterpret_cast<unsigned char*>(bytes.data()), static_cast<size_t>(bytes.size()))));
    return bytes;
}

class FieldReader {
  public:
    explicit FieldReader(const QString& text) : text_(text) {}

    bool AtEnd() const { return at_ >= text_.size(); }
    QString Next() {
        const qsizetype start = at_;
        while (!AtEnd() && text_[at_] != u',' && text_[at_] != u'\r' && text_[at_] != u'\n')
            ++at_;
        const QString field = text_.mid(start, at_ - start);
        if (QStringView(text_).mid(at_, 2) == u"\r\n") ++at_;
        ++at_;
        return field;
    }

  private:
    const QString& text_;
    qsizetype at_ = 0;
};

}  // namespace

CodeTable::CodeTable(const QString& path) {
    const QString text = DecodeCodePage(ReadWhole(path));
    FieldReader reader(text);
    while (!reader.AtEnd()) {
        lastField_ = reader.Next();
        if (lastField_.isEmpty() || lastField_.startsWith(u'\'')) continue;
        cutShort_ = reader.AtEnd();
        if (cutShort_) break;
        const auto place = static_cast<qsizetype>(pairs_.size());
        pairs_.push_back({lastField_, reader.Next()});
        const Pair& pair = pairs_.back();
        if (!byCode_.contains(pair.code)) byCode_.insert(pair.code, place);
        if (!byName_.contains(pair.name)) byName_.insert(pair.name, place);
        const double number = CodeNumber(pair.code);
        if (number > 0 && !byNumber_.contains(number)) byNumber_.insert(number, place);
    }
}

void CodeTable::Complete(QString& code, QString& name) const {
    const bool byName = !name.isEmpty() && name != u"?";
    const QString& key = byName ? name : code;
    const auto end = static_cast<qsizetype>(pairs_.size());
    qsizetype place = std::min(byCode_.value(key, end), byName_.value(key, end));
    if (!byName) place = std::min(place, byNumber_.value(CodeNumber(code), end));
    if (place < end) {
        code = pairs_[static_cast<size_t>(place)].code;
        name = pairs_[static_cast<size_t>(place)].name;
        return;
    }
    if (cutShort_) throw RuntimeError(kErrorPastEnd);
    if (lastField_ == code) return;
    if (name.isEmpty()) name = u"?"_s;
    if (code.isEmpty()) code = u"?"_s;
}

const CodeTable& CodeTables::At(const QString& path) {
    const QFileInfo file(path);
    Entry& entry = entries_[path];
    const QDateTime modified = file.lastModified();
    if (!entry.table || entry.size != file.size() || entry.modified != modified)
        entry = {modified, file.size(), std::make_shared<const CodeTable>(path)};
    return *entry.table;
}

void SplitCodeEssay(const QString& text, QString& code, QString& name) {
    const qsizetype colon = text.indexOf(u':');
    if (colon >= 0) {
        code = text.left(colon);
        name = text.mid(colon + 1);
    } else {
        code = text.isEmpty() ? QString() : u"?"_s;
        name = text.isEmpty() ? u"?"_s : text;
    }
}

QString CodeTablePath(const Survey& survey, int q, int c) {
    const QString& name = survey.Choices(c, q).CodeText;
    if (name.contains(u'\\') || name.contains(u'/')) return name;
    return QFileInfo(survey.FileName).absolutePath() + u'/' + name;
}

void LookupCode(const Survey& survey, CodeTables& tables, UserInterface& ui, int q, int c, QString& code,
                QString& name) {
    const QString path = CodeTablePath(survey, q, c);
    try {
        tables.At(path).Complete(code, name);
    } catch (const RuntimeError& error) {
        ui.Message(error.Text() + u" : \r\n"_s + path, kOkOnly);
    }
}

}  // namespace quibra
