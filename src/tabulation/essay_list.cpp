#include "tabulation/essay_list.h"

#include <array>
#include <utility>

#include "conditions/limit_lists.h"
#include "core/answer_store.h"
#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

bool NumberMatches(const TotalOption& option, const QString& text) {
    const double value = LeadingNumber(text);
    // Every text without a number reads as 0: only a written 0 counts as one.
    if (value == 0 && text != u"0"_s) return false;
    return option.NumLow <= value && value <= option.NumHigh;
}

bool CodeMatches(const TotalOption& option, const QString& text) {
    const QString code = text.toLower();
    return code >= option.CodeLow.toLower() && code <= option.CodeHigh.toLower();
}

bool EssayMatches(const TotalOption& option, const QString& essay, bool coded) {
    switch (option.CrossMode) {
        case kEssayEmpty:
            return essay.isEmpty();
        case kEssayFilled:
            return !essay.isEmpty();
        case kEssayHolds:
            return essay.contains(option.EssayText);
        case kEssayNumber:
            return NumberMatches(option, coded ? EssayCode(essay) : essay);
        case kEssayCode:
            return CodeMatches(option, coded ? EssayCode(essay) : essay);
        default:
            return true;
    }
}

}  // namespace

bool EssayMatch(const Survey& survey, qint32 dno, const TotalOption& option, const LimitList& list,
                std::vector<EssayHit>& hits) {
    hits.clear();
    if (!TestLimit(survey, dno, list)) return false;
    if (option.CrossMode < 0) {
        hits.push_back({});
        return true;
    }
    const int q = option.FromQno;
    qint16 count = 0;
    std::array<qint16, kMaxAnswers> answers{};
    GetAnswers(survey, dno, q, count, answers.data());
    const bool anyChoice = option.CrossQno == survey.Questions[q].ChoiceCount;
    for (int i = 0; i < count; ++i) {
        if (option.Rank > 0 && i != option.Rank - 1) continue;
        const qint16 c = answers[static_cast<size_t>(i)];
        if (!anyChoice && c != option.CrossQno) continue;
        QString essay = EssayOfAnswer(survey, dno, q, i);
        if (EssayMatches(option, essay, survey.Choices(c, q).Has(kCode))) hits.push_back({c, std::move(essay)});
    }
    return !hits.empty();
}

QString EssayCode(const QString& essay) {
    const qsizetype colon = essay.indexOf(u':');
    return colon < 0 ? u"?"_s : essay.first(colon);
}

}  // namespace quibra
