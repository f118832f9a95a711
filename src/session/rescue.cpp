#include "session/rescue.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include "core/binary_file.h"
#include "core/survey_writer.h"
#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

bool WriteTo(const Survey& survey, const QString& path) {
    try {
        BinaryFile file = BinaryFile::Create(path);
        ByteWriter out(file);
        WriteMagic(out, kSurvey1003);
        WriteSurvey(out, survey, nullptr, [](const QString&, double) { return true; });
        out.Flush();
        file.Sync();
        file.Close();
        return true;
    } catch (const std::exception&) {
    }
    try {
        RemoveFile(path);  // half a survey would pass for a rescued one
    } catch (const std::exception&) {
    }
    return false;
}

}  // namespace

QString WriteRescueFile(const SurveySession& session) noexcept {
    // A survey that broke off in a load is nobody's work, whatever the lock says of it.
    if (!session.IsChanged() || session.IsDead()) return QString();
    const QFileInfo original(session.survey.FileName);
    const QString name =
        original.completeBaseName() + QDateTime::currentDateTime().toString(u"'.rescue-'yyyyMMdd-HHmmss'.qb'"_s);
    for (const QDir& folder : {original.dir(), QDir::home()}) {
        const QString path = folder.absoluteFilePath(name);
        if (WriteTo(session.survey, path)) return path;
    }
    return QString();
}

QString LeaveUnasked(SurveySession& session) noexcept {
    const QString rescued = WriteRescueFile(session);
    // The windows are not told: what they stand on may be gone.
    RecentAdd(session.settings, rescued);
    session.WriteSettings();
    if (!rescued.isEmpty()) session.InStepWith(rescued);
    return rescued;
}

}  // namespace quibra
