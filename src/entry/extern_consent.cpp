#include "entry/extern_consent.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include "core/settings.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QString PathOf(const Survey& survey) {
    const QFileInfo file(survey.FileName);
    const QString canonical = file.canonicalFilePath();
    return canonical.isEmpty() ? file.absoluteFilePath() : canonical;
}

// {"path of a survey": {"name of a program": true or false}}. A file that is damaged holds no answers.
QJsonObject ReadAnswers(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

QString QuestionFor(const Survey& survey) {
    return u"アンケート「%1」は、回答の入力中に外部のプログラム「%2」を動かすように作られています。\r\n"
           u"外部のプログラムは、あなたのファイルを読むことも書き換えることもできます。"
           u"このアンケートとプログラムの出所を信頼できるときだけ「はい」を選んでください。\r\n\r\n"
           u"このプログラムを動かしてもよろしいですか？"_s.arg(survey.Title, survey.ExternDLL);
}

}  // namespace

QString ExternConsentPath() {
    return QFileInfo(SettingsPath()).dir().filePath(u"extern.json"_s);
}

bool ExternConsent::MayRun(const Survey& survey, UserInterface& ui, bool again) {
    const QString path = PathOf(survey);
    const QJsonValue answer = ReadAnswers(path_).value(path).toObject().value(survey.ExternDLL);
    const QString key = path + QChar(0) + survey.ExternDLL;
    if (answer.isBool() && (answer.toBool() || !again)) return answer.toBool();
    if (unanswered_.contains(key) && !again) return false;
    const Answer given = ui.Message(QuestionFor(survey), kYesNoCancel + kWarning + kSecondDefault);
    if (given == Answer::Cancel)
        unanswered_.insert(key);
    else
        Keep(survey, given == Answer::Yes);
    return given == Answer::Yes;
}

void ExternConsent::Keep(const Survey& survey, bool allowed) {
    QJsonObject answers = ReadAnswers(path_);
    QJsonObject programs = answers.value(PathOf(survey)).toObject();
    programs.insert(survey.ExternDLL, allowed);
    answers.insert(PathOf(survey), programs);
    QDir().mkpath(QFileInfo(path_).path());
    QSaveFile file(path_);
    if (file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(answers).toJson()) >= 0) file.commit();
}

}  // namespace quibra
