#include "session/journal_format.h"

#include <QCryptographicHash>
#include <QTimeZone>
#include <QtEndian>
#include <limits>

#include "core/numbers.h"
#include "core/runtime_error.h"
#include "core/varint.h"

namespace quibra {

namespace {

constexpr qsizetype kCheckBytes = 8;
constexpr qsizetype kFrameBytes = 4 + kCheckBytes;

QByteArray CheckOf(const QByteArray& before, QByteArrayView content) {
    QCryptographicHash hash(QCryptographicHash::Blake2s_128);
    hash.addData(before);
    hash.addData(content);
    return hash.result().first(kCheckBytes);
}

// ----- Writing: one function a type

void Put(QByteArray& out, const QString& text) {
    AppendNumber(out, text.size());
    const qsizetype at = out.size();
    out.resize(at + text.size() * 2);
    qToLittleEndian<char16_t>(text.constData(), text.size(), out.data() + at);
}

void Put(QByteArray& out, const QByteArray& bytes) {
    AppendNumber(out, bytes.size());
    out.append(bytes);
}

void Put(QByteArray& out, SampleName name) {
    AppendNumber(out, name.IDno);
    AppendNumber(out, name.Life);
}

void Put(QByteArray& out, const SampleNames& names) {
    AppendNumber(out, names.Count());
    Put(out, names.Bytes());
}

void Put(QByteArray& out, const std::vector<qint16>& list) {
    AppendNumber(out, static_cast<qint64>(list.size()));
    for (const qint16 number : list)
        AppendNumber(out, number);
}

void Put(QByteArray& out, const StoredAnswers& answers) {
    AppendNumber(out, static_cast<qint64>(answers.size()));
    for (const StoredAnswer& answer : answers) {
        AppendNumber(out, answer.Cno);
        Put(out, answer.Essay);
    }
}

QByteArray ContentOf(const JournalHeader& header) {
    QByteArray out("H");
    Put(out, header.Path);
    for (const qint64 number : {header.Size, header.Seconds, header.Nanoseconds})
        AppendNumber(out, number);
    return out;
}

QByteArray ContentOf(const JournalDefinition& definition) {
    return 'D' + definition.File;
}

QByteArray ContentOf(const SampleChangeRecord& record) {
    QByteArray out("C");
    for (const qint64 number : {record.Number, record.Batch, record.Time.toMSecsSinceEpoch()})
        AppendNumber(out, number);
    Put(out, record.Who);
    Put(out, record.Machine);
    AppendNumber(out, static_cast<qint64>(record.Cause));
    AppendNumber(out, record.Rewrite);
    Put(out, record.Map.QuestionMap);
    AppendNumber(out, static_cast<qint64>(record.Map.ChoiceMap.size()));
    for (const auto& choices : record.Map.ChoiceMap)
        Put(out, choices);
    Put(out, record.Deleted);
    AppendNumber(out, static_cast<qint64>(record.Renamed.size()));
    for (const IDChange& change : record.Renamed) {
        Put(out, change.Before);
        Put(out, change.After);
    }
    Put(out, record.Added);
    AppendNumber(out, static_cast<qint64>(record.Answers.size()));
    for (const AnswerChange& change : record.Answers) {
        AppendNumber(out, change.From);
        AppendNumber(out, change.To);
        Put(out, change.Before);
        Put(out, change.After);
        Put(out, change.Samples);
    }
    return out;
}

QByteArray ContentOf(const JournalDraft& draft) {
    QByteArray out("T");
    AppendNumber(out, draft.Draft.has_value());
    if (!draft.Draft) return out;
    AppendNumber(out, draft.Draft->IDno);
    Put(out, draft.Draft->Text);
    AppendNumber(out, draft.Draft->Caret);
    return out;
}

// ----- Reading: run-time error 62 where the content ends too soon, 6 for a number that is out of range

class ContentReader {
  public:
    explicit ContentReader(QByteArrayView bytes) : rest_(bytes) {}

    bool AtEnd() const { return rest_.isEmpty(); }
    QByteArrayView Rest() const { return rest_; }

    qint64 Number() {
        const auto number = TakeNumber(rest_);
        if (!number) throw RuntimeError(kErrorPastEnd);
        return *number;
    }
    qint32 Int32() { return CheckedInt32(Number()); }
    qint16 Int16() { return CheckedInt16(Number()); }
    // How many elements follow, none of them shorter than `least` bytes.
    qint64 Count(qint64 least) {
        const qint64 count = Number();
        if (count < 0 || count > rest_.size() / least) throw RuntimeError(kErrorPastEnd);
        return count;
    }
    QByteArrayView Bytes(qint64 size) {
        const QByteArrayView bytes = rest_.first(size);
        rest_ = rest_.sliced(size);
        return bytes;
    }
    QString Text() {
        const qint64 length = Count(2);
        QString text(length, Qt::Uninitialized);
        qFromLittleEndian<char16_t>(Bytes(length * 2).data(), length, text.data());
        return text;
    }
    SampleName Name() {
        const qint32 id = Int32();
        return {id, Int32()};
    }
    SampleNames Names() {
        const qint64 count = Count(1);
        const qint64 size = Count(1);
        SampleNames names;
        if (!names.SetBytes(Bytes(size), count)) throw RuntimeError(kErrorPastEnd);
        return names;
    }
    std::vector<qint16> Numbers() {
        std::vector<qint16> list(static_cast<size_t>(Count(1)));
        for (qint16& number : list)
            number = Int16();
        return list;
    }
    StoredAnswers Answers() {
        StoredAnswers answers(static_cast<size_t>(Count(2)));
        for (StoredAnswer& answer : answers) {
            answer.Cno = Int16();
            answer.Essay = Text();
        }
        return answers;
    }

  private:
    QByteArrayView rest_;
};

JournalHeader ReadHeader(ContentReader& in) {
    JournalHeader header;
    header.Path = in.Text();
    for (qint64* number : {&header.Size, &header.Seconds, &header.Nanoseconds})
        *number = in.Number();
    return header;
}

SampleChangeRecord ReadRecord(ContentReader& in) {
    SampleChangeRecord record;
    record.Number = in.Number();
    record.Batch = in.Number();
    record.Time = QDateTime::fromMSecsSinceEpoch(in.Number(), Qt::UTC);
    record.Who = in.Text();
    record.Machine = in.Text();
    record.Cause = static_cast<ChangeCause>(in.Int16());
    record.Rewrite = in.Number() != 0;
    record.Map.QuestionMap = in.Numbers();
    record.Map.ChoiceMap.resize(static_cast<size_t>(in.Count(1)));
    for (auto& choices : record.Map.ChoiceMap)
        choices = in.Numbers();
    record.Deleted = in.Names();
    record.Renamed.resize(static_cast<size_t>(in.Count(4)));
    for (IDChange& change : record.Renamed) {
        change.Before = in.Name();
        change.After = in.Name();
    }
    record.Added = in.Names();
    record.Answers.resize(static_cast<size_t>(in.Count(6)));
    for (AnswerChange& change : record.Answers) {
        change.From = in.Int16();
        change.To = in.Int16();
        change.Before = in.Answers();
        change.After = in.Answers();
        change.Samples = in.Names();
    }
    return record;
}

JournalDraft ReadDraft(ContentReader& in) {
    if (in.Number() == 0) return {};
    SheetDraft draft;
    draft.IDno = in.Int32();
    draft.Text = in.Text();
    draft.Caret = in.Int32();
    return {draft};
}

JournalEntry ReadEntry(QByteArrayView content) {
    if (content.isEmpty()) throw RuntimeError(kErrorPastEnd);
    const char kind = content.front();
    ContentReader in(content.sliced(1));
    if (kind == 'D') return JournalDefinition{in.Rest().toByteArray()};
    JournalEntry entry;
    switch (kind) {
        case 'H':
            entry = ReadHeader(in);
            break;
        case 'C':
            entry = ReadRecord(in);
            break;
        case 'T':
            entry = ReadDraft(in);
            break;
        default:
            throw RuntimeError(kErrorPastEnd);
    }
    if (!in.AtEnd()) throw RuntimeError(kErrorPastEnd);
    return entry;
}

}  // namespace

QByteArray JournalContent(const JournalEntry& entry) {
    return std::visit([](const auto& one) { return ContentOf(one); }, entry);
}

QByteArray JournalFramer::Frame(const QByteArray& content) {
    check_ = CheckOf(check_, content);
    QByteArray bytes(4, Qt::Uninitialized);
    qToLittleEndian<qint32>(CheckedInt32(content.size()), bytes.data());
    return bytes + check_ + content;
}

std::optional<JournalContents> DecodeJournal(QByteArrayView bytes) {
    if (!bytes.startsWith(kJournalMagic)) return std::nullopt;
    JournalContents contents;
    QByteArrayView rest = bytes.sliced(kJournalMagic.size());
    QByteArray check;
    bool hasHeader = false;
    while (rest.size() >= kFrameBytes) {
        const qint64 size = qFromLittleEndian<qint32>(rest.data());
        if (size < 0 || size > rest.size() - kFrameBytes) break;
        const QByteArrayView content = rest.sliced(kFrameBytes, size);
        check = CheckOf(check, content);
        if (rest.sliced(4, kCheckBytes) != check) break;
        try {
            JournalEntry entry = ReadEntry(content);
            const bool isHeader = std::holds_alternative<JournalHeader>(entry);
            if (isHeader == hasHeader) break;
            if (isHeader)
                contents.Header = std::get<JournalHeader>(entry);
            else
                contents.Entries.push_back(std::move(entry));
        } catch (const RuntimeError&) {
            break;
        }
        hasHeader = true;
        rest = rest.sliced(kFrameBytes + size);
    }
    contents.Rest = rest.size();
    if (!hasHeader) return std::nullopt;
    return contents;
}

}  // namespace quibra
