// The answer sheet: one respondent's answers as lines of text, as they are shown and typed.
//
//   [年齢] 3-[性別] 1-¶
//   [職業] 2/自営業/-¶
//
// Each question brings its name in brackets, its answers in order and a closing "-"; an answer is a symbol, perhaps
// with a text between slashes. Names and ¶ are only shown. One description serves the box on the screen, plain text and
// the RTF of old.
#pragma once

#include <QString>
#include <array>
#include <vector>

#include "core/settings.h"
#include "core/survey.h"

namespace quibra {

enum class SheetColor : quint8 { Text, Essay, Error, NotApplicable, Name };
inline constexpr int kSheetColors = 5;

// How sheets are shown.
struct SheetLook {
    bool names = true;   // of questions
    bool marks = false;  // ¶ at line ends
    FontRec font;
    std::array<qint32, kSheetColors - 1> colors{};  // Essay to Name, 0x00BBGGRR; that of Text is the font's
};

// Where the settings keep it: the font in FontSet[kFontAddData], the colours in front of ColorSet, the two flags in one
// of its entries.
inline constexpr size_t kSheetFlagsEntry = 15;
enum SheetFlag { kShowNames = 1, kShowMarks = 2 };
SheetLook SheetLookOf(const Settings& settings);

// What changes within the sheet in front of character `at`: a colour, the font, or a line that ends there with the CR
// LF that follows.
struct SheetControl {
    enum Kind : quint8 {
        kTextColor,
        kEssayColor,
        kErrorColor,
        kNotApplicableColor,
        kNameColor,
        kFont,
        kEssayFont,
        kLineEnd
    };

    qint32 at;
    Kind kind;
};

struct SheetText {
    QString Text;  // lines end in CR LF; the last one has none
    std::vector<SheetControl> Controls;
    int CaretOut = 0;  // where the caret goes; may lie behind the end
};

// One stretch of the text in one colour.
struct SheetRun {
    qint32 start;
    qint32 length;
    SheetColor color;
};

// The sheet of sample `dno` up to, and not including, answer stopA of question stopQ (from 0; the whole sample with
// QuestionCount and 0). CaretOut is for the end of question caretQ: the length of the RTF up to there, which is what
// people know as the caret's way, to the end of the text but for sheets that are much longer than what stands before
// the question. `tail` is what an external library puts behind the last answer. Run-time error 9 for a survey of 256
// questions, which leaves no question to stop at.
SheetText BuildAnswerSheet(const Survey& survey, qint32 dno, int stopQ, int stopA, const SheetLook& look, int caretQ,
                           const QString& tail);

// The sheet as RTF. Braces of the text stand in it as they are.
QString SheetRtf(const SheetText& sheet, const SheetLook& look);
// What other programs take from the clipboard: ASCII, braces escaped, other characters by their Unicode numbers.
QByteArray ClipboardRtf(const SheetText& sheet, const SheetLook& look);
// "\'XX" for each byte of a backslash, of control characters and of all that is not ASCII in the code page.
QString RtfEscape(QStringView text);

// The colours, without stretches of no length.
std::vector<SheetRun> SheetRuns(const SheetText& sheet);

}  // namespace quibra
