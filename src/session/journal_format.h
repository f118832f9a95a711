// The bytes of a journal: what was done to a survey since it was last saved, for a program that is killed before it can
// save. Whole numbers are those of core/varint.h unless told otherwise.
//
//   "Quibra Journal 1\n"
//   entries, each: i32 size of the content, 8 bytes of check, the content
//
// The check is the beginning of the BLAKE2s-128 of the check of the entry before (none for the first) and the content,
// so an entry counts only behind all that were written before it. A file that was cut off ends in a piece of an entry,
// which is not counted. The content begins with a letter:
//
//   H  whose journal it is, see JournalHeader; the first entry, once
//   D  a survey file (docs/FILE_FORMAT.md) without samples: the questionnaire from here on
//   C  a SampleChangeRecord
//   T  the sheet that is being typed, or none any more: SheetDraft
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <variant>
#include <vector>

#include "core/sample_change_record.h"
#include "session/sheet_draft.h"

namespace quibra {

inline constexpr QByteArrayView kJournalMagic = "Quibra Journal 1\n";

// The survey file on which all that follows was done.
struct JournalHeader {
    QString Path;     // empty: a new survey, which the first definition tells
    qint64 Size = 0;  // of the file, and when it was last written
    qint64 Seconds = 0;
    qint64 Nanoseconds = 0;

    bool operator==(const JournalHeader&) const = default;
};

struct JournalDefinition {
    QByteArray File;
};

struct JournalDraft {
    std::optional<SheetDraft> Draft;
};

using JournalEntry = std::variant<JournalHeader, JournalDefinition, SampleChangeRecord, JournalDraft>;

// The content of an entry.
QByteArray JournalContent(const JournalEntry& entry);

// Makes contents entries of a file, one behind the other. The caller puts the magic in front of the first one.
class JournalFramer {
  public:
    // Run-time error 6 for a content of 2 GB.
    QByteArray Frame(const QByteArray& content);

  private:
    QByteArray check_;
};

struct JournalContents {
    JournalHeader Header;
    std::vector<JournalEntry> Entries;  // behind the header
    // Bytes behind the last entry that counts. The last moments before the end, where a machine was switched off.
    qint64 Rest = 0;
};

// Reads a journal, as far as it is whole. Nothing in the bytes is trusted: what an entry claims is checked before
// memory is taken for it. Nothing when it is no journal or its first entry is not whole.
std::optional<JournalContents> DecodeJournal(QByteArrayView bytes);

}  // namespace quibra
