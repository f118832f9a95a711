// Where questions and choices have gone since the question editor was opened: the two maps from the old numbers to the
// new ones, and the edit of a survey's structure that keeps maps, records and conditions in step.
#pragma once

#include "core/survey.h"

namespace quibra {

// What an old number leads to when its question or choice has been deleted.
inline constexpr qint16 kDeleted = -1;

struct StructureMaps {
    // Every number leads to itself.
    StructureMaps();

    BoundedArray<qint16, kMaxQuestions> QuestionMap;             // by old question
    BoundedTable<qint16, kMaxChoices, kMaxQuestions> ChoiceMap;  // by (old choice, old question)
};

// Inserts (`dir` +1) or deletes (-1) question Q, or with C from 0 on choice C of question Q: moves the records, counts,
// maps and the numbers in all questions' conditions; the predefined conditions are not touched. What is inserted is
// empty and the caller's to fill. REQUIRES: room for one more, or one to spare. Run-time error 6, with everything as it
// was, when a question would come to depend on itself or a condition's number leaves 16 bits.
inline constexpr int kWholeQuestion = -1;
void ApplyStructureEdit(Survey& survey, StructureMaps& maps, int Q, int C, int dir);

// Gives question `target` the condition of `source`.
void CopyQuestionLimit(Survey& survey, int source, int target);

}  // namespace quibra
