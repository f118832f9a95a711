#include "design/question_listing.h"

#include <QScopeGuard>

#include "core/attempt.h"
#include "core/code_page.h"
#include "core/labels.h"
#include "core/whole_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kCrLf = u"\r\n"_s;
const QString kMagic = u"Velmor Quiabra Questionaire Text Data Since 96.7A"_s;
const QString kAnyFile = u"全てのファイル(*.*)|*.*|"_s;
constexpr LabelParts kAllParts{.number = true, .name = true, .limit = true, .body = true, .answers = true};

QString Field(const QString& text) {
    return text + u',';
}

QString Field(int number) {
    return Field(QString::number(number));
}

// The lines of a condition and the closing one, each as its first word and the two parts of its second one.
QString LimitFields(LimitColumn column) {
    QString fields;
    for (size_t k = 1; k < column.size() && column[k].a != 0; ++k) {
        int q = 0;
        int c = 0;
        UnpackPosition(column[k].b, q, c);
        fields += Field(column[k].a) + Field(q) + Field(c);
    }
    return fields + u"0,0,0,"_s;
}

void WriteText(SurveySession& session, const QString& text) {
    const QString path = session.ui.FileBox(QString(), kAnyFile, true);
    if (path.isEmpty()) return;
    const auto write = [&] {
        session.ui.Busy(true);
        const auto notBusy = qScopeGuard([&] { session.ui.Busy(false); });
        WriteWholeFile(path, EncodeCodePage(text));
    };
    if (!Attempt(session.ui, write)) return;
    session.ui.Beep();
    session.ui.Message(u"終了しました"_s, kOkOnly);
}

}  // namespace

QString QuestionListing(const Survey& survey, int q) {
    QString text = QuestionLabel(survey, q, kAllParts) + kCrLf;
    for (int c = 0; c < survey.Questions[q].ChoiceCount; ++c)
        text += ChoiceLabel(survey, q, c, true, true) + kCrLf;
    return text;
}

QString QuestionsListing(const Survey& survey, int first, int last) {
    QString text;
    for (int q = first; q <= last; ++q)
        text += QuestionListing(survey, q) + kCrLf;
    return text;
}

QString QuestionText(const Survey& survey) {
    QString text;
    for (const QString& line :
         {kMagic, survey.FileName, survey.Title, survey.Editor, QString::number(survey.QuestionCount)})
        text += line + kCrLf;
    for (int q = 0; q < survey.QuestionCount; ++q) {
        const QuestionRec& question = survey.Questions[q];
        text += Field(q) + Field(QuestionName(survey, q)) + Field(QuestionLabel(survey, q, {.body = true})) +
                Field(question.Anum) + Field(question.LabelKind) + Field(question.ChoiceCount) +
                LimitFields(survey.QLimit.Column(q)) + kCrLf;
        for (int c = 1; c < question.ChoiceCount; ++c)
            text += Field(q) + Field(c) + Field(ChoiceLabel(survey, q, c, false, true)) +
                    QString::number(survey.Choices(c, q).Status) + kCrLf;
        text += kCrLf;
    }
    return text;
}

void OutputListing(SurveySession& session) {
    const Survey& survey = session.survey;
    const QStringList questions = PlainQuestionList(survey);
    const int first = session.ui.QuestionBox(u"どの質問から？"_s, questions, 0);
    if (first < 0) return;
    const QString from = QuestionLabel(survey, first, {.name = true, .body = true});
    const int last = session.ui.QuestionBox(from + u"からどの質問までですか？"_s, questions, first);
    if (last < 0) return;
    WriteText(session, QuestionsListing(survey, first, last));
}

void OutputQuestionText(SurveySession& session) {
    WriteText(session, QuestionText(session.survey));
}

}  // namespace quibra
