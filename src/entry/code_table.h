// Coded texts: the text of an answer with コード付き is "code:name", and a file names the pairs there are. It is text
// in code page 932, fields that end at a comma or a line end, two for a pair; nothing is trimmed, quotes mean nothing.
// A field that is empty or begins with ' where a code is expected is passed over.
#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>
#include <memory>

#include "core/survey.h"
#include "core/user_interface.h"

namespace quibra {

// One file's pairs, made for many searches.
class CodeTable {
  public:
    // Reads the file. RuntimeError when it can't be read or is no plain file.
    explicit CodeTable(const QString& path);

    // Completes code and name. With a name other than "" and "?" the first pair that has it as code or name counts,
    // otherwise the first one that has the code as code or name, or a code of the same number above 0. Where no pair
    // fits an empty one of the two becomes "?". Run-time error 62 when the search runs into a code without a name at
    // the end of the file.
    void Complete(QString& code, QString& name) const;

  private:
    struct Pair {
        QString code;
        QString name;
    };

    std::vector<Pair> pairs_;
    // The first pair by each key.
    QHash<QString, qsizetype> byCode_;
    QHash<QString, qsizetype> byName_;
    QHash<double, qsizetype> byNumber_;
    QString lastField_;  // what was last read where a code is expected
    bool cutShort_ = false;
};

// The tables in use. Each is read again only when its file has changed.
class CodeTables {
  public:
    // RuntimeError as above. Holds until the next call.
    const CodeTable& At(const QString& path);

  private:
    struct Entry {
        QDateTime modified;
        qint64 size = -1;
        std::shared_ptr<const CodeTable> table;
    };
    QHash<QString, Entry> entries_;
};

// "code:name" at its first ":". Without one a text is the name of an unknown code, "?"; an empty text an unknown name.
void SplitCodeEssay(const QString& text, QString& code, QString& name);

// The file of a coded choice; a name without a folder lies beside the survey.
QString CodeTablePath(const Survey& survey, int q, int c);

// Completes code and name from the choice's table. When it can't be read the user is told, and both stay as they are.
void LookupCode(const Survey& survey, CodeTables& tables, UserInterface& ui, int q, int c, QString& code,
                QString& name);

}  // namespace quibra
