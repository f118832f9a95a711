#include "entry_survey.h"

#include <algorithm>

#include "core/answer_store.h"

using namespace Qt::StringLiterals;

namespace quibra {

Survey MakeEntrySurvey(int questions, int answers, qint32 samples) {
    const std::array<qint16, 4> choices = {1, 2, 3, 4};
    const std::array<QString, 4> texts = {u"自由に書いた回答"_s, u"もう一つ"_s, u"三つめ"_s, u"これで終わり"_s};
    Survey survey;
    NewSurveyHead(survey, QString());
    NewSurveyBody(survey);
    survey.QuestionCount = static_cast<qint16>(questions);
    for (int q = 0; q < questions; ++q) {
        survey.Questions[q].SetText(u"質問%1\r\r\r"_s.arg(q + 1));
        survey.Questions[q].Anum = static_cast<qint16>(answers);
        survey.Questions[q].ChoiceCount = 7;
        for (int c = 1; c < 7 && answers > 1; ++c)
            survey.Choices(c, q).Status = 1 << kEssay;
    }
    for (int line = 0; line < kLineStartEntries; ++line)
        survey.LineStart[line] = PackPosition(std::min(line, kMaxQuestions - 1), 0);
    RecalcLayout(survey);
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
    survey.Samples.Allocate(samples);
    for (qint32 dno = 0; dno < samples; ++dno) {
        survey.Samples.SetIDno(dno, dno + 1);
        for (int q = 0; q < questions; ++q)
            SetAnswersEssay(survey, dno, q, static_cast<qint16>(answers), choices.data(), texts.data());
    }
    survey.QuotaLast = std::max(survey.QuotaLast, 2 * samples);
    RecalcQuotaUsed(survey);
    return survey;
}

}  // namespace quibra
