#include "core/settings.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <cerrno>
#include <random>

#include "core/binary_file.h"
#include "support/file_faults.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

class SettingsFile : public testing::Test {
  protected:
    QTemporaryDir folder;
    const QString path = folder.filePath(u"deep/er/quibra.ini"_s);

    Settings ReadBytes(const QByteArray& bytes) {
        const QString other = folder.filePath(u"bytes.ini"_s);
        WriteFileBytes(other, bytes);
        return SettingsRead(other);
    }
    static Settings Filled() {
        Settings settings = SettingsDefault();
        settings.QuotaFirst = -5;
        settings.QuotaLast = 2'000'000'000;
        settings.FontSet[1] = {u"ＭＳ ゴシック"_s, 10.5f, true, false, true, false, 0x123456, 0x00FFFFFF};
        settings.ColorSet[15] = 7;
        settings.WinPos[kPosMain] = {120, 240.5f, 6000, 3000};
        settings.GridWidth[8] = 2222;
        settings.RecentFiles[4] = u"/家/五.qb"_s;
        settings.NetText1 = u"一\r\n二"_s;
        settings.SaveInterval = (23 * 60 + 59) / 1440.0;
        return settings;
    }
    QByteArray FilledBytes() {
        SettingsWrite(Filled(), path);
        return FileBytes(path);
    }
};

TEST_F(SettingsFile, WhatIsWrittenComesBack) {
    const QByteArray bytes = FilledBytes();
    EXPECT_EQ(bytes.left(4), QByteArray::fromHex("01002600"));
    const Settings settings = SettingsRead(path);
    EXPECT_EQ(settings.QuotaFirst, -5);
    EXPECT_EQ(settings.QuotaLast, 2'000'000'000);
    EXPECT_EQ(settings.FontSet[1].FontName, u"ＭＳ ゴシック"_s);
    EXPECT_EQ(settings.FontSet[1].FontSize, 10.5f);
    EXPECT_TRUE(settings.FontSet[1].FontBold && settings.FontSet[1].FontUnderline);
    EXPECT_FALSE(settings.FontSet[1].FontItalic || settings.FontSet[1].FontStrikethru);
    EXPECT_EQ(settings.FontSet[1].ForeColor, 0x123456);
    EXPECT_EQ(settings.ColorSet[0], 0x006000);
    EXPECT_EQ(settings.ColorSet[15], 7);
    EXPECT_EQ(settings.WinPos[kPosMain].Top, 240.5f);
    EXPECT_EQ(settings.GridWidth[8], 2222);
    EXPECT_EQ(settings.RecentFiles[4], u"/家/五.qb"_s);
    EXPECT_EQ(settings.NetText1, u"一\r\n二"_s);
    EXPECT_EQ(SaveReminderText(settings), u"最後に保存した時刻から1439分経過しました。保存しますか？"_s);
    SettingsWrite(settings, path);
    EXPECT_EQ(FileBytes(path), bytes);
}

TEST_F(SettingsFile, OlderFormsGiveWhatTheyHold) {
    const QByteArray quota = QByteArray::fromHex("0100000064000000");
    EXPECT_EQ(ReadBytes(QByteArray(2, '\0') + quota).QuotaLast, 100);
    for (const QString& magic :
         {u"Velmor Quibra Initialize File Ver 95.10b"_s, u"Velmor Quibra Initialize File Ver 965d"_s}) {
        QByteArray bytes = QByteArray::fromHex("0100");
        ByteWriter out(bytes);
        WriteMirrorStr(out, magic);
        out.Flush();
        const Settings settings = ReadBytes(bytes + quota + FilledBytes());
        EXPECT_EQ(settings.QuotaFirst, 1);
        EXPECT_EQ(settings.QuotaLast, 100);
        EXPECT_EQ(settings.GridWidth[0], 1400);
    }
    const QByteArray bytes = FilledBytes();
    // Ends behind the recent files: three texts and the interval stay at their defaults.
    const Settings older = ReadBytes(bytes.left(bytes.size() - 8 - 4 - (4 + 6)));
    EXPECT_EQ(older.RecentFiles[4], u"/家/五.qb"_s);
    EXPECT_EQ(older.NetText1, QString());
    EXPECT_EQ(older.SaveInterval, SettingsDefault().SaveInterval);
    EXPECT_EQ(ReadBytes(QByteArray::fromHex("0200") + quota).QuotaLast, 100000);
    // Widths that were never set are the first program's own.
    Settings empty = SettingsDefault();
    empty.GridWidth[8] = 0;
    SettingsWrite(empty, path);
    EXPECT_EQ(SettingsRead(path).GridWidth[8], 2600);
    EXPECT_EQ(SettingsRead(path).GridWidth[2], 800);
}

using SlowSettingsFile = SettingsFile;

TEST_F(SlowSettingsFile, DamageNeverStopsAnythingAndKeepsNumbersSane) {
    const QByteArray bytes = FilledBytes();
    for (qsizetype size = 0; size < bytes.size(); ++size) {
        const Settings settings = ReadBytes(bytes.left(size));
        EXPECT_EQ(settings.QuotaLast, size >= 2 + 2 + 38 + 8 ? 2'000'000'000 : 100000);
    }
    std::mt19937 random(5);
    for (int round = 0; round < 2000; ++round) {
        QByteArray damaged = bytes;
        for (int i = 0; i < 4; ++i)
            damaged[static_cast<qsizetype>(42 + random() % static_cast<unsigned>(bytes.size() - 42))] =
                static_cast<char>(random());
        const Settings settings = ReadBytes(damaged);
        EXPECT_TRUE(settings.SaveInterval >= 0 && settings.SaveInterval <= 1);
        for (const WinPosRec& place : settings.WinPos)
            EXPECT_TRUE(std::isfinite(place.Left + 0 * place.Width));
    }
    EXPECT_EQ(SettingsRead(folder.path()).QuotaLast, 100000);
    SettingsWrite(Filled(), u"/proc/nowhere/quibra.ini"_s);
}

TEST_F(SettingsFile, WriteThatFailsLeavesTheFileOfBefore) {
    const QByteArray written = FilledBytes();
    int kept = 0;
    bool struck = true;
    for (int call = 1; struck; ++call) {
        SettingsWrite(SettingsDefault(), path);
        const QByteArray before = FileBytes(path);
        ArmFileFault(FaultKind::Error, call, ENOSPC);
        SettingsWrite(Filled(), path);
        DisarmFileFault();
        struck = FileFaultStruck();
        const QByteArray after = FileBytes(path);
        EXPECT_TRUE(after == written || (struck && after == before)) << call;
        kept += after == before;
        EXPECT_EQ(QFileInfo(path).dir().entryList(QDir::Files), QStringList{u"quibra.ini"_s}) << call;
    }
    EXPECT_GE(kept, 5);
}

TEST_F(SettingsFile, RecentFilesMoveUpAndTheFifthPlaceFills) {
    Settings settings = SettingsDefault();
    for (const char16_t name : u"abcdefb") {
        if (name) RecentAdd(settings, QString(QChar(name)));
    }
    RecentAdd(settings, QString());
    RecentAdd(settings, u"/家/😀.qb"_s);  // the file of settings can't hold the name
    QStringList files;
    for (const QString& file : settings.RecentFiles)
        files << file;
    EXPECT_EQ(files.join(u','), u"b,f,e,d,c,,,"_s);
    RecentAdd(settings, u"e"_s);
    EXPECT_EQ(settings.RecentFiles[0] + settings.RecentFiles[1] + settings.RecentFiles[2], u"ebf"_s);
}

TEST_F(SettingsFile, ReminderComesAfterTheInterval) {
    Settings settings = SettingsDefault();
    const QDateTime saved(QDate(2026, 4, 1), QTime(12, 0));
    EXPECT_FALSE(IsSaveReminderDue(settings, saved, saved.addSecs(1800)));
    EXPECT_TRUE(IsSaveReminderDue(settings, saved, saved.addSecs(1801)));
    settings.SaveInterval = 1.0 / 1440;
    EXPECT_EQ(SaveReminderText(settings), u"最後に保存した時刻から1分経過しました。保存しますか？"_s);
}

}  // namespace
}  // namespace quibra
