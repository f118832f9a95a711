// The survey in memory: definition, layout and samples, as plain data with checked bounds. Whoever works on it gets it
// by reference; the program's one survey is owned by its SurveySession. Answers are read and written through
// core/answer_store.h, never through the sample list's words.
#pragma once

#include <QDateTime>
#include <QString>

#include "companion/quibra.h"
#include "core/bounded_array.h"
#include "core/limit_list.h"
#include "core/sample_list.h"

namespace quibra {

inline constexpr int kMaxQuestions = 256;
inline constexpr int kMaxChoices = 128;  // with choice 0, 無回答
inline constexpr int kMaxAnswers = 128;  // of one question
inline constexpr int kPreLimitSlots = 16;
inline constexpr int kQuestionTextLength = 128;
inline constexpr int kLineStartEntries = 257;

// FileName of data that must not be saved.
inline constexpr QStringView kUnsavable = u"保存できません";

// Bits of ChoiceRec::Status. The number and code bits only refine the essay bit.
enum StatusBit { kEssay = 0, kNumber = 1, kExclusive = 2, kOther = 3, kCode = 4, kMultiple = 5 };

struct QuestionRec {
    QString Text;  // always 128 characters, padded with blanks: name CR body CR limit text CR
    qint16 Anum = 0;
    qint16 ChoiceCount = 0;
    qint16 LabelKind = 0;

    // Cuts or pads `text` to the field's length.
    void SetText(const QString& text) { Text = text.leftJustified(kQuestionTextLength, u' ', true); }
};

struct ChoiceRec {
    QString Text;
    double Low = 0;
    double High = 0;
    QString CodeText;
    qint16 Status = 0;

    bool Has(StatusBit bit) const { return (Status >> bit) & 1; }
};

inline constexpr int kMaxPasswordLength = 32;

struct Survey {
    QString Title;
    QString Editor;
    QString Password;
    qint16 LockLevel = 0;
    QString FileName;
    qint16 QuestionCount = 0;
    qint32 QuotaFirst = 0;
    qint32 QuotaLast = 100000;
    qint32 QuotaUsed = -1;
    qint16 CorrectFlags = 0;
    QString DistName;
    qint16 DistQno = 0;
    qint16 EssayFull = 0;
    QString ExternDLL;
    qint32 SavedSampleCount = 0;
    QDateTime SavedTime;

    BoundedArray<QuestionRec, kMaxQuestions> Questions;
    BoundedTable<ChoiceRec, kMaxChoices, kMaxQuestions> Choices;  // (choice, question)
    BoundedTable<LimitLine, 16, kMaxQuestions> QLimit;            // (line, question)
    BoundedTable<LimitLine, 16, kPreLimitSlots> PreLimit;         // (line, slot)
    BoundedArray<qint16, kLineStartEntries> LineStart;
    BoundedArray<bool, kLineStartEntries> LineFlag;
    BoundedArray<AnswerLayoutRec, kMaxQuestions + 1> QIdx;  // derived; Anum 0 behind the last question
    SampleList Samples;

    // Derived by RecalcLayout.
    qint16 AnswerSlots = 0;
    qint16 EssaySlots = 0;
    qint16 SampleBytes = 0;
    qint16 SampleRecBytes = 0;

    qint32 SampleCount() const { return Samples.Count(); }
};

// A new survey: the head forgets file, lock and samples (`directory` is where "new.qb" would lie, with its separator),
// the body sets the title and the one default question.
void NewSurveyHead(Survey& survey, const QString& directory);
void NewSurveyBody(Survey& survey);

// Recomputes QIdx and the derived sizes from the questions. The samples' own layout is not touched: see
// Survey::Samples.SetLayout. Run-time error 6 when a size leaves 16 bits, 5 for a question without choices, 9 for one
// whose number of answers is negative or above 128.
void RecalcLayout(Survey& survey);

// The highest ID in use from QuotaFirst to QuotaLast; QuotaFirst when none is, -1 without samples.
void RecalcQuotaUsed(Survey& survey);

// -1 when bit n (0 to 16) of the choice's Status is set, else 0.
int GetChoiceStatus(const Survey& survey, int q, int c, int n);
void ToggleChoiceStatus(Survey& survey, int q, int c, int n);
// True when the question has a text to each of its answers, that is at least one choice with 記述付き.
bool HasEssaySlots(const Survey& survey, int q);

// A choice's text, range and code list as the one string of the survey file.
void SetChoiceFromFile(Survey& survey, int q, int c, const QString& text);
QString ChoiceToFile(const Survey& survey, int q, int c);

// The symbol by which a choice is written on the answer sheet, and the way back; by the question's LabelKind.
QString ChoiceToSymbol(const Survey& survey, int q, int c);
qint16 SymbolToChoice(const Survey& survey, int q, const QString& token);

// Q * 128 + A in 16 bits, wrapped from 32768 on. Run-time error 6 beyond 65535 or below -32768.
qint16 PackPosition(int q, int c);
void UnpackPosition(qint16 position, int& q, int& c);
int PositionAnswer(qint16 position);

// Index of the last entry of LineStart, the first one that equals its predecessor; run-time error 9 when none does.
int LineStartEnd(const Survey& survey);

}  // namespace quibra
