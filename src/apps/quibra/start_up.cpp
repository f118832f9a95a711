#include "apps/quibra/start_up.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QStandardPaths>

#include "apps/quibra/frm_main.h"
#include "apps/quibra/frm_title.h"
#include "core/settings.h"
#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

ProgramFolders UserFolders() {
    return {.data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation),
            .runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation),
            .settings = SettingsPath()};
}

QString PathOfCommandLine(const QStringList& arguments) {
    QString path = arguments.mid(1).join(u' ');
    if (path.startsWith(u'"')) path.remove(0, 1);
    if (path.endsWith(u'"')) path.chop(1);
    // The name of a survey outlasts the folder in which the program was started.
    return QFileInfo::exists(path) ? QFileInfo(path).absoluteFilePath() : path;
}

StartUp::StartUp(UserInterface& ui, const ProgramFolders& folders)
    : ui_(ui), folders_(folders), session_(ui, folders.data) {}

StartUp::~StartUp() = default;

bool StartUp::Run(const QString& path) {
    FrmTitle title(ui_, TitleUse::StartUp);
    title.show();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);  // paints it
    if (!IsOnlyCopy()) {
        title.hide();  // some desktops would keep it above the message
        ui_.Beep();
        ui_.Message(u"既に起動しているクイブラがあります"_s, kWarning);
        return false;
    }
    QDir().mkpath(folders_.data);
    session_.ReadSettings(folders_.settings);
    journal_ = std::make_unique<Journal>(session_, JournalFolder(folders_.settings));
    main_ = std::make_unique<FrmMain>(session_);
    title.hide();  // it would lie over the questions
    OpenFirst(path);
    main_->show();
    return true;
}

bool StartUp::IsOnlyCopy() {
    onlyCopy_ = std::make_unique<QLockFile>(folders_.runtime + u"/quibra.lock"_s);
    // A mark is stale when its process is gone, never by its age.
    onlyCopy_->setStaleLockTime(0);
    // Where no mark can be set at all, the program runs without.
    return onlyCopy_->tryLock() || onlyCopy_->error() != QLockFile::LockFailedError;
}

void StartUp::OpenFirst(const QString& path) {
    if (OfferLeftJournals()) return;
    if (!path.isEmpty()) {
        main_->SurveyOpen(path, kExpectSurvey);
        return;
    }
    const QString last = session_.settings.RecentFiles[0];
    if (last.isEmpty()) return;
    if (ui_.Message(last + u"を読み込みますか"_s, kYesNo + kQuestion, u"クイブラダイレクトスタート"_s) == Answer::Yes)
        main_->SurveyOpen(last, kExpectSurvey);
}

bool StartUp::OfferLeftJournals() {
    for (const LeftJournal& left : LeftJournals(JournalFolder(folders_.settings))) {
        const JournalDecision decision = OfferJournal(ui_, left);
        if (decision == JournalDecision::Discard) DiscardJournal(left);
        if (decision == JournalDecision::Restore && Restore(left)) return true;
    }
    return false;
}

bool StartUp::Restore(const LeftJournal& left) {
    const QString& path = left.Contents.Header.Path;
    if (path.isEmpty()) {
        session_.NewSurvey();
        session_.Lock();
    } else {
        main_->SurveyOpen(path, kExpectSurvey);
        // It stays for the next start when its survey can't be read.
        if (session_.IsDead() || session_.survey.FileName != path) return false;
    }
    if (RestoreJournal(session_, left)) {
        journal_->Flush();
        // By now all of it is in the journal of this program.
        if (journal_->Failure().isEmpty()) DiscardJournal(left);
    }
    return true;
}

}  // namespace quibra
