#include "design/survey_properties.h"

#include <cmath>

#include "core/answer_store.h"
#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr double kQuotaEnd = 4294967296.0;
constexpr qint32 kSamplesATurn = 256;

}  // namespace

AboutTexts AboutOf(const Survey& survey) {
    return {.title = survey.Title,
            .editor = survey.Editor,
            .fileName = survey.FileName,
            .usedBytes = QString::number(qint64{survey.SampleRecBytes} * survey.SampleCount()) + u" byte"_s,
            .sampleBytes = QString::number(survey.SampleRecBytes) + u" byte"_s,
            .samples = QString::number(survey.SampleCount()) + u" 人"_s,
            .quotaFirst = QString::number(survey.QuotaFirst),
            .quotaLast = QString::number(survey.QuotaLast),
            .quotaUsed = survey.QuotaUsed < 0 ? u"(未発行)"_s : QString::number(survey.QuotaUsed)};
}

void SetTitleAndEditor(SurveySession& session, const QString& title, const QString& editor) {
    if (title == session.survey.Title && editor == session.survey.Editor) return;
    session.survey.Title = title;
    session.survey.Editor = editor;
    session.ChangedOn();
    session.Refresh(SurveySession::Change::File);
}

bool SetQuota(Survey& survey, UserInterface& ui, const QString& from, const QString& to) {
    const double first = LeadingNumber(from);
    const double last = LeadingNumber(to);
    if (first >= kQuotaEnd || last >= kQuotaEnd) {
        ui.Message(u"割り当ての範囲は 0 から "_s + NumberText(kQuotaEnd - 1) + u" までです。"_s, kWarning);
        return false;
    }
    const qint32 least = RoundToInt32(std::min(first, last));
    const qint32 most = RoundToInt32(std::max(first, last));
    survey.QuotaFirst = least;
    survey.QuotaLast = most;
    RecalcQuotaUsed(survey);
    return true;
}

MeasureRun::MeasureRun(const Survey& survey, UserInterface& ui, std::function<void(const MeasureRun&)> show)
    : survey_(survey),
      ui_(ui),
      show_(std::move(show)),
      counts_(static_cast<size_t>(survey.QuestionCount) + 1),
      answers_(static_cast<size_t>(survey.AnswerSlots) + 1) {}

void MeasureRun::Run() {
    for (next_ = 0; next_ < survey_.SampleCount() && !stopped_;) {
        Count(next_++);
        if (next_ % kSamplesATurn != 0) continue;
        show_(*this);
        ui_.LetEventsRun();
    }
    ended_ = !stopped_;
    show_(*this);
}

void MeasureRun::Count(qint32 dno) {
    GetAllAnswers(survey_, dno, counts_.data(), answers_.data());
    const qint16* answer = answers_.data();
    for (int q = 0; q < survey_.QuestionCount; ++q) {
        const qint16 count = counts_[static_cast<size_t>(q)];
        figures_.answers += count;
        switch (survey_.Questions[q].LabelKind) {
            case 0:
                figures_.dotted += std::count_if(answer, answer + count, [](qint16 c) { return c > 9; });
                break;
            case 1:
                figures_.letters += std::count_if(answer, answer + count, [](qint16 c) { return c > 9; });
                break;
            case 2:
                figures_.kana += std::count_if(answer, answer + count, [](qint16 c) { return c >= 1; });
                break;
            default:
                break;
        }
        answer += count;
    }
    if (!survey_.Samples.Essays(dno).empty()) CountTexts(dno);
}

// Texts of answers that are there; others may lie behind them.
void MeasureRun::CountTexts(qint32 dno) {
    const qint16* answer = answers_.data();
    for (int q = 0; q < survey_.QuestionCount; ++q) {
        const int start = survey_.QIdx[q].EssayStart;
        const int count = counts_[static_cast<size_t>(q)];
        for (int i = 0; i < count && start + i < survey_.QIdx[q + 1].EssayStart; ++i)
            if (answer[i] < kMaxChoices && survey_.Choices(answer[i], q).Has(kEssay))
                figures_.characters += survey_.Samples.Essay(dno, start + i).size();
        answer += count;
    }
}

void MeasureRun::Cancel() {
    if (ui_.Message(u"計測を中断しますか？"_s, kOkCancel) == Answer::Ok) stopped_ = true;
}

QString MeasureRun::AnswerText() const {
    const QString total = QString::number(figures_.answers);
    if (ended_) return total + u" 個"_s;
    // A share below half a per cent shows no digit.
    const qint32 last = std::max(next_ - 1, 0);
    const auto percent = std::lround(100.0 * last / std::max(survey_.SampleCount(), 1));
    return total + u" / "_s + (percent == 0 ? QString() : QString::number(percent)) + u'%';
}

QString MeasureRun::EssayText() const {
    const QString total = QString::number(figures_.characters);
    return ended_ ? total + u" 文字"_s : total;
}

}  // namespace quibra
