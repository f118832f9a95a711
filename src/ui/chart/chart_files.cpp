#include "ui/chart/chart_files.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QSvgGenerator>
#include <cmath>

#include "core/runtime_error.h"
#include "core/whole_file.h"
#include "ui/chart/chart_axis.h"
#include "ui/chart/pdf_text.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kDotsPerInch = 96;
constexpr double kPointsPerInch = 72;
constexpr double kMetersPerInch = 0.0254;
constexpr double kPngScale = 2;
constexpr double kMostGap = 1;

// The device's units are the picture's pixels times `scale`.
void PaintOn(QPaintDevice& device, const ChartPicture& picture, double scale) {
    QPainter painter(&device);
    PaintChart(painter, QRectF(QPointF(0, 0), picture.size * scale), picture.table, picture.style,
               ChartLook::Paper(picture.font));
}

QString Unescaped(QString text) {
    return text.replace(u"&lt;"_s, u"<"_s)
        .replace(u"&gt;"_s, u">"_s)
        .replace(u"&quot;"_s, u"\""_s)
        .replace(u"&amp;"_s, u"&"_s);
}

// Qt parts a text where its script changes, at every kanji between kana. Pieces that follow each other without a gap
// become one text again, which can be searched for and edited.
QByteArray JoinTexts(const QByteArray& svg) {
    static const QRegularExpression kText(
        u"<text ([^>]*) x=\"([-0-9.e]+)\" (y=\"[^\"]*\" font-family=\"([^\"]*)\" font-size=\"([0-9.]+)\" "_s
        u"font-weight=\"([0-9]+)\"[^>]*)>([^<]*)</text>\n"_s);
    const QString picture = QString::fromUtf8(svg);
    QString joined;
    qsizetype copied = 0;
    QString manner;  // of the text that has been left open
    double end = 0;
    const auto close = [&] {
        if (!manner.isEmpty()) joined += u"</text>\n"_s;
        manner.clear();
    };
    for (auto found = kText.globalMatch(picture); found.hasNext();) {
        const QRegularExpressionMatch text = found.next();
        const double x = text.captured(2).toDouble();
        QFont font(text.captured(4));
        font.setPixelSize(qRound(text.captured(5).toDouble()));
        font.setBold(text.captured(6).toInt() >= QFont::DemiBold);
        const QString own = text.captured(1) + text.captured(3);
        const bool follows = text.capturedStart() == copied && own == manner && std::abs(x - end) < kMostGap;
        if (!follows) {
            close();
            joined += QStringView(picture).sliced(copied, text.capturedStart() - copied);
            joined += QStringView(picture).sliced(text.capturedStart(), text.capturedStart(7) - text.capturedStart());
            manner = own;
        }
        joined += text.captured(7);
        end = x + QFontMetricsF(font).horizontalAdvance(Unescaped(text.captured(7)));
        copied = text.capturedEnd();
    }
    close();
    return (joined + picture.sliced(copied)).toUtf8();
}

}  // namespace

QImage ChartImage(const ChartPicture& picture, double scale) {
    QImage image((picture.size * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    // Sizes in points are of 96 dots an inch while it is painted, whatever the scale.
    const auto setDots = [&image](double scaled) {
        image.setDotsPerMeterX(qRound(kDotsPerInch * scaled / kMetersPerInch));
        image.setDotsPerMeterY(qRound(kDotsPerInch * scaled / kMetersPerInch));
    };
    setDots(1);
    PaintOn(image, picture, 1);
    setDots(scale);
    return image;
}

QByteArray ChartPng(const ChartPicture& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    ChartImage(picture, kPngScale).save(&buffer, "PNG");
    return bytes;
}

QString ChartDescription(const ChartTable& table) {
    QStringList lines;
    for (const ChartTable::Row& row : table.Rows) {
        QStringList values;
        for (qsizetype i = 0; i < table.Labels.size(); ++i)
            values << table.Labels[i] + u' ' + ChartValueText(row.Values[static_cast<size_t>(i)], table.IsPercent);
        lines << row.Name + u": "_s + values.join(u"、"_s);
    }
    return lines.join(u'\n');
}

QByteArray ChartSvg(const ChartPicture& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(kDotsPerInch);
    generator.setSize(picture.size.toSize());
    generator.setViewBox(QRectF(QPointF(0, 0), picture.size));
    generator.setTitle(picture.table.Title.toHtmlEscaped());
    generator.setDescription(ChartDescription(picture.table).toHtmlEscaped());
    PaintOn(generator, picture, 1);
    return JoinTexts(bytes);
}

QByteArray ChartPdf(const ChartPicture& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(picture.table.Title);
        writer.setPageSize(QPageSize(picture.size * (kPointsPerInch / kDotsPerInch), QPageSize::Point));
        writer.setPageMargins(QMarginsF());
        PaintOn(writer, picture, double(writer.logicalDpiX()) / kDotsPerInch);
    }
    return WithOwnCharacters(bytes);
}

void WriteChartFile(const QString& path, const ChartPicture& picture) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    QByteArray bytes;
    if (suffix == u"svg")
        bytes = ChartSvg(picture);
    else if (suffix == u"png")
        bytes = ChartPng(picture);
    else if (suffix == u"pdf")
        bytes = ChartPdf(picture);
    else
        throw RuntimeError(kErrorInvalidCall, u"図のファイル名の終わりは .svg、.png、.pdf のどれかです。"_s);
    WriteWholeFile(path, bytes);
}

}  // namespace quibra
