#include "session/rescue.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "session/survey_file.h"
#include "support/scripted_interface.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

TEST(RescueFile, ChangedSurveyIsRescuedBesideItsFile) {
    const QTemporaryDir folder;
    ScriptedInterface user;
    SurveySession session(user, folder.path());
    QString file = folder.filePath(u"調査.qb"_s);
    WriteFileBytes(file, TestData(u"small-1003.qb"_s));
    ASSERT_EQ(SurveyLoad(session, file, kExpectSurvey), kLoaded);
    EXPECT_EQ(WriteRescueFile(session), QString());
    session.ChangedOn();
    session.SetLoading(true);
    EXPECT_EQ(WriteRescueFile(session), QString()) << "half a survey is nobody's work";
    session.SetLoading(false);
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    QString rescued = WriteRescueFile(session);
    EXPECT_TRUE(QFileInfo(rescued).fileName().startsWith(u"調査.rescue-"_s)) << qPrintable(rescued);
    EXPECT_EQ(FileBytes(rescued), WriteSurveyBytes(session.survey));
    EXPECT_EQ(QFile::permissions(rescued) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    // A folder that is gone: the home folder takes it.
    qputenv("HOME", folder.path().toUtf8());
    session.survey.FileName = folder.filePath(u"gone/調査.qb"_s);
    QFile::remove(rescued);
    EXPECT_TRUE(WriteRescueFile(session).startsWith(folder.path()));
}

}  // namespace
}  // namespace quibra
