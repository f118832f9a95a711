#include "synthetic_survey.h"

#include <random>

#include "companion/limit_terms.h"
#include "core/answer_store.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kQuestions = 60;
constexpr int kColumnQuestion = 30;

}  // namespace

Survey MakeSyntheticSurvey(qint32 samples, bool texts) {
    Survey survey;
    NewSurveyHead(survey, QString());
    NewSurveyBody(survey);
    survey.QuestionCount = kQuestions;
    for (int q = 0; q < kQuestions; ++q) {
        QuestionRec& question = survey.Questions[q];
        question.SetText(u"質問%1\r本文\r\r"_s.arg(q + 1));
        question.ChoiceCount = static_cast<qint16>(3 + q * 28 / (kQuestions - 1));
        question.Anum = static_cast<qint16>(q % 3 != 2 ? 1 : std::min(5, question.ChoiceCount - 1));
        for (int c = 1; c < question.ChoiceCount; ++c)
            survey.Choices(c, q).Text = u"選択肢%1"_s.arg(c);
    }
    if (texts) survey.Choices(1, 0).Status = 1 << kEssay;
    RecalcLayout(survey);
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
    survey.Samples.Allocate(samples);

    std::mt19937 random(20261124);
    for (qint32 dno = 0; dno < samples; ++dno) {
        survey.Samples.SetIDno(dno, dno + 1);
        survey.Samples.SetPreLimitBits(dno, static_cast<qint16>(random()));
        qint16* bits = survey.Samples.Bits(dno);
        for (int q = 0; q < kQuestions; ++q) {
            const QuestionRec& question = survey.Questions[q];
            qint16 answers[5];
            auto count =
                static_cast<qint16>(random() % 10 == 0 ? 0 : 1 + random() % static_cast<unsigned>(question.Anum));
            for (int i = 0; i < count; ++i)
                answers[i] = static_cast<qint16>(1 + random() % static_cast<unsigned>(question.ChoiceCount - 1));
            maAno_pushC(survey.QIdx.Data(), q, bits, &count, answers);
        }
        if (texts && dno % 3 == 0) survey.Samples.SetEssay(dno, survey.QIdx[0].EssayStart, u"意見%1"_s.arg(dno));
    }
    return survey;
}

Survey& SyntheticSurvey() {
    static Survey survey = MakeSyntheticSurvey(kMillion);
    return survey;
}

qint64 AnswersOf(const Survey& survey) {
    std::vector<qint16> counts(kQuestions), answers(static_cast<size_t>(survey.AnswerSlots) + 1);
    qint64 sum = 0;
    for (qint32 dno = 0; dno < survey.SampleCount(); ++dno) {
        GetAllAnswers(survey, dno, counts.data(), answers.data());
        for (const qint16 count : counts)
            sum += count;
    }
    return sum;
}

TotalOption AllQuestions(const Survey& survey, int columns) {
    TotalOption option;
    option.ToQno = static_cast<qint16>(survey.QuestionCount - 1);
    option.LimitCount = static_cast<qint16>(columns);
    for (int column = 1; columns > 1 && column <= columns; ++column)
        option.Limits(1, column) = {kLimitAnd, PackPosition(kColumnQuestion, column % 17)};
    return option;
}

LimitList ThreeTerms() {
    LimitList list;
    list[1] = {kLimitAnd, PackPosition(9, 3)};
    list[2] = {kLimitOr, PackPosition(9, 5)};
    list[3] = {kLimitNot, PackPosition(40, 7)};
    return list;
}

}  // namespace quibra
