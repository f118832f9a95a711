#include "support/survey_builder.h"

#include "core/answer_store.h"

using namespace Qt::StringLiterals;

namespace quibra {

SurveyBuilder::SurveyBuilder() {
    NewSurveyHead(survey_, QString());
    NewSurveyBody(survey_);
    survey_.QuestionCount = 0;
}

int SurveyBuilder::Question(const QString& name, const QString& body, int anum, const QStringList& choices) {
    const int q = survey_.QuestionCount++;
    QuestionRec& question = survey_.Questions[q];
    question.SetText(name + u'\r' + body + u"\r\r"_s);
    question.Anum = static_cast<qint16>(anum);
    question.LabelKind = 0;
    question.ChoiceCount = static_cast<qint16>(choices.size() + 1);
    survey_.Choices(0, q).Text = u"無回答"_s;
    Status(q, 0, {kExclusive});
    for (int c = 1; c < question.ChoiceCount; ++c)
        survey_.Choices(c, q).Text = choices[c - 1];
    return q;
}

void SurveyBuilder::Status(int q, int c, std::initializer_list<StatusBit> bits) {
    survey_.Choices(c, q).Status = 0;
    for (const StatusBit bit : bits)
        survey_.Choices(c, q).Status = static_cast<qint16>(survey_.Choices(c, q).Status | 1 << bit);
}

void SurveyBuilder::QuestionLimit(int q, std::initializer_list<LimitLine> lines) {
    std::copy(lines.begin(), lines.end(), survey_.QLimit.Column(q).begin() + 1);
}

void SurveyBuilder::PreLimit(int slot, std::initializer_list<LimitLine> lines) {
    std::copy(lines.begin(), lines.end(), survey_.PreLimit.Column(slot).begin() + 1);
}

void SurveyBuilder::Lines(std::initializer_list<std::pair<int, int>> starts) {
    int line = 0;
    int q = 0;
    for (const auto& [question, answer] : starts) {
        survey_.LineStart[line++] = PackPosition(question, answer);
        q = question;
    }
    for (; line < kLineStartEntries; ++line)
        survey_.LineStart[line] = PackPosition(std::min(++q, kMaxQuestions - 1), 0);
}

void SurveyBuilder::Sample(const std::vector<std::vector<GivenAnswer>>& answers) {
    Get();
    const qint32 dno = survey_.SampleCount();
    survey_.Samples.Insert(dno, dno + 1);
    for (size_t q = 0; q < answers.size(); ++q) {
        std::vector<qint16> choices(1);
        std::vector<QString> essays;
        for (const GivenAnswer& answer : answers[q]) {
            choices.insert(choices.end() - 1, answer.Cno);
            essays.push_back(answer.essay);
        }
        SetAnswersEssay(survey_, dno, static_cast<int>(q), static_cast<qint16>(essays.size()), choices.data(),
                        essays.data());
    }
    RecalcPreLimitBits(survey_, dno);
}

LimitLine SurveyBuilder::Line(int kind, int q, int c, int rank) {
    return {static_cast<qint16>(rank * 16 + kind), PackPosition(q, c)};
}

Survey& SurveyBuilder::Get() {
    if (!laidOut_) {
        RecalcLayout(survey_);
        survey_.Samples.SetLayout(survey_.SampleBytes, survey_.EssaySlots);
        laidOut_ = true;
    }
    return survey_;
}

}  // namespace quibra
