// The page file of a result: its options, conditions and figures. docs/FILE_FORMAT.md tells the bytes. Loading takes
// options and conditions and counts again; the figures are an archive that only a dump reads.
#pragma once

#include <QByteArray>
#include <QString>

#include "core/survey.h"
#include "tabulation/total_option.h"
#include "tabulation/total_sheet.h"

namespace quibra {

class ByteReader;

// The page's bytes; `surveyPath` is the base to which it belongs. Run-time error 9 for a result that has not been
// totalled, 6 for a text that is too long.
QByteArray WritePage(const Survey& survey, const TotalSheet& sheet, const QString& surveyPath, const QString& caption);

// What stands behind the head of a page into the current options, whose other fields stay, and the view. Run-time error
// 62 for a page that is cut off, 9 for a value that no total of the survey can have; both then stay as they were. Of an
// essay list the conditions come out wrong: they are written in other places than they are read from.
void ReadPage(ByteReader& in, const Survey& survey, TotalOption& option, TotalView& view);

// All fields of a page as JSON, read as they were written. Run-time error 13 for a file that is no page, 62 and 9 as
// above.
QByteArray DumpPage(ByteReader& in);

// What the user is told of a page of an essay list when it has been written.
QString EssayPageWarning();

}  // namespace quibra
