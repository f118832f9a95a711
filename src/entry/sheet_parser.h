// The answer sheet read back: from the text of the box to the sample.
#pragma once

#include <QString>

#include "core/survey.h"
#include "entry/code_table.h"
#include "entry/reply_box.h"

namespace quibra {

// What the parser needs of its caller. All must outlive the call; box and notice may be null.
struct SheetCaller {
    UserInterface& ui;  // told of a code table that can't be read
    CodeTables& tables;
    ReplyBox* box = nullptr;             // shows the text at once when bare answers in it are put between marks
    CorrectionNotice* notice = nullptr;  // told what the checks change
};

// A sheet's text and what reading it finds.
struct SheetReading {
    QString Text;   // lines end in CR LF; bare answers come back between dots or slashes
    int Caret = 0;  // comes back as the place of an error, otherwise unchanged
    int StopQ = 0;  // where the next answer goes, both from 0; QuestionCount and 0 behind the last one
    int StopA = 0;
    int CaretQ = -1;  // the question in which the caret stands, otherwise StopQ
};

// Message of a sheet that was read and whose last line asks for the external library.
inline constexpr QStringView kExecuteDll = u"EXEDLL";

// Reads the sheet of sample `dno`. The result is empty, kExecuteDll, or the message of the first fault, at which
// nothing is stored. With `save` the answers are checked and stored; the stop then goes past questions that don't
// apply. A RuntimeError (9 for a symbol too many behind the last question, 6 for a number too large in dots) stores
// nothing either.
QString ParseAnswerSheet(Survey& survey, qint32 dno, SheetReading& reading, bool save, const SheetCaller& caller);

// What the parser does behind the text, for answers that come by another way. ValidateAnswer: the message when a number
// is out of its range, else empty; the text of a coded answer is completed from its table. StoreAnswers: checks the
// answers, stores them and fits them to the conditions; a RuntimeError has stored nothing.
QString ValidateAnswer(const Survey& survey, int q, int choice, QString& essay, const SheetCaller& caller);
void StoreAnswers(Survey& survey, qint32 dno, WorkingSample& working, CorrectionNotice* notice);

// True when line `n` of the sheet (from 0) holds exactly one answer position.
bool IsSingleAnswerLine(const Survey& survey, int n);

// True when the place `at` (from 0) of a line lies between the slashes around a text, the closing ones typed or not.
bool IsInsideEssay(QStringView line, qsizetype at);

// Place, counted from 1, of `what` at or behind `start`; 0 when it is not on that line.
int FindOnLine(int start, const QString& text, QStringView what);

}  // namespace quibra
