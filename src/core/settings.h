// What the program remembers beside the surveys: the file "quibra.ini", which is binary in spite of its name. Read at
// start-up, written when the main window closes and when the ID quota changes. A broken file never stops anything: what
// could be read counts, the rest are defaults.
#pragma once

#include <QDateTime>
#include <QString>
#include <array>

namespace quibra {

struct FontRec {
    QString FontName;
    float FontSize = 0;  // points
    bool FontBold = false;
    bool FontItalic = false;
    bool FontUnderline = false;
    bool FontStrikethru = false;
    qint32 ForeColor = 0;  // 0x00BBGGRR
    qint32 BackColor = 0;
};

// In twips, a 1440th of an inch.
struct WinPosRec {
    float Left = 0;
    float Top = 0;
    float Width = 0;
    float Height = 0;
};

// Indexes of WinPos and FontSet.
enum WinPosIndex {
    kPosAddData = 0,
    kPosTable = 1,
    kPosTotal = 2,
    kPosAnswer = 3,
    kPosGraph = 5,
    kPosGridBase = 6,
    kPosMain = 7
};
enum FontIndex { kFontAddData = 0, kFontGridBase = 1 };

struct Settings {
    qint32 QuotaFirst = 0;
    qint32 QuotaLast = 100000;
    std::array<FontRec, 16> FontSet;
    std::array<qint32, 16> ColorSet{};
    std::array<WinPosRec, 16> WinPos;
    std::array<qint32, 16> GridWidth{};
    std::array<QString, 8> RecentFiles;  // newest first; four are shown
    QString NetText1;
    QString NetText2;
    double SaveInterval = 30.0 / 1440;  // in days
};

// Where the file lies: in the user's configuration folder.
QString SettingsPath();
// All defaults.
Settings SettingsDefault();
// Reads the file at `path`, in any of its forms.
Settings SettingsRead(const QString& path);
// Writes the present form, making the folder when there is none. Says nothing when that fails.
void SettingsWrite(const Settings& settings, const QString& path);

// Puts `path` in front of the recent files; an empty one, or one that code page 932 can't hold, changes nothing.
void RecentAdd(Settings& settings, const QString& path);

// True when the time since the last save exceeds the interval: the moment to ask. Both in local time.
bool IsSaveReminderDue(const Settings& settings, const QDateTime& savedTime, const QDateTime& now);
// "最後に保存した時刻から30分経過しました。保存しますか？"
QString SaveReminderText(const Settings& settings);

}  // namespace quibra
