#include "session/rescue.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include "core/settings.h"
#include "core/survey_format.h"
#include "core/survey_writer.h"
#include "core/whole_file.h"
#include "session/unfinished_edit.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Whoever may not read the survey may not read what is rescued of it.
bool WriteTo(const Survey& survey, const QString& path) {
    try {
        WholeFile file(path, survey.FileName);
        ByteWriter out(file.Bytes());
        WriteMagic(out, kSurvey1003);
        WriteSurvey(out, survey, nullptr, [](const QString&, double) { return true; });
        out.Flush();
        file.Appear();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

// "20260401-123000". A format of one's own needs the locale, which may be gone already when the program ends in exit().
QString Stamp(const QDateTime& time) {
    QString text = time.toString(Qt::ISODate);
    return text.remove(u'-').remove(u':').replace(u'T', u'-');
}

}  // namespace

QString WriteRescueFile(const SurveySession& session) noexcept {
    // A survey that is being loaded, or broke off in a load, is nobody's work, whatever the lock says of it.
    if (!session.IsChanged() || session.IsDead() || session.IsLoading()) return QString();
    const WholeSurvey whole(session);
    const QFileInfo original(session.survey.FileName);
    const QString name = original.completeBaseName() + u".rescue-"_s + Stamp(QDateTime::currentDateTime()) + u".qb"_s;
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
