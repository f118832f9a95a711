#include "support/random_survey.h"

#include <algorithm>

#include "companion/limit_terms.h"
#include "core/answer_store.h"

using namespace Qt::StringLiterals;

namespace quibra {

int Pick(Random& random, int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
}

Survey MakeRandomSurvey(Random& random, int questions, qint32 samples) {
    Survey survey;
    NewSurveyHead(survey, QString());
    NewSurveyBody(survey);
    survey.QuestionCount = static_cast<qint16>(Pick(random, 1, questions));
    for (int q = 0; q < survey.QuestionCount; ++q) {
        QuestionRec& question = survey.Questions[q];
        question.SetText(u"質問%1\r本文%1\r\r"_s.arg(q + 1));
        question.ChoiceCount = static_cast<qint16>(Pick(random, 0, 5) == 0 ? Pick(random, 2, 128) : Pick(random, 2, 9));
        question.Anum = static_cast<qint16>(Pick(random, 0, 2) == 0 ? Pick(random, 1, 6) : 1);
        for (int c = 0; c < question.ChoiceCount; ++c)
            survey.Choices(c, q).Text = u"選択肢%1"_s.arg(c);
    }
    RecalcLayout(survey);
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
    survey.Samples.Allocate(samples);
    for (qint32 dno = 0; dno < samples; ++dno) {
        survey.Samples.SetIDno(dno, dno * 3 - 7);
        survey.Samples.SetPreLimitBits(dno, static_cast<qint16>(random()));
        for (int q = 0; q < survey.QuestionCount; ++q) {
            const QuestionRec& question = survey.Questions[q];
            auto count = static_cast<qint16>(Pick(random, 0, question.Anum));
            qint16 answers[6];
            const int largest = (1 << survey.QIdx[q].BitWidth) - 1;
            for (int i = 0; i < count; ++i)
                answers[i] = static_cast<qint16>(Pick(random, 0, 40) == 0 ? Pick(random, 0, largest)
                                                                          : Pick(random, 1, question.ChoiceCount - 1));
            maAno_pushC(survey.QIdx.Data(), q, survey.Samples.Bits(dno), &count, answers);
        }
    }
    return survey;
}

namespace {

void BreakLines(Random& random, Survey& survey, bool within) {
    survey.LineStart.Fill(0);
    int line = 1;
    for (int q = 0; q <= survey.QuestionCount; ++q)
        for (int a = 0; a < (q < survey.QuestionCount ? survey.Questions[q].Anum : 1); ++a)
            if (q == survey.QuestionCount || (a == 0 && q > 0 && Pick(random, 0, 1) == 0) ||
                (a > 0 && within && Pick(random, 0, 5) == 0))
                survey.LineStart[line++] = PackPosition(q, a);
    for (int q = survey.QuestionCount; line < kLineStartEntries; ++line)
        survey.LineStart[line] = PackPosition(std::min(++q, kMaxQuestions - 1), 0);
}

QString RandomText(Random& random) {
    const QString characters = u"0123 abcｱあ漢[]{}*.-¶▼\\/:\"'"_s;
    QString text;
    for (int i = Pick(random, 1, 12); i > 0; --i)
        text += characters[Pick(random, 0, static_cast<int>(characters.size()) - 1)];
    return text.contains(u"*/"_s) || text.startsWith(u'*') ? u"?"_s : text;
}

}  // namespace

void MakeTypable(Random& random, Survey& survey, bool within) {
    constexpr int kMostSymbols[] = {127, 35, 45, 26};
    for (int q = 0; q < survey.QuestionCount; ++q) {
        QuestionRec& question = survey.Questions[q];
        const int kind = Pick(random, 0, 3);
        question.LabelKind = static_cast<qint16>(question.ChoiceCount - 1 <= kMostSymbols[kind] ? kind : 0);
        for (int c = 1; c < question.ChoiceCount; ++c) {
            ChoiceRec& choice = survey.Choices(c, q);
            if (Pick(random, 0, 3) == 0)
                choice.Status = static_cast<qint16>(1 << kEssay | Pick(random, 0, 1) << kNumber);
            if (Pick(random, 0, 9) == 0) choice.Status = static_cast<qint16>(choice.Status | 1 << kOther);
            if (Pick(random, 0, 9) == 0) choice.Status = static_cast<qint16>(choice.Status | 1 << kExclusive);
            choice.Low = -50;
            choice.High = 1000;
        }
        survey.Choices(0, q).Status = 1 << kExclusive;
    }
    BreakLines(random, survey, within);
    const qint32 count = survey.SampleCount();
    RecalcLayout(survey);
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
    survey.Samples.Allocate(count);
    for (qint32 dno = 0; dno < count; ++dno) {
        survey.Samples.SetIDno(dno, dno + 1);
        for (int q = 0; q < survey.QuestionCount; ++q) {
            std::vector<qint16> answers(1);
            std::vector<QString> essays;
            for (int i = Pick(random, 0, survey.Questions[q].Anum); i > 0; --i) {
                const auto answer = static_cast<qint16>(Pick(random, 1, survey.Questions[q].ChoiceCount - 1));
                const ChoiceRec& choice = survey.Choices(answer, q);
                if (std::find(answers.begin(), answers.end(), answer) != answers.end()) continue;
                if (choice.Has(kExclusive) && !essays.empty()) continue;
                answers.insert(answers.end() - 1, answer);
                essays.push_back(choice.Has(kNumber)  ? QString::number(Pick(random, -50, 1000))
                                 : choice.Has(kEssay) ? RandomText(random)
                                                      : QString());
                if (choice.Has(kExclusive)) break;
            }
            SetAnswersEssay(survey, dno, q, static_cast<qint16>(essays.size()), answers.data(), essays.data());
        }
    }
}

std::array<LimitLine, 16> MakeRandomColumn(Random& random, const Survey& survey, int lines) {
    std::array<LimitLine, 16> column{};
    if (Pick(random, 0, 9) == 0) column[0].b = static_cast<qint16>(1 << Pick(random, 0, 15));
    const int count = Pick(random, 0, std::min(lines, 14));
    for (int i = 1; i <= count; ++i) {
        const bool absurd = Pick(random, 0, 14) == 0;
        const bool opens = i == 1 && Pick(random, 0, 7) > 0;
        const int kind = absurd ? Pick(random, 0, 15) : opens ? kLimitAnd : Pick(random, kLimitOr, kLimitNot);
        const int rank = Pick(random, 0, 4) == 0 ? Pick(random, 0, 3) : 0;
        const int q = absurd ? Pick(random, 0, 511) : Pick(random, 0, survey.QuestionCount - 1);
        const int choices = q < survey.QuestionCount ? survey.Questions[q].ChoiceCount : 128;
        column[static_cast<size_t>(i)].a = static_cast<qint16>(rank * 16 + kind);
        column[static_cast<size_t>(i)].b = static_cast<qint16>(q * 128 + Pick(random, 0, choices - 1));
    }
    return column;
}

}  // namespace quibra
