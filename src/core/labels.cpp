#include "core/labels.h"

#include <algorithm>

#include "companion/limit_terms.h"
#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr QChar kCr = u'\r';

constexpr LabelParts kListParts{.name = true, .body = true, .answers = true};
constexpr LabelParts kFullParts{.number = true, .name = true, .limit = true, .body = true, .answers = true};

// Place of the next CR from `start` on, counted from 1; 0 when there is none.
qsizetype CrPlace(const QString& text, qsizetype start) {
    return text.indexOf(kCr, start) + 1;
}

QString RankText(const LimitLine& line) {
    const int rank = LimitRankOf(line);
    return rank > 0 ? QString::number(rank) + u"位に"_s : QString();
}

QString KindText(const LimitLine& line) {
    switch (LimitKindOf(line)) {
        case kLimitOr:
            return u"又は"_s;
        case kLimitTo:
            return u"から"_s;
        case kLimitAnd:
            return u"の"_s;
        case kLimitNot:
            return u"，除く"_s;
        default:
            return QString();
    }
}

// A line of a damaged file may name a question that is not there, even one beyond what a survey can hold. It is told by
// its place in every text, so that it can be found and deleted.
QString AbsentAnswerText(int q, int c) {
    return u"質問%1(%2)"_s.arg(q + 1).arg(c);
}

// The same for a choice that its question doesn't have.
QString AbsentChoiceText(const Survey& survey, int q, int c) {
    return QuestionName(survey, q) + u"(%1)"_s.arg(c);
}

// Lines in front of the closing one.
std::span<const LimitLine> Lines(LimitColumn column) {
    const auto end = std::find_if(column.begin() + 1, column.end(), [](const LimitLine& line) { return line.a == 0; });
    return {column.begin() + 1, end};
}

int Depth(const Survey& survey, int q) {
    return survey.QLimit(0, q).a;
}

// True when the question hangs under the same condition as the nearest one before it that is no deeper.
bool ContinuesBranch(const Survey& survey, int q) {
    int p = q - 1;
    while (p >= 0 && Depth(survey, p) > Depth(survey, q))
        --p;
    return p >= 0 && std::ranges::equal(Lines(survey.QLimit.Column(p)), Lines(survey.QLimit.Column(q)));
}

QString TreePrefix(const Survey& survey, int q) {
    const int depth = Depth(survey, q);
    if (depth == 0) return QString();
    return u"|  "_s.repeated(depth - 1) + (ContinuesBranch(survey, q) ? u"|  "_s : u"+--"_s);
}

QStringList QuestionList(const Survey& survey, LabelParts parts) {
    QStringList list;
    for (int q = 0; q < survey.QuestionCount; ++q)
        list += QuestionLabel(survey, q, parts);
    return list;
}

}  // namespace

QString QuestionName(const Survey& survey, int q) {
    const QString& text = survey.Questions[q].Text;
    const qsizetype first = CrPlace(text, 0);
    return first > 1 ? text.left(first - 1) : u"質問"_s + QString::number(q + 1);
}

QString QuestionBody(const Survey& survey, int q) {
    const QString& text = survey.Questions[q].Text;
    const qsizetype first = CrPlace(text, 0);
    const qsizetype second = CrPlace(text, first);
    // An unnamed question's body is cut from the very start, so that it begins with the CR of the name.
    const qsizetype start = first < 2 ? 0 : first;
    return second > start ? text.mid(start, second - start - 1) : text;
}

QString QuestionLimitText(const Survey& survey, int q, bool raw) {
    const QString& text = survey.Questions[q].Text;
    const qsizetype first = CrPlace(text, 0);
    const qsizetype second = first > 0 ? CrPlace(text, first) : 0;
    const qsizetype third = second > 0 ? CrPlace(text, second) : 0;
    const QString written = third > second ? text.mid(second, third - second - 1) : QString();
    if (raw) return written;
    if (!written.isEmpty()) return u'(' + written + u')';
    if (survey.QLimit(1, q).a == 0) return QString();
    return u"（"_s + LimitText(survey, LimitList(survey.QLimit.Column(q)), true) + u"の人）"_s;
}

QString QuestionLabel(const Survey& survey, int q, LabelParts parts) {
    QString label;
    if (parts.number) label += u'Q' + QString::number(q + 1) + u' ';
    if (parts.name) label += QuestionName(survey, q);
    if (parts.limit || parts.body || parts.answers) label += u' ';
    if (parts.limit) label += QuestionLimitText(survey, q, false);
    if (parts.body) label += QuestionBody(survey, q);
    const int answers = survey.Questions[q].Anum;
    if (parts.answers && answers > 1) label += u"［"_s + QString::number(answers) + u"つまで］"_s;
    return label;
}

QString ChoiceLabel(const Survey& survey, int q, int c, bool symbol, bool tags) {
    const ChoiceRec& choice = survey.Choices(c, q);
    QString label;
    if (symbol) label += u'(' + ChoiceToSymbol(survey, q, c) + u')';
    label += choice.Text;
    if (!tags) return label;
    if (choice.Has(kEssay)) {
        if (choice.Has(kNumber))
            label += u"［数値:"_s + NumberText(choice.Low) + u'-' + NumberText(choice.High) + u"］"_s;
        else if (choice.Has(kCode))
            label += u"[ｺｰﾄﾞ:"_s + choice.CodeText + u']';
        else
            label += u"［記述］"_s;
    }
    if (choice.Has(kExclusive)) label += u"［排他］"_s;
    if (choice.Has(kOther)) label += u"［その他］"_s;
    if (choice.Has(kMultiple)) label += u"［複数］"_s;
    return label;
}

QString LimitText(const Survey& survey, const LimitList& list, bool verbose) {
    QStringList predefined;
    for (int k = 0; k < kPreLimitSlots; ++k) {
        if (((list[0].b >> k) & 1) == 0) continue;
        const QString lines = LimitLinesText(survey, LimitList(survey.PreLimit.Column(k)), verbose);
        predefined += verbose ? u"既成"_s + QString::number(k) + u'(' + lines + u')' : lines;
    }
    const QString text = predefined.join(u',') + LimitLinesText(survey, list, verbose);
    if (!text.isEmpty()) return text;
    return verbose ? u"限定条件はありません"_s : u"条件なし"_s;
}

QString LimitLinesText(const Survey& survey, const LimitList& list, bool verbose) {
    QString text;
    for (int i = 1; i < list.Bound() && list[i].a != 0; ++i) {
        int q = 0;
        int c = 0;
        UnpackPosition(list[i].b, q, c);
        text += KindText(list[i]) + RankText(list[i]);
        if (q >= survey.QuestionCount) {
            text += AbsentAnswerText(q, c);
            continue;
        }
        if (c >= survey.Questions[q].ChoiceCount) {
            text += AbsentChoiceText(survey, q, c);
            continue;
        }
        if (verbose) text += QuestionName(survey, q) + u'(' + ChoiceToSymbol(survey, q, c) + u')';
        text += ChoiceLabel(survey, q, c, false, false);
    }
    // The joiner of the first line, whatever it is: "の" of a required one, the comma of an excluding one.
    return text.mid(1);
}

QString LimitLineText(const Survey& survey, int i, const LimitList& list) {
    const LimitLine& line = list[i];
    int q = 0;
    int c = 0;
    UnpackPosition(line.b, q, c);
    QString text;
    if (LimitKindOf(line) == kLimitTo)
        text = u"　から"_s;
    else if (LimitKindOf(line) == kLimitOr)
        text = u"　又は"_s + RankText(line);
    else if (LimitKindOf(line) == kLimitNot)
        text = u"除く"_s + RankText(line);
    else
        text = RankText(line);
    if (q >= survey.QuestionCount) return text + AbsentAnswerText(q, c);
    if (c >= survey.Questions[q].ChoiceCount) return text + AbsentChoiceText(survey, q, c);
    return text + QuestionName(survey, q) + ChoiceLabel(survey, q, c, true, true);
}

void RecalcQLimitDepth(Survey& survey) {
    for (int q = 0; q < survey.QuestionCount; ++q) {
        survey.QLimit(0, q) = {};
        qint16 depth = 0;
        // A chain ends at a question that no survey can have.
        for (int t = q; t <= kLastQuestion && survey.QLimit(1, t).a != 0; t = PositionQuestion(survey.QLimit(1, t).b))
            depth = CheckedInt16(depth + 1);
        survey.QLimit(0, q).a = depth;
    }
}

QStringList ChoiceList(const Survey& survey, int q) {
    QStringList list;
    for (int c = 0; c < survey.Questions[q].ChoiceCount; ++c)
        list += ChoiceLabel(survey, q, c, true, true);
    return list;
}

QStringList PlainQuestionList(const Survey& survey) {
    return QuestionList(survey, kListParts);
}

QStringList FullQuestionList(const Survey& survey) {
    return QuestionList(survey, kFullParts);
}

QStringList RefreshQuestionList(Survey& survey, int start) {
    RecalcQLimitDepth(survey);
    QStringList list;
    for (int q = start; q < survey.QuestionCount; ++q)
        list += TreePrefix(survey, q) + QuestionLabel(survey, q, kListParts);
    return list;
}

}  // namespace quibra
