#include "apps/quibra-cli/opened_survey.h"

#include <sys/mman.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QFileInfo>

#include "core/survey_writer.h"
#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Without its line end; a word in a file of its own is not seen by others on the machine.
QString FirstLineOf(const QString& path) {
    QString line = QString::fromUtf8(OpenInput(path)->readLine());
    while (line.endsWith(u'\n') || line.endsWith(u'\r'))
        line.chop(1);
    return line;
}

// A load goes back and forth in a file.
Descriptor StandardInputFile() {
    const QByteArray bytes = OpenInput(u"-"_s)->readAll();
    Descriptor file(Checked([] { return memfd_create("survey", MFD_CLOEXEC); }));
    for (qsizetype done = 0; done < bytes.size();)
        done += Checked(
            [&] { return write(file.Number(), bytes.constData() + done, static_cast<size_t>(bytes.size() - done)); });
    return file;
}

}  // namespace

OpenedSurvey::OpenedSurvey(const VerbLine& line, const QString& path, Access access, UserInterface* ui)
    : console_(line.Has(u"yes"_s)),
      session_(ui ? *ui : console_, ProgramDirectory()),
      path_(QFileInfo(path).absoluteFilePath()) {
    if (path == u"-") {
        input_ = StandardInputFile();
        path_ = u"/proc/self/fd/%1"_s.arg(input_.Number());
        console_.CallFile(path_, Name());
    }
    Load(access);
    Unlock(line, access);
}

void OpenedSurvey::Load(Access access) {
    if (access == Access::Write && !input_.IsOpen()) session_.HoldFile(path_);
    int code = SurveyLoad(session_, path_, kExpectSurvey);
    if (code == kLoadBaseFirst) {
        // What is written would go to the base survey, which nobody named.
        if (access >= Access::Change) throw Refusal{u"集計結果データは書き換えられません。"_s};
        code = SurveyLoad(session_, path_, kExpectSurvey);
    }
    if (code != kLoaded) throw Refusal{code == kNothing ? QString() : u"アンケートファイルではありません。"_s};
}

void OpenedSurvey::Unlock(const VerbLine& line, Access access) {
    line.AllowOneOf({u"password"_s, u"password-file"_s});
    const Survey& survey = session_.survey;
    const int forbidden = access >= Access::Change ? 1 : 2;
    if (survey.LockLevel >= forbidden && !survey.Password.isEmpty()) {
        const bool given = line.Has(u"password"_s) || line.Has(u"password-file"_s);
        const QString word =
            line.Has(u"password-file"_s) ? FirstLineOf(line.Value(u"password-file"_s)) : line.Value(u"password"_s);
        if (word != survey.Password && word.toLower() != survey.Password) {
            if (access != Access::Outside || given)
                throw Refusal{u"パスワードが正しくありません"_s +
                              (given ? QString() : u"（--password か --password-file で指定してください）"_s)};
            visible_ = false;
            return;
        }
    }
    LockRelease(session_.menu);
}

QString OpenedSurvey::Name() const {
    return input_.IsOpen() ? u"標準入力"_s : path_;
}

int OpenedSurvey::Save(StandardOutput& out) {
    return SaveSurvey(session_, input_.IsOpen() ? u"-"_s : path_, out);
}

int SaveSurvey(SurveySession& session, const QString& path, StandardOutput& out) {
    if (path != u"-") return SurveySave(session, QFileInfo(path).absoluteFilePath()) ? kDone : kRefused;
    if (out.IsTerminal()) throw Refusal{u"端末にはアンケートを書けません。標準出力をファイルに向けてください。"_s};
    QByteArray bytes;
    ByteWriter writer(bytes);
    WriteMagic(writer, kSurvey1003);
    WriteSurvey(writer, session.survey, nullptr, [](const QString&, double) { return true; });
    writer.Flush();
    out.Print(bytes);
    return kDone;
}

QString ProgramDirectory() {
    return QCoreApplication::applicationDirPath() + u'/';
}

}  // namespace quibra
