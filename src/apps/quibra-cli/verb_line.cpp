#include "apps/quibra-cli/verb_line.h"

#include <algorithm>

#include "core/answer_store.h"
#include "core/typed_number.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Parts the two values of one option; no argument can hold it.
constexpr QChar kPairMark = QChar(0x1F);

bool TakesPair(const VerbOption& option) {
    return option.value.contains(u' ');
}

}  // namespace

VerbLine::VerbLine(const Verb& verb, const QStringList& words) : verb_(verb) {
    parser_.addOption(QCommandLineOption(QStringList{u"h"_s, u"help"_s}));
    for (const VerbOption& option : verb.options)
        parser_.addOption(QCommandLineOption(option.name, option.text, option.value));
    const bool understood = parser_.parse(QStringList(u"quibra-cli"_s) + JoinPairs(words));
    wantsHelp_ = parser_.isSet(u"help"_s);
    if (wantsHelp_) return;
    if (!understood) RefuseMisunderstood();
    CheckOptions();
    CheckArguments();
}

// An option takes one value, so those of a pair are joined to one.
QStringList VerbLine::JoinPairs(const QStringList& words) const {
    QStringList joined;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const VerbOption* option = words[i].startsWith(u"--"_s) ? verb_.Option(words[i].mid(2)) : nullptr;
        if (!option || !TakesPair(*option)) {
            joined += words[i];
            continue;
        }
        if (i + 2 >= words.size())
            RefuseUsage(
                u"%1 には %2 の二つの値が要ります"_s.arg(words[i], QString(option->value).replace(u" "_s, u" と "_s)));
        joined += words[i] + u'=' + words[i + 1] + kPairMark + words[i + 2];
        i += 2;
    }
    return joined;
}

void VerbLine::RefuseMisunderstood() const {
    const QStringList unknown = parser_.unknownOptionNames();
    if (!unknown.isEmpty()) RefuseUsage(u"知らないオプションです: %1"_s.arg(Dashed(unknown.first())));
    for (const VerbOption& option : verb_.options) {
        if (!parser_.errorText().contains(u"'%1'"_s.arg(option.name)) &&
            !parser_.errorText().contains(u"'--%1'"_s.arg(option.name)))
            continue;
        if (option.value.isEmpty()) RefuseUsage(u"--%1 は値を取りません"_s.arg(option.name));
        RefuseUsage(u"--%1 には値（%2）が要ります"_s.arg(option.name, option.value));
    }
    RefuseUsage(verb_.Usage());
}

void VerbLine::CheckOptions() const {
    const QStringList given = parser_.optionNames();
    for (const VerbOption& option : verb_.options) {
        if (!option.repeats && given.count(option.name) > 1) RefuseUsage(u"--%1 は一度だけ書けます"_s.arg(option.name));
        if (!option.choices.isEmpty() && Has(option.name) && !option.choices.contains(Value(option.name)))
            RefuseUsage(u"--%1 は %2 のどれかです"_s.arg(option.name, option.choices.join(u", "_s)));
    }
}

void VerbLine::CheckArguments() const {
    const QStringList wanted = verb_.arguments.split(u' ');
    const qsizetype count = Arguments().size();
    const bool anyNumber = verb_.arguments.endsWith(u"..."_s) || verb_.arguments.endsWith(u"...]"_s);
    if (count < wanted.size() && !wanted[count].startsWith(u'['))
        RefuseUsage(u"%1 がありません。"_s.arg(QString(wanted[count]).remove(u"..."_s)) + verb_.Usage());
    if (count > wanted.size() && !anyNumber)
        RefuseUsage(u"「%1」は余分です。"_s.arg(Arguments()[wanted.size()]) + verb_.Usage());
}

QString VerbLine::Value(const QString& option) const {
    const VerbOption* known = verb_.Option(option);
    if (!Has(option) && known && !known->choices.isEmpty()) return known->choices.first();
    return parser_.value(option);
}

std::pair<QString, QString> VerbLine::Pair(const QString& option) const {
    const QStringList parts = Value(option).split(kPairMark);
    if (parts.size() != 2)
        RefuseUsage(u"--%1 %2 のように二つの値を書いてください"_s.arg(option, verb_.Option(option)->value));
    return {parts[0], parts[1]};
}

int VerbLine::Number(const QString& option, int low, int high, int otherwise) const {
    return Has(option) ? IntegerArgument(Value(option), u"--"_s + option, low, high) : otherwise;
}

void VerbLine::AllowOneOf(const QStringList& options) const {
    QStringList given;
    for (const QString& option : options)
        if (Has(option)) given += u"--"_s + option;
    if (given.size() > 1) RefuseUsage(u"一緒には使えません: "_s + given.join(u' '));
}

bool VerbLine::Changes(const QStringList& options) const {
    const auto given = std::ranges::find_if(options, [this](const QString& option) { return Has(option); });
    if (given == options.end()) return false;
    if (Argument(0) == u"-") RefuseUsage(u"--%1 は標準入力のアンケートには使えません"_s.arg(*given));
    return true;
}

int QuestionArgument(const Survey& survey, const QString& text) {
    const QString number = text.startsWith(u'Q', Qt::CaseInsensitive) ? text.mid(1) : text;
    return IntegerArgument(number, u"質問番号"_s, 1, survey.QuestionCount) - 1;
}

qint32 IntegerArgument(const QString& text, const QString& what, qint32 low, qint32 high) {
    bool ok = false;
    const qint32 value = NarrowFigures(text).toInt(&ok);
    if (!ok || value < low || value > high)
        RefuseUsage(u"%1「%2」は%3から%4までの整数ではありません"_s.arg(what, text).arg(low).arg(high));
    return value;
}

qint32 SampleArgument(const Survey& survey, const QString& text) {
    const qint32 id =
        IntegerArgument(text, u"サンプルID"_s, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
    const qint32 dno = DnoOfID(survey, id);
    if (dno < 0) throw Refusal{u"サンプルID %1 はありません"_s.arg(id)};
    return dno;
}

double NumberArgument(const QString& text) {
    bool ok = false;
    const double value = NarrowFigures(text).toDouble(&ok);
    if (!ok || !qIsFinite(value)) RefuseUsage(u"「%1」は数ではありません"_s.arg(text));
    return value;
}

}  // namespace quibra
