#include "design/definition_bank.h"

#include <utility>

namespace quibra {

namespace {

void Assign(const DefinitionBank& bank, Survey& survey) {
    survey.QuestionCount = bank.QuestionCount;
    survey.Questions = bank.Questions;
    survey.Choices = bank.Choices;
    survey.QLimit = bank.QLimit;
}

}  // namespace

void DefinitionBank::LoadInto(Survey& survey) const {
    const DefinitionBank before(survey);
    const auto layout = survey.QIdx;
    const qint16 sizes[] = {survey.AnswerSlots, survey.EssaySlots, survey.SampleBytes, survey.SampleRecBytes};
    Assign(*this, survey);
    try {
        RecalcLayout(survey);
    } catch (const RuntimeError&) {
        Assign(before, survey);
        survey.QIdx = layout;
        survey.AnswerSlots = sizes[0];
        survey.EssaySlots = sizes[1];
        survey.SampleBytes = sizes[2];
        survey.SampleRecBytes = sizes[3];
        throw;
    }
}

void DefinitionBank::Exchange(Survey& survey) noexcept {
    std::swap(QuestionCount, survey.QuestionCount);
    std::swap(Questions, survey.Questions);
    std::swap(Choices, survey.Choices);
    std::swap(QLimit, survey.QLimit);
}

}  // namespace quibra
