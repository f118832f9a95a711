// Reading and writing the answers of a sample, and the list of samples in the order of their IDs.
//
// Everywhere: `dno` is a sample's place in the list, q a question. A list of one question's answers has room for 128
// numbers; a flat list of all answers has room for AnswerSlots + 1, a list of counts for QuestionCount. A dno or q out
// of bounds is run-time error 9. Nothing here marks the survey as changed: that is the caller's.
#pragma once

#include <QString>

#include "core/survey.h"
#include "core/user_interface.h"

namespace quibra {

// Answers of one question. A getter's count is that of the leading filled fields, and Ano[0] is 0 when there are none;
// a setter's count is at most the question's Anum (run-time error 9), and {0} clears the question.
void GetAnswers(const Survey& survey, qint32 dno, int q, qint16& AnoCount, qint16* Ano);
void SetAnswers(Survey& survey, qint32 dno, int q, qint16 AnoCount, const qint16* Ano);
// With their texts: EssayIn[i] goes with Ano[i], and is not touched by the getter for a question without texts. The
// setter empties the slot of a choice that bears no text; slots behind the count stay as they are.
void GetAnswersEssay(const Survey& survey, qint32 dno, int q, qint16& AnoCount, qint16* Ano, QString* EssayIn);
void SetAnswersEssay(Survey& survey, qint32 dno, int q, qint16 AnoCount, const qint16* Ano, const QString* EssayIn);
// The text of the question's answer at position i (from 0); empty for a question without texts.
QString EssayOfAnswer(const Survey& survey, qint32 dno, int q, int i);

// Answers of all questions, one behind the other, with one count a question.
void GetAllAnswers(const Survey& survey, qint32 dno, qint16* AnoCounts, qint16* Ano);
void SetAllAnswers(Survey& survey, qint32 dno, const qint16* AnoCounts, const qint16* Ano);
void GetAllAnswersEssay(const Survey& survey, qint32 dno, qint16* AnoCounts, qint16* Ano, QString* EssayIn);
void SetAllAnswersEssay(Survey& survey, qint32 dno, const qint16* AnoCounts, const qint16* Ano, const QString* EssayIn);

// The working form of a sample: all its answers as parallel arrays.
struct WorkingSample {
    explicit WorkingSample(const Survey& survey);

    std::vector<qint16> AnswerCount;  // by question
    std::vector<qint16> SlotCno;      // the rest by answer slot
    std::vector<qint32> SlotEssayID;  // 0 no text, -1 a new or changed one
    std::vector<QString> SlotEssay;
    std::vector<qint16> SlotPos;  // where the slot's symbol stands on the sheet, from 1
    std::vector<qint16> SlotLen;
};

// Where an ID stands in the list or would be inserted. 0 when found, or when the search ran off an end (position -1 or
// the number of samples); -1 when it stopped between two IDs.
int FindSample(const Survey& survey, qint32 id, qint32& position);
// The sample's place, or -1.
qint32 DnoOfID(const Survey& survey, qint32 id);
// The new, empty sample's place, or -1 for an ID that is there already.
qint32 AddSample(Survey& survey, UserInterface& ui, qint32 id);
void DeleteSample(Survey& survey, UserInterface& ui, qint32 dno);
// Gives the sample another ID and moves it to its place; -1 when the ID is in use, by this sample too.
qint32 SampleChangeID(Survey& survey, UserInterface& ui, qint32 dno, qint32 id);
bool IDsAreSorted(const Survey& survey);
// Sorts by ID as the program always has, see the .cpp for lists in which IDs repeat. Reports progress; a Stop leaves
// the rest as it was.
void SortSamples(Survey& survey, UserInterface& ui);

QString SampleIDText(const Survey& survey, qint32 dno);
bool SampleHasPreLimit(const Survey& survey, qint32 dno, int k);
void SetPreLimitBit(Survey& survey, qint32 dno, int k, bool on);
// Tests the sample against all predefined conditions and stores which it meets.
void RecalcPreLimitBits(Survey& survey, qint32 dno);

}  // namespace quibra
