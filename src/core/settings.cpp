#include "core/settings.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <bit>
#include <cmath>

#include "core/binary_file.h"
#include "core/code_page.h"
#include "core/file_names.h"
#include "core/whole_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr qint16 kQuotaOnly = 0;  // the oldest form: nothing but the quota, without a magic
constexpr qint16 kWithMagic = 1;
const QString kMagic = u"Velmor Quibra Initialize File Ver 966a"_s;
// Forms in between, of which the quota alone is taken.
const QString kMagic9510 = u"Velmor Quibra Initialize File Ver 95.10b"_s;
const QString kMagic965 = u"Velmor Quibra Initialize File Ver 965d"_s;

constexpr double kDefaultInterval = 30.0 / 1440;
constexpr qint64 kSecondsOfDay = 86400;
constexpr int kShownRecentFiles = 4;

constexpr qint32 ColorValue(int red, int green, int blue) {
    return red | green << 8 | blue << 16;
}

// The forms of a number in the file, reading and writing alike: the same list of fields serves both.
class FieldReader {
  public:
    explicit FieldReader(ByteReader& in) : in_(in) {}
    void operator()(qint32& value) { value = in_.Int32(); }
    void operator()(bool& value) { value = in_.Int16() != 0; }
    void operator()(QString& value) { value = ReadDoubleLen(in_); }
    // What is no number counts as absent.
    void operator()(float& value) {
        const auto read = std::bit_cast<float>(in_.Int32());
        if (std::isfinite(read)) value = read;
    }

  private:
    ByteReader& in_;
};

class FieldWriter {
  public:
    explicit FieldWriter(ByteWriter& out) : out_(out) {}
    void operator()(qint32& value) { out_.Int32(value); }
    void operator()(bool& value) { out_.Int16(value ? -1 : 0); }
    void operator()(QString& value) { WriteDoubleLen(out_, value); }
    void operator()(float& value) { out_.Int32(std::bit_cast<qint32>(value)); }

  private:
    ByteWriter& out_;
};

template <typename Field>
void VisitQuota(Settings& settings, Field& field) {
    field(settings.QuotaFirst);
    field(settings.QuotaLast);
}

template <typename Field>
void VisitFonts(Settings& settings, Field& field) {
    for (FontRec& font : settings.FontSet) {
        field(font.FontName);
        field(font.FontSize);
        for (bool* flag : {&font.FontBold, &font.FontItalic, &font.FontUnderline, &font.FontStrikethru})
            field(*flag);
        field(font.ForeColor);
        field(font.BackColor);
    }
}

// Everything between the quota and the texts that later versions have added behind it.
template <typename Field>
void VisitBody(Settings& settings, Field& field) {
    VisitFonts(settings, field);
    for (qint32& color : settings.ColorSet)
        field(color);
    for (WinPosRec& place : settings.WinPos)
        for (float* side : {&place.Left, &place.Top, &place.Width, &place.Height})
            field(*side);
    for (qint32& width : settings.GridWidth)
        field(width);
    for (QString& path : settings.RecentFiles)
        field(path);
}

double ReadInterval(ByteReader& in) {
    const auto low = static_cast<quint32>(in.Int32());
    const auto high = static_cast<quint64>(static_cast<quint32>(in.Int32()));
    const auto days = std::bit_cast<double>(high << 32 | low);
    return days >= 0 && days <= 1 ? days : kDefaultInterval;
}

void WriteInterval(ByteWriter& out, double days) {
    const auto bits = std::bit_cast<quint64>(days);
    out.Int32(static_cast<qint32>(static_cast<quint32>(bits)));
    out.Int32(static_cast<qint32>(static_cast<quint32>(bits >> 32)));
}

void ReadFile(const QString& path, Settings& settings) {
    BinaryFile file = BinaryFile::OpenToRead(path);
    ByteReader in(file);
    FieldReader field(in);
    const qint16 kind = in.Int16();
    if (kind == kQuotaOnly) VisitQuota(settings, field);
    if (kind != kWithMagic) return;
    const QString magic = ReadMirrorStr(in);
    if (magic != kMagic && magic != kMagic9510 && magic != kMagic965) return;
    VisitQuota(settings, field);
    if (magic != kMagic) return;
    VisitBody(settings, field);
    if (!in.AtEnd()) {
        field(settings.NetText1);
        field(settings.NetText2);
    }
    if (!in.AtEnd()) settings.SaveInterval = ReadInterval(in);
}

void WriteFile(Settings settings, const QString& path) {
    WholeFile file(path);
    ByteWriter out(file.Bytes());
    FieldWriter field(out);
    out.Int16(kWithMagic);
    WriteMirrorStr(out, kMagic);
    VisitQuota(settings, field);
    VisitBody(settings, field);
    field(settings.NetText1);
    field(settings.NetText2);
    WriteInterval(out, settings.SaveInterval);
    out.Flush();
    file.Replace();
}

}  // namespace

QString SettingsPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/quibra/quibra.ini"_s;
}

// Before anybody has dragged a column.
constexpr std::array<qint32, 16> kGridWidths = {1400, 1000, 800, 0, 0, 1000, 1000, 1400, 2600, 1400};
constexpr size_t kGridWidthsUsed = 10;

Settings SettingsDefault() {
    Settings settings;
    for (FontRec& font : settings.FontSet)
        font.BackColor = ColorValue(255, 255, 255);
    settings.ColorSet[0] = ColorValue(0, 96, 0);
    settings.ColorSet[1] = ColorValue(255, 0, 0);
    settings.ColorSet[2] = ColorValue(191, 0, 191);
    settings.ColorSet[3] = ColorValue(127, 127, 127);
    settings.ColorSet[15] = 1;
    settings.GridWidth = kGridWidths;
    settings.SaveInterval = kDefaultInterval;
    return settings;
}

Settings SettingsRead(const QString& path) {
    Settings settings = SettingsDefault();
    try {
        if (KindOfPath(path) == PathKind::File) ReadFile(path, settings);
    } catch (const std::exception&) {
        // What had been read counts; nobody is told of a broken settings file.
    }
    if (settings.GridWidth[0] == 0 || settings.GridWidth[8] == 0)
        std::copy_n(kGridWidths.begin(), kGridWidthsUsed, settings.GridWidth.begin());
    return settings;
}

void SettingsWrite(const Settings& settings, const QString& path) {
    try {
        QDir().mkpath(QFileInfo(path).path());
        WriteFile(settings, path);
    } catch (const std::exception&) {
        // The next start has the settings of before; that is no reason to hold anybody up at the close.
    }
}

void RecentAdd(Settings& settings, const QString& path) {
    // A name that the file can't hold would be that of another one at the next start.
    if (path.isEmpty() || DecodeCodePage(EncodeCodePage(path)) != path) return;
    const auto begin = settings.RecentFiles.begin();
    // A path that is not among those shown pushes the last of them into the fifth place.
    const auto found = std::find(begin, begin + kShownRecentFiles, path);
    std::move_backward(begin, found, found + 1);
    *begin = path;
}

bool IsSaveReminderDue(const Settings& settings, const QDateTime& savedTime, const QDateTime& now) {
    return static_cast<double>(savedTime.secsTo(now)) > settings.SaveInterval * kSecondsOfDay;
}

QString SaveReminderText(const Settings& settings) {
    const qint64 minutes = std::llround(settings.SaveInterval * kSecondsOfDay) / 60;
    return u"最後に保存した時刻から%1分経過しました。保存しますか？"_s.arg(minutes);
}

}  // namespace quibra
