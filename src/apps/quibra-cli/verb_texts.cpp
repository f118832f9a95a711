#include "apps/quibra-cli/verb_texts.h"

#include <algorithm>

#include "apps/quibra-cli/verbs.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QString Typed(const VerbOption& option) {
    return u"--"_s + option.name + (option.value.isEmpty() ? QString() : u' ' + option.value);
}

QString Padded(const QString& text, int width) {
    return text.leftJustified(width) + u' ';
}

QString Roff(QString text, bool japanese) {
    text.replace(u'\\', u"\\e"_s).replace(u'-', u"\\-"_s);
    // A line may break behind these; Japanese has few blanks for it.
    if (japanese) text.replace(u"、"_s, u"、\\:"_s).replace(u"。"_s, u"。\\:"_s);
    // What begins a line with a dot or a quote would be a request.
    QStringList lines = text.split(u'\n');
    for (QString& line : lines)
        if (line.startsWith(u'.') || line.startsWith(u'\'')) line.prepend(u"\\&"_s);
    return lines.join(u'\n');
}

QString ManualSection(const Verb& verb, bool japanese) {
    const auto roff = [japanese](const QString& text) { return Roff(text, japanese); };
    QString text = u".SS %1\n.B quibra\\-cli %1\n"_s.arg(roff(verb.name));
    text += (japanese ? u".RI [ オプション ...]\n"_s : u".RI [ option ...]\n"_s);
    text += u".I %1\n.PP\n"_s.arg(roff(verb.arguments));
    text += roff(japanese ? verb.text : verb.english).replace(u"\n\n"_s, u"\n.PP\n"_s) + u'\n';
    for (const VerbOption& option : verb.options) {
        text += u".TP\n"_s;
        text += option.value.isEmpty() ? u".B \\-\\-%1\n"_s.arg(roff(option.name))
                                       : u".BI \\-\\-%1 \" %2\"\n"_s.arg(roff(option.name), roff(option.value));
        text += roff(japanese ? option.text : option.english) + u'\n';
    }
    return text;
}

bool IsFile(const VerbOption& option) {
    return option.value.startsWith(u"FILE"_s) || option.value == u"DIR";
}

}  // namespace

QString Overview() {
    qsizetype width = 0;
    for (const Verb& verb : Verbs())
        width = std::max(width, verb.name.size());
    QString text = u"使い方: quibra-cli コマンド [オプション] ...\n\n"_s;
    for (const Verb& verb : Verbs())
        text += u"  "_s + Padded(verb.name, static_cast<int>(width)) + verb.summary + u'\n';
    text +=
        u"\n質問番号は1から数えます。各コマンドの説明: quibra-cli コマンド --help\n"_s
        u"終了コード: 0 完了、1 拒否または失敗、2 使い方の誤り\n"_s;
    return text;
}

QString HelpText(const Verb& verb) {
    constexpr int kOptionWidth = 22;
    QString text = verb.Usage() + u"\n\n"_s + verb.text + u"\n\nオプション:\n"_s;
    text += u"  "_s + Padded(u"-h, --help"_s, kOptionWidth) + u"この説明を表示する\n"_s;
    for (const VerbOption& option : verb.options)
        text += u"  "_s + Padded(Typed(option), kOptionWidth) + option.text + u'\n';
    return text;
}

QString ManualPage(const QString& pageTemplate, bool japanese) {
    QString sections;
    for (const Verb& verb : Verbs())
        sections += ManualSection(verb, japanese);
    return QString(pageTemplate).replace(u"@VERBS@\n"_s, sections);
}

QString BashCompletion() {
    QStringList names;
    QString values;   // of options that have a few
    QString others;   // options whose value is neither one of a few nor a file
    QString options;  // of each verb
    for (const Verb& verb : Verbs()) {
        names += verb.name;
        QStringList known{u"--help"_s};
        for (const VerbOption& option : verb.options) {
            known += Dashed(option.name);
            const QString place = verb.name + u"\\ "_s + Dashed(option.name);
            if (!option.choices.isEmpty())
                values += u"        %1) words='%2' ;;\n"_s.arg(place, option.choices.join(u' '));
            else if (!option.value.isEmpty() && !IsFile(option))
                others += (others.isEmpty() ? QString() : u"|"_s) + place;
        }
        options += u"            %1) words='%2' ;;\n"_s.arg(verb.name, known.join(u' '));
    }
    return u"# bash completion for quibra-cli, made from its table of verbs.\n"
           u"_quibra_cli() {\n"
           u"    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} verb=${COMP_WORDS[1]} words=\n"
           u"    case \"$verb $prev\" in\n"
           u"%2"
           u"        %3) compopt +o default 2>/dev/null; return ;;\n"
           u"    esac\n"
           u"    if ((COMP_CWORD == 1)); then\n"
           u"        words='%1 help --help --version'\n"
           u"    elif [[ $verb == help ]]; then\n"
           u"        words='%1'\n"
           u"    elif [[ -z $words && $cur == -* ]]; then\n"
           u"        case $verb in\n"
           u"%4"
           u"        esac\n"
           u"    fi\n"
           u"    COMPREPLY=($(compgen -W \"$words\" -- \"$cur\"))\n"
           u"}\n"
           u"complete -o default -F _quibra_cli quibra-cli\n"_s.arg(names.join(u' '), values, others, options);
}

}  // namespace quibra
