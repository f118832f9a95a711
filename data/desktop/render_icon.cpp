// Renders an icon for those who show no SVG: render_icon SVG SIZE PNG. A program of the build, not installed.
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    QSvgRenderer renderer(QString::fromLocal8Bit(argv[1]));
    const int size = QByteArray(argv[2]).toInt();
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    if (renderer.isValid() && image.save(QString::fromLocal8Bit(argv[3]), "PNG")) return 0;
    std::fprintf(stderr, "cannot render %s as %s\n", argv[1], argv[3]);
    return 1;
}
