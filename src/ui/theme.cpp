#include "ui/theme.h"

#include <QFile>
#include <QIconEngine>
#include <QLabel>
#include <QLibraryInfo>
#include <QLocale>
#include <QPainter>
#include <QPixmapCache>
#include <QStyle>
#include <QSvgRenderer>
#include <QTranslator>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "ui/chart/japanese_font.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

double Luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    const QColor rgb = color.toRgb();
    return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF()) + 0.0722 * linear(rgb.blueF());
}

QColor Mix(const QColor& from, const QColor& to, double share) {
    const auto part = [share](float a, float b) { return a + (b - a) * static_cast<float>(share); };
    return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                            part(from.blueF(), to.blueF()));
}

// `color`, moved towards black or white as far as the grounds of the palette ask for.
QColor Readable(const QColor& color, const QPalette& palette) {
    const QColor grounds[] = {palette.color(QPalette::Base), palette.color(QPalette::Window),
                              palette.color(QPalette::AlternateBase)};
    const bool dark = Luminance(grounds[0]) < 0.18;
    const QColor end = dark ? Qt::white : Qt::black;
    QColor mixed = color;
    for (int step = 1; step <= 20; ++step) {
        if (std::ranges::all_of(grounds,
                                [&](const QColor& ground) { return Contrast(mixed, ground) >= kReadableContrast; }))
            break;
        mixed = Mix(color, end, step / 20.0);
    }
    return mixed;
}

// Draws one SVG in a single colour of the palette, so that it is right in light and dark and when disabled.
class ThemeIconEngine : public QIconEngine {
  public:
    explicit ThemeIconEngine(QString path) : path_(std::move(path)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const double scale = painter->device() ? painter->device()->devicePixelRatio() : 1;
        painter->drawPixmap(rect, scaledPixmap(rect.size() * scale, mode, state, scale));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override {
        const QColor color = ColorFor(mode);
        const QString key =
            u"quibra-icon/%1/%2/%3x%4/%5"_s.arg(path_, color.name()).arg(size.width()).arg(size.height()).arg(scale);
        QPixmap pixmap;
        if (QPixmapCache::find(key, &pixmap)) return pixmap;
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QSvgRenderer renderer(path_);
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), color);
        painter.end();
        pixmap = QPixmap::fromImage(image);
        pixmap.setDevicePixelRatio(scale);
        QPixmapCache::insert(key, pixmap);
        return pixmap;
    }

    QIconEngine* clone() const override { return new ThemeIconEngine(path_); }
    QString key() const override { return u"quibra-theme"_s; }

  private:
    static QColor ColorFor(QIcon::Mode mode) {
        const QPalette palette = QGuiApplication::palette();
        if (mode == QIcon::Disabled) return palette.color(QPalette::Disabled, QPalette::ButtonText);
        if (mode == QIcon::Selected) return palette.color(QPalette::HighlightedText);
        return palette.color(QPalette::ButtonText);
    }

    QString path_;
};

// Words of a survey stand in labels and tool tips, and Qt takes what looks like markup for it: a question's name could
// have a file of the reader's shown. A tool tip is a label, too, and polished before it gets its text.
class PlainTexts : public QObject {
  public:
    using QObject::QObject;

    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() != QEvent::Polish) return false;
        if (auto* label = qobject_cast<QLabel*>(object); label && label->textFormat() == Qt::AutoText)
            label->setTextFormat(Qt::PlainText);
        return false;
    }
};

}  // namespace

void SetUpApplication(QApplication& application) {
    // "windows" is what Qt falls back on where no platform theme names a style.
    if (QApplication::style()->name().compare(u"windows", Qt::CaseInsensitive) == 0)
        QApplication::setStyle(u"Fusion"_s);
    const QLocale japan(QLocale::Japanese, QLocale::Japan);
    QLocale::setDefault(japan);
    auto translator = std::make_unique<QTranslator>();
    if (translator->load(japan, u"qtbase"_s, u"_"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        translator->setParent(&application);
        QCoreApplication::installTranslator(translator.release());
    }
    QApplication::setFont(JapaneseFont(QApplication::font()));
    application.installEventFilter(new PlainTexts(&application));
}

double Contrast(const QColor& first, const QColor& second) {
    const auto [low, high] = std::minmax({Luminance(first), Luminance(second)});
    return (high + 0.05) / (low + 0.05);
}

QColor ColorOf(ThemeColor color, const QPalette& palette) {
    switch (color) {
        case ThemeColor::Accent:
            return Readable(QColor(0x2a, 0x76, 0xc6), palette);
        case ThemeColor::Error:
            return Readable(QColor(0xd3, 0x32, 0x2f), palette);
        case ThemeColor::NotApplicable:
            return Readable(QColor(0x80, 0x80, 0x80), palette);
        case ThemeColor::HeadingTint:
            break;
    }
    // As strong as the text on it allows.
    const QColor base = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    for (double share = 0.2; share > 0.01; share -= 0.02) {
        const QColor tint = Mix(base, QColor(0x2a, 0x76, 0xc6), share);
        if (Contrast(tint, text) >= kReadableContrast) return tint;
    }
    return base;
}

QIcon ThemeIcon(const QString& name) {
    const QString path = u":/icons/"_s + name + u".svg"_s;
    return QFile::exists(path) ? QIcon(new ThemeIconEngine(path)) : QIcon();
}

}  // namespace quibra
