// get and set: the answers of one sample to one question.
#include <array>

#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/verbs.h"
#include "core/answer_store.h"
#include "core/sample_change.h"
#include "core/survey_losses.h"
#include "core/typed_number.h"
#include "entry/sheet_parser.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// One question's answers of a sample, in their order.
struct Answers {
    qint16 count = 0;
    std::array<qint16, kMaxAnswers> choices{};
    std::array<QString, kMaxAnswers> texts;
};

// "3" or "3/text".
void ReadAnswer(const Survey& survey, int q, const QString& word, Answers& answers) {
    const qsizetype slash = word.indexOf(u'/');
    const QString number = slash < 0 ? word : word.left(slash);
    bool ok = false;
    const int c = NarrowFigures(number).toInt(&ok);
    if (!ok) RefuseUsage(u"回答「%1」は番号でも「番号/記述」でもありません"_s.arg(word));
    const QuestionRec& question = survey.Questions[q];
    if (c < 1 || c >= question.ChoiceCount)
        throw Refusal{u"Q%1 に選択肢 %2 はありません（1から%3まで）"_s.arg(q + 1).arg(c).arg(question.ChoiceCount - 1)};
    if (slash >= 0 && !survey.Choices(c, q).Has(kEssay))
        throw Refusal{u"Q%1 の選択肢 %2 は記述付きではありません"_s.arg(q + 1).arg(c)};
    answers.choices[answers.count] = static_cast<qint16>(c);
    answers.texts[answers.count] = slash < 0 ? QString() : word.mid(slash + 1);
    ++answers.count;
}

Answers ReadAnswers(const Survey& survey, int q, const QStringList& words) {
    Answers answers;
    if (words == QStringList(u"0"_s)) return answers;
    if (words.size() > survey.Questions[q].Anum)
        throw Refusal{u"Q%1 の回答は%2つまでです"_s.arg(q + 1).arg(survey.Questions[q].Anum)};
    for (const QString& word : words)
        ReadAnswer(survey, q, word, answers);
    for (int i = 0; i < answers.count; ++i)
        if (answers.count > 1 && survey.Choices(answers.choices[static_cast<size_t>(i)], q).Has(kExclusive))
            throw Refusal{u"Q%1 の選択肢 %2 は他の回答と一緒には選べません"_s.arg(q + 1).arg(
                answers.choices[static_cast<size_t>(i)])};
    return answers;
}

// The sample's answers with these in the place of question q's, and where each stands in the words given.
WorkingSample WithAnswers(const Survey& survey, qint32 dno, int q, const Answers& answers) {
    WorkingSample all(survey);
    GetAllAnswersEssay(survey, dno, all.AnswerCount.data(), all.SlotCno.data(), all.SlotEssay.data());
    WorkingSample working(survey);
    size_t from = 0;
    size_t to = 0;
    int pos = 1;
    for (int i = 0; i < survey.QuestionCount; ++i) {
        const auto question = static_cast<size_t>(i);
        working.AnswerCount[question] = i == q ? answers.count : all.AnswerCount[question];
        for (int a = 0; a < working.AnswerCount[question]; ++a, ++to) {
            working.SlotCno[to] = i == q ? answers.choices[a] : all.SlotCno[from + static_cast<size_t>(a)];
            working.SlotEssay[to] = i == q ? answers.texts[a] : all.SlotEssay[from + static_cast<size_t>(a)];
            if (i != q) continue;
            working.SlotPos[to] = static_cast<qint16>(pos);
            working.SlotLen[to] = static_cast<qint16>(QString::number(answers.choices[a]).size());
            pos += working.SlotLen[to] + 1;
        }
        from += static_cast<size_t>(all.AnswerCount[question]);
    }
    return working;
}

// The answers of a line of the sheet take the same way.
void Store(SurveySession& session, qint32 dno, int q, Answers& answers) {
    Survey& survey = session.survey;
    QStringList words;
    CodeTables tables;
    for (int i = 0; i < answers.count; ++i) {
        QString& text = answers.texts[i];
        const QString message =
            text.isEmpty() ? QString() : ValidateAnswer(survey, q, answers.choices[i], text, {session.ui, tables});
        if (!message.isEmpty()) throw Refusal{message};
        words += QString::number(answers.choices[i]);
    }
    PlainReply box(words.join(u' '));
    ShowCorrectionBox notice(box, session.ui);
    WorkingSample working = WithAnswers(survey, dno, q, answers);
    SampleChange change(session.changes, ChangeCause::Command);
    change.Open(dno);
    StoreAnswers(survey, dno, working, &notice);
    // Texts of answers that are gone would come back with the next answer at their place.
    GetAnswers(survey, dno, q, answers.count, answers.choices.data());
    if (HasEssaySlots(survey, q))
        for (int i = answers.count; i < survey.Questions[q].Anum; ++i)
            survey.Samples.SetEssay(dno, survey.QIdx[q].EssayStart + i, QString());
}

int RunGet(const VerbLine& line, StandardOutput& out) {
    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    const Survey& survey = opened.Data();
    const int q = QuestionArgument(survey, line.Argument(2));
    const qint32 dno = SampleArgument(survey, line.Argument(1));
    Answers answers;
    GetAnswersEssay(survey, dno, q, answers.count, answers.choices.data(), answers.texts.data());
    QString text = answers.count == 0 ? u"0\n"_s : QString();
    for (int i = 0; i < answers.count; ++i) {
        text += QString::number(answers.choices[i]);
        if (!answers.texts[i].isEmpty()) text += u'/' + answers.texts[i];
        text += u'\n';
    }
    out.Print(text);
    return kDone;
}

// Where a text would lose characters, before anything is stored.
void CheckLosses(SurveySession& session, int q, const Answers& answers) {
    QList<TextLosses> texts;
    for (int i = 0; i < answers.count; ++i)
        texts.append({EssayPlace(q, answers.choices[static_cast<size_t>(i)]),
                      CodePageLosses(answers.texts[static_cast<size_t>(i)])});
    if (!AgreesToLosses(session.ui, texts)) throw Refusal{QString()};
}

int RunSet(const VerbLine& line, StandardOutput& out) {
    OpenedSurvey opened(line, line.Argument(0), Access::Write);
    const Survey& survey = opened.Data();
    const int q = QuestionArgument(survey, line.Argument(2));
    const qint32 dno = SampleArgument(survey, line.Argument(1));
    Answers answers = ReadAnswers(survey, q, line.Arguments().mid(3));
    CheckLosses(opened.Session(), q, answers);
    Store(opened.Session(), dno, q, answers);
    opened.Session().ChangedOn();
    return opened.Save(out);
}

}  // namespace

Verb GetVerb() {
    return {
        .name = u"get"_s,
        .summary = u"サンプルの回答を読む"_s,
        .arguments = u"FILE ID Q"_s,
        .text =
            u"サンプル ID の質問 Q への回答を、1行に1つ「番号」か「番号/記述」で表示します。"_s
            u"無回答は 0 です。"_s,
        .english = u"Prints a sample's answers to a question, one a line, as number or number/text; 0 is no answer."_s,
        .options = SurveyOptions(),
        .run = RunGet};
}

Verb SetVerb() {
    return {.name = u"set"_s,
            .summary = u"サンプルの回答を書き換えて保存する"_s,
            .arguments = u"FILE ID Q ANSWER..."_s,
            .text =
                u"サンプル ID の質問 Q への回答を ANSWER に置き換えて保存します。"_s
                u"ANSWER は「番号」か「番号/記述」、0 だけなら無回答にします。"_s
                u"元のファイルは拡張子 qb~ で残ります。FILE が - なら標準入力から読み、標準出力に書きます。"_s,
            .english =
                u"Replaces a sample's answers to a question and saves the survey. Answers are written as "
                u"get prints them; a single 0 is no answer. The survey as it was stays beside it, with "
                u"the suffix qb~. With FILE - the survey comes from standard input and goes to standard output."_s,
            .options = SurveyOptions(),
            .run = RunSet};
}

}  // namespace quibra
