#include "apps/quibra-cli/console.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>
#include <cerrno>
#include <cstdio>

#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

void RefuseUsage(const QString& reason) {
    throw Refusal{reason, kWrongUsage};
}

void ErrorLine(const QString& text) {
    QString lines = text;
    lines.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    std::fputs((lines + u'\n').toUtf8().constData(), stderr);
}

void StandardOutput::Print(const QByteArray& bytes) {
    if (write(bytes) != bytes.size()) throw RuntimeError(kErrorDeviceIo, errorString());
}

bool StandardOutput::IsAbandoned() const {
    return error_ == EPIPE;
}

qint64 StandardOutput::writeData(const char* data, qint64 size) {
    qint64 done = 0;
    while (done < size) {
        const ssize_t step = ::write(STDOUT_FILENO, data + done, static_cast<size_t>(size - done));
        if (step < 0 && errno == EINTR) continue;
        if (step < 0) {
            error_ = errno;
            setErrorString(u"標準出力に書けません。"_s + RuntimeError::FromErrno(error_).Text());
            return -1;
        }
        done += step;
    }
    return done;
}

VerbLine::VerbLine(const QString& verb, const QString& description) : verb_(verb), description_(description) {
    AddOption(u"help"_s, u"この説明を表示する"_s);
}

void VerbLine::AddOption(const QString& name, const QString& description, const QString& valueName) {
    parser_.addOption(QCommandLineOption(name, description, valueName));
}

void VerbLine::SetArguments(const QString& syntax, qsizetype least, qsizetype most) {
    syntax_ = syntax;
    least_ = least;
    most_ = most;
}

void VerbLine::AddSurveyOptions() {
    AddOption(u"password"_s, u"鍵のかかったアンケートのパスワード"_s, u"WORD"_s);
    AddOption(u"yes"_s, u"確認の質問に「はい」と答える"_s);
}

bool VerbLine::Parse(const QStringList& arguments, StandardOutput& out) {
    const bool understood = parser_.parse(QStringList(u"quibra-cli"_s) + arguments);
    if (parser_.isSet(u"help"_s)) {
        out.Print(HelpText());
        return false;
    }
    if (!understood) {
        const QStringList unknown = parser_.unknownOptionNames();
        if (!unknown.isEmpty()) RefuseUsage(u"知らないオプションです: %1"_s.arg(unknown.join(u", "_s)));
        static const QRegularExpression quoted(u"'([^']*)'"_s);
        const QString option = quoted.match(parser_.errorText()).captured(1);
        RefuseUsage(u"オプション %1 の値が正しくありません"_s.arg(option));
    }
    const qsizetype count = Arguments().size();
    if (count < least_ || (most_ >= 0 && count > most_))
        RefuseUsage(u"使い方: quibra-cli %1 [オプション] %2"_s.arg(verb_, syntax_));
    return true;
}

QString VerbLine::HelpText() const {
    const QString text = parser_.helpText();
    const QString heading = u"Options:"_s;
    const QString options = text.mid(text.indexOf(heading) + heading.size());
    return u"使い方: quibra-cli %1 [オプション] %2\n\n%3\n\nオプション:%4"_s.arg(verb_, syntax_, description_, options);
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

OpenedSurvey::OpenedSurvey(const VerbLine& line, const QString& path, Access access)
    : console_(line.Has(u"yes"_s)), session_(console_, ProgramDirectory()), path_(QFileInfo(path).absoluteFilePath()) {
    Load(access);
    Unlock(line, access);
}

void OpenedSurvey::Load(Access access) {
    int code = SurveyLoad(session_, path_, kExpectSurvey);
    if (code == kLoadBaseFirst) {
        // What is written would go to the base survey, which nobody named.
        if (access == Access::Change) throw Refusal{u"集計結果データは書き換えられません。"_s};
        code = SurveyLoad(session_, path_, kExpectSurvey);
    }
    if (code != kLoaded) throw Refusal{code == kNothing ? QString() : u"アンケートファイルではありません。"_s};
}

void OpenedSurvey::Unlock(const VerbLine& line, Access access) {
    const Survey& survey = session_.survey;
    const int forbidden = access == Access::Change ? 1 : 2;
    if (survey.LockLevel >= forbidden && !survey.Password.isEmpty()) {
        const QString word = line.Value(u"password"_s);
        if (word != survey.Password && word.toLower() != survey.Password) {
            if (access != Access::Outside || line.Has(u"password"_s))
                throw Refusal{u"パスワードが正しくありません"_s +
                              (line.Has(u"password"_s) ? QString() : u"（--password で指定してください）"_s)};
            visible_ = false;
            return;
        }
    }
    LockRelease(session_.menu);
}

QString ProgramDirectory() {
    return QCoreApplication::applicationDirPath() + u'/';
}

int QuestionArgument(const Survey& survey, const QString& text) {
    const QString number = text.startsWith(u'Q', Qt::CaseInsensitive) ? text.mid(1) : text;
    return IntegerArgument(number, u"質問番号"_s, 1, survey.QuestionCount) - 1;
}

qint32 IntegerArgument(const QString& text, const QString& what, qint32 low, qint32 high) {
    bool ok = false;
    const qint32 value = text.toInt(&ok);
    if (!ok || value < low || value > high)
        RefuseUsage(u"%1「%2」は%3から%4までの整数ではありません"_s.arg(what, text).arg(low).arg(high));
    return value;
}

}  // namespace quibra
