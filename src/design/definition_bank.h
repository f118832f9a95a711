// A copy of what the question editor changes: the questions, their choices and their conditions. The editor works on
// the survey itself and keeps the definition as it was in a bank, so that all can be taken back.
#pragma once

#include "core/survey.h"

namespace quibra {

struct DefinitionBank {
    qint16 QuestionCount = 0;
    BoundedArray<QuestionRec, kMaxQuestions> Questions;
    BoundedTable<ChoiceRec, kMaxChoices, kMaxQuestions> Choices;
    BoundedTable<LimitLine, 16, kMaxQuestions> QLimit;

    explicit DefinitionBank(const Survey& survey)
        : QuestionCount(survey.QuestionCount),
          Questions(survey.Questions),
          Choices(survey.Choices),
          QLimit(survey.QLimit) {}

    // Makes this the survey's definition and computes its layout; the samples keep theirs. Run-time error 6, and a
    // survey as it was, when a size of the layout leaves 16 bits.
    void LoadInto(Survey& survey) const;
    // Exchanges the definitions, not the layout. Needs no memory.
    void Exchange(Survey& survey) noexcept;
};

}  // namespace quibra
