// What the readers and writers of survey and page files share: the kinds of files with their magics, and where the
// fields of a sample lie. docs/FILE_FORMAT.md tells the bytes.
#pragma once

#include <QString>

namespace quibra {

// The generations of the survey file, of which the last is written, and the result page; 0 is none of ours.
enum FileKind {
    kNothing = 0,
    kSurvey1001 = 1001,
    kSurvey1002 = 1002,
    kSurvey1003 = 1003,
    kPageFile = 2001,
};

// The magic of a file kind, empty for a number that is none.
QString MagicOf(int kind);

// Where the fields of a sample lie, and the size of the count of texts that follows the answers.
inline constexpr int kSampleFlagsAt = 4;
inline constexpr int kSampleAnswersAt = 6;
inline constexpr int kSampleCountBytes = 2;

// What an entry of LineFlag is in the file.
inline constexpr qint16 kLineFlagEnd = 0;
inline constexpr qint16 kLineFlagOn = 1;
inline constexpr qint16 kLineFlagOff = 2;

}  // namespace quibra
