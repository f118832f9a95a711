#include "apps/quibra-cli/verbs.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quibra {

const QList<Verb>& Verbs() {
    static const QList<Verb> verbs = {
        InfoVerb(),  TotalVerb(),     EssaysVerb(),     PageVerb(),    ChartVerb(), GetVerb(),
        SetVerb(),   SheetVerb(),     ParseVerb(),      CheckVerb(),   ShowVerb(),  EntryVerb(),
        LinesVerb(), DumpVerb(),      BuildVerb(),      ConvertVerb(), NewVerb(),   EditVerb(),
        ListVerb(),  QuestionsVerb(), PropertiesVerb(), MeasureVerb(),
    };
    return verbs;
}

const Verb* FindVerb(const QString& name) {
    const auto verb = std::ranges::find(Verbs(), name, &Verb::name);
    return verb == Verbs().end() ? nullptr : &*verb;
}

QList<VerbOption> SurveyOptions() {
    return {
        {.name = u"password"_s,
         .value = u"WORD"_s,
         .text = u"鍵のかかったアンケートのパスワード。コマンドラインの語は、同じ機械を使う他の人にも見える"_s,
         .english = u"The password of a locked survey. Others on the machine can see the words of a command line."_s},
        {.name = u"password-file"_s,
         .value = u"FILE"_s,
         .text = u"パスワードをファイルの最初の行から読む。- なら標準入力から"_s,
         .english = u"Reads the password from the first line of a file, or of standard input when it is -."_s},
        YesOption(),
    };
}

VerbOption YesOption() {
    return {.name = u"yes"_s,
            .value = {},
            .text = u"確認の質問に「はい」と答える。なければ、何も変えない答えになる"_s,
            .english =
                u"Answers \"yes\" to every question that is asked; otherwise the answer is the one that changes "
                u"nothing."_s};
}

QString Verb::Usage() const {
    return u"使い方: quibra-cli %1 [オプション] %2"_s.arg(name, arguments);
}

const VerbOption* Verb::Option(const QString& option) const {
    const auto found = std::ranges::find(options, option, &VerbOption::name);
    return found == options.end() ? nullptr : &*found;
}

QString Dashed(const QString& option) {
    return (option.size() == 1 ? u"-"_s : u"--"_s) + option;
}

}  // namespace quibra
