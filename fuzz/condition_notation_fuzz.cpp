// Any text as a condition of a small survey: it is read into lines that the survey can tell in words and test, or
// refused with a message about a part of it.
#include "conditions/condition_notation.h"

#include <cstdlib>

#include "companion/limit_terms.h"
#include "core/labels.h"

using namespace quibra;
using namespace Qt::StringLiterals;

namespace {

Survey SmallSurvey() {
    Survey survey;
    survey.QuestionCount = 12;
    for (int q = 0; q < survey.QuestionCount; ++q) {
        survey.Questions[q].SetText(u"質問文\r\r\r"_s);
        survey.Questions[q].Anum = static_cast<qint16>(1 + q % 3);
        survey.Questions[q].ChoiceCount = static_cast<qint16>(2 + q * 9);
    }
    RecalcLayout(survey);
    return survey;
}

void Require(bool claim) {
    if (!claim) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const Survey survey = SmallSurvey();
    static const std::vector<qint16> bits(static_cast<size_t>(survey.SampleBytes / 2), 0x2A4D);
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    LimitList list;
    NotationError error;
    if (ParseCondition(survey, text, list, error)) {
        Require(list.LineCount() <= 14);
        for (int i = 1; i <= list.LineCount(); ++i) {
            const int q = PositionQuestion(list[i].b);
            Require(q < survey.QuestionCount && LimitRankOf(list[i]) <= survey.Questions[q].Anum);
            Require(PositionChoice(list[i].b) < survey.Questions[q].ChoiceCount);
            Require(!LimitLineText(survey, i, list).isEmpty());
        }
        Require(!LimitText(survey, list, true).isEmpty());
        lmDoC(list.Data(), survey.QIdx.Data(), 0x55AA, bits.data());
    } else {
        Require(!error.message.isEmpty() && error.length > 0 && error.position >= 0);
        Require(error.position + error.length <= text.size());
        Require(NotationErrorText(text, error).endsWith(u'^'));
    }
    return 0;
}
