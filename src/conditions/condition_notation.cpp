#include "conditions/condition_notation.h"

#include <QRegularExpression>
#include <algorithm>
#include <limits>

#include "companion/limit_terms.h"

#include "core/display_width.h"
#include "core/typed_number.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// A list of a survey closes inside its 16 lines, header included.
constexpr int kMaxWrittenLines = 14;
constexpr int kMaxRank = 127;  // a line has seven bits for it

// A number too long for an int is as absent as any other that is too large.
int Number(const QString& digits) {
    bool ok = false;
    const int number = digits.toInt(&ok);
    return ok ? number : std::numeric_limits<int>::max();
}

// One word after the other, added to a list. Each function that reads returns why it cannot, or nothing.
class ConditionReader {
  public:
    explicit ConditionReader(const Survey& survey) : survey_(survey) {}

    QString ReadWord(const QString& word);
    const LimitList& List() const { return list_; }

  private:
    QString ReadPredefined(const QString& prefix, const QString& slot);
    QString ReadAnswer(const QRegularExpressionMatch& match);
    QString ReadChoice(int question, const QString& digits, int& choice) const;
    QString Append(int kind, int rank, int question, int choice);

    const Survey& survey_;
    LimitList list_;
    int pos_ = 1;
};

QString ConditionReader::ReadWord(const QString& word) {
    static const QRegularExpression kWord(QRegularExpression::anchoredPattern(
        u"(?<prefix>[|-]?)(?:P(?<slot>[0-9]+)|"
        u"Q(?<question>[0-9]+)(?:@(?<rank>[0-9]+))?=(?<low>[0-9]+)(?:\\.\\.(?<high>[0-9]+))?)"));
    const QRegularExpressionMatch match = kWord.match(NarrowFigures(word));
    if (!match.hasMatch())
        return u"「"_s + word +
               u"」は条件として読めません。Q3=2、Q3=2..5、Q3@1=2、|Q3=2、-Q3=2、P4のように書いてください。"_s;
    const QString slot = match.captured(u"slot");
    return slot.isEmpty() ? ReadAnswer(match) : ReadPredefined(match.captured(u"prefix"), slot);
}

QString ConditionReader::ReadPredefined(const QString& prefix, const QString& slot) {
    if (!prefix.isEmpty()) return u"既成限定の前に「"_s + prefix + u"」は書けません。"_s;
    if (Number(slot) >= kPreLimitSlots) return u"既成限定P"_s + slot + u"はありません。既成限定はP0からP15までです。"_s;
    list_[0].b = static_cast<qint16>(list_[0].b | 1 << Number(slot));
    return QString();
}

QString ConditionReader::ReadAnswer(const QRegularExpressionMatch& match) {
    const QString prefix = match.captured(u"prefix");
    if (prefix == u"|" && pos_ == 1) return u"「|」（又は）の前に条件がありません。"_s;

    const QString questionText = match.captured(u"question");
    const int question = Number(questionText) - 1;
    if (question < 0 || question >= survey_.QuestionCount)
        return u"質問Q"_s + questionText + u"はありません。質問はQ1からQ"_s + QString::number(survey_.QuestionCount) +
               u"までです。"_s;

    const QString rankText = match.captured(u"rank");
    const int rank = Number(rankText.isEmpty() ? u"0"_s : rankText);
    const int answers = std::min<int>(survey_.Questions[question].Anum, kMaxRank);
    if (!rankText.isEmpty() && (rank < 1 || rank > answers))
        return u'Q' + questionText + u"に順位"_s + rankText + u"はありません。順位は1から"_s +
               QString::number(answers) + u"までです。"_s;

    int low = 0;
    QString objection = ReadChoice(question, match.captured(u"low"), low);
    const int kind = prefix == u"|" ? kLimitOr : prefix == u"-" ? kLimitNot : kLimitAnd;
    if (objection.isEmpty()) objection = Append(kind, rank, question, low);
    const QString highText = match.captured(u"high");
    if (!objection.isEmpty() || highText.isEmpty()) return objection;

    int high = 0;
    objection = ReadChoice(question, highText, high);
    if (!objection.isEmpty()) return objection;
    if (high < low) return u"範囲の"_s + highText + u"は"_s + QString::number(low) + u"より小さい番号です。"_s;
    return Append(kLimitTo, 0, question, high);
}

QString ConditionReader::ReadChoice(int question, const QString& digits, int& choice) const {
    choice = Number(digits);
    const int count = survey_.Questions[question].ChoiceCount;
    if (choice < count) return QString();
    return u'Q' + QString::number(question + 1) + u"に選択肢"_s + digits + u"はありません。選択肢は0から"_s +
           QString::number(count - 1) + u"までです。"_s;
}

QString ConditionReader::Append(int kind, int rank, int question, int choice) {
    if (pos_ > kMaxWrittenLines) return u"条件は14個までです。"_s;
    list_[pos_++] = {static_cast<qint16>(rank * 16 + kind), PackPosition(question, choice)};
    return QString();
}

}  // namespace

bool ParseCondition(const Survey& survey, const QString& text, LimitList& list, NotationError& error) {
    ConditionReader reader(survey);
    qsizetype end = 0;
    for (qsizetype start = 0; start < text.size(); start = end) {
        end = start + 1;
        if (text[start].isSpace()) continue;
        while (end < text.size() && !text[end].isSpace())
            ++end;
        const QString objection = reader.ReadWord(text.mid(start, end - start));
        if (objection.isEmpty()) continue;
        error = {objection, start, end - start};
        return false;
    }
    list = reader.List();
    return true;
}

QString NotationErrorText(const QString& text, const NotationError& error) {
    QString line = text;
    for (QChar& character : line)
        if (character.isSpace() && character != u'\u3000') character = u' ';
    const QStringView view(line);
    const int before = DisplayWidth(view.first(error.position));
    const int under = DisplayWidth(view.sliced(error.position, error.length));
    return error.message + u'\n' + line + u'\n' + QString(before, u' ') + QString(under, u'^');
}

}  // namespace quibra
