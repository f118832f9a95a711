#include "entry/sample_words.h"

#include <array>

#include "conditions/limit_lists.h"
#include "core/answer_store.h"
#include "core/labels.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kCrLf = u"\r\n"_s;

QString AnswersInWords(const Survey& survey, qint32 dno, int q) {
    qint16 count = 0;
    std::array<qint16, kMaxAnswers> choices{};
    std::array<QString, kMaxAnswers> essays;
    GetAnswersEssay(survey, dno, q, count, choices.data(), essays.data());
    QString text;
    for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
        if (i > 0) text += u", "_s;
        text += ChoiceLabel(survey, q, choices[i], true, false);
        if (!essays[i].isEmpty()) text += u'/' + essays[i] + u"/ "_s;
    }
    return text;
}

}  // namespace

QString SampleWords(const Survey& survey, qint32 dno, int fromQ, int endQ, bool bodies) {
    QString text;
    for (int q = fromQ; q < endQ; ++q) {
        text += QuestionLabel(survey, q, {.name = true, .body = bodies}) + (bodies ? kCrLf + u"---- "_s : u" : "_s);
        text += QuestionApplies(survey, dno, q) ? AnswersInWords(survey, dno, q) : u"(該当せず)"_s;
        text += kCrLf;
        if (bodies) text += kCrLf;
    }
    return text;
}

}  // namespace quibra
