#include "core/survey.h"

#include <bit>

#include "core/code_page.h"
#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr qint16 kNewCorrectFlags = 15;

// The one character of a code, where a symbol kind counts on from a letter.
QString CodeText(int code) {
    return QString(CharacterOfCode(code));
}

bool Between(int value, int low, int high) {
    return low <= value && value <= high;
}

}  // namespace

void NewSurveyHead(Survey& survey, const QString& directory) {
    survey.Samples.Allocate(0);
    RecalcQuotaUsed(survey);
    survey.FileName = directory + u"new.qb"_s;
    survey.Password.clear();
    survey.LockLevel = 0;
    survey.DistName = u"newfile"_s;
    survey.DistQno = 0;
    survey.EssayFull = 0;
    survey.ExternDLL.clear();
}

void NewSurveyBody(Survey& survey) {
    survey.Title = u"新規アンケート"_s;
    survey.Editor = u"＊＊＊＊"_s;
    survey.QuestionCount = 1;
    survey.Questions = {};
    survey.Choices = {};
    survey.QLimit = {};
    QuestionRec& question = survey.Questions[0];
    question.SetText(u"質問1\r質問文はここで書き込んでいく･･･\r"_s);
    question.Anum = 1;
    question.LabelKind = 0;
    question.ChoiceCount = 2;
    // Unlike in a survey from a file, 無回答 of the very first question is not exclusive.
    survey.Choices(0, 0).Text = u"無回答"_s;
    survey.Choices(1, 0).Text = u"選択肢はここで･･･"_s;
    survey.LineStart.Fill(0);
    survey.LineFlag.Fill(false);
    survey.PreLimit = {};
    survey.CorrectFlags = kNewCorrectFlags;
    RecalcLayout(survey);
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
}

void RecalcLayout(Survey& survey) {
    survey.QIdx = {};
    survey.AnswerSlots = 0;
    for (int q = 0; q < survey.QuestionCount; ++q) {
        const QuestionRec& question = survey.Questions[q];
        if (question.ChoiceCount <= 0) throw RuntimeError(kErrorInvalidCall);
        CheckSubscript(question.ChoiceCount, kMaxChoices + 1);
        CheckSubscript(question.Anum, kMaxAnswers + 1);
        AnswerLayoutRec& layout = survey.QIdx[q];
        AnswerLayoutRec& next = survey.QIdx[q + 1];
        layout.Anum = question.Anum;
        layout.BitWidth = static_cast<qint16>(std::bit_width(static_cast<unsigned>(question.ChoiceCount)));
        next.BitStart = CheckedInt16(layout.BitStart + layout.Anum * layout.BitWidth);
        next.EssayStart = CheckedInt16(layout.EssayStart + (HasEssaySlots(survey, q) ? layout.Anum : 0));
        survey.AnswerSlots = CheckedInt16(survey.AnswerSlots + layout.Anum);
    }
    const AnswerLayoutRec& end = survey.QIdx[survey.QuestionCount];
    survey.SampleBytes = CheckedInt16(CheckedInt16(end.BitStart + 15) / 16 * 2);
    survey.EssaySlots = end.EssayStart;
    survey.SampleRecBytes = CheckedInt16(survey.SampleBytes + 6 + CheckedInt16(survey.EssaySlots * 4));
}

void RecalcQuotaUsed(Survey& survey) {
    survey.QuotaUsed = survey.SampleCount() == 0 ? -1 : survey.QuotaFirst;
    const qint32* ids = survey.Samples.IDs();
    for (qint32 dno = 0; dno < survey.SampleCount(); ++dno)
        if (ids[dno] > survey.QuotaUsed && ids[dno] <= survey.QuotaLast) survey.QuotaUsed = ids[dno];
}

int GetChoiceStatus(const Survey& survey, int q, int c, int n) {
    CheckSubscript(n, 17);
    return (survey.Choices(c, q).Status >> n) & 1 ? -1 : 0;
}

void ToggleChoiceStatus(Survey& survey, int q, int c, int n) {
    CheckSubscript(n, 16);
    qint16& status = survey.Choices(c, q).Status;
    status = static_cast<qint16>(status ^ (1 << n));
}

bool HasEssaySlots(const Survey& survey, int q) {
    for (int c = 0; c < survey.Questions[q].ChoiceCount; ++c)
        if (survey.Choices(c, q).Has(kEssay)) return true;
    return false;
}

void SetChoiceFromFile(Survey& survey, int q, int c, const QString& text) {
    ChoiceRec& choice = survey.Choices(c, q);
    const qsizetype first = text.indexOf(u'\r');
    choice.Text = text.left(first);
    if (first < 0) return;
    const qsizetype second = text.indexOf(u'\r', first + 1);
    if (second < 0) {
        choice.CodeText = text.mid(first + 1);
        return;
    }
    choice.Low = LeadingNumber(QStringView(text).mid(first + 1, second - first - 1));
    choice.High = LeadingNumber(QStringView(text).mid(second + 1));
}

QString ChoiceToFile(const Survey& survey, int q, int c) {
    const ChoiceRec& choice = survey.Choices(c, q);
    if (!choice.CodeText.isEmpty()) return choice.Text + u'\r' + choice.CodeText;
    return choice.Text + u'\r' + NumberText(choice.Low) + u'\r' + NumberText(choice.High);
}

QString ChoiceToSymbol(const Survey& survey, int q, int c) {
    switch (survey.Questions[q].LabelKind) {
        case 0:
            return c < 10 ? QString::number(c) : u"."_s + QString::number(c) + u'.';
        case 1:
            return c < 10 ? QString::number(c) : CodeText(c + 87);
        case 2:
            return c == 0 ? u"0"_s : CodeText(c + 176);
        case 3:
            return c <= 0 ? u"0"_s : CodeText(c + 64);
        default:
            return QString();
    }
}

qint16 SymbolToChoice(const Survey& survey, int q, const QString& token) {
    const int kind = survey.Questions[q].LabelKind;
    if (!Between(kind, 0, 3)) return 0;
    if (token.size() != 1) return RoundToInt16(LeadingNumber(token));

    const int code = CharacterCode(token[0]);
    int choice = 0;
    if (Between(code, '0', '9'))
        choice = code - '0';
    else if (kind == 3)
        choice = Between(code, 'A', 'Z') ? code - 64 : Between(code, 'a', 'z') ? code - 96 : 0;
    else if (Between(code, 'A', 'Z'))
        choice = code - 55;
    else if (Between(code, 'a', 'z'))
        choice = code - 87;
    else if (Between(code, 177, 221))
        choice = code - 176;
    return static_cast<qint16>(choice);
}

qint16 PackPosition(int q, int c) {
    const qint64 position = static_cast<qint64>(q) * 128 + c;
    if (position > 65535) throw RuntimeError(kErrorOverflow);
    return CheckedInt16(position >= 32768 ? position - 65536 : position);
}

void UnpackPosition(qint16 position, int& q, int& c) {
    q = static_cast<quint16>(position) / 128;
    c = PositionAnswer(position);
}

int PositionAnswer(qint16 position) {
    return static_cast<quint16>(position) % 128;
}

int LineStartEnd(const Survey& survey) {
    int end = 1;
    while (survey.LineStart[end] != survey.LineStart[end - 1])
        ++end;
    return end;
}

}  // namespace quibra
