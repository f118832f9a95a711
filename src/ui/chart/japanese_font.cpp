#include "ui/chart/japanese_font.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace quibra {

QFont JapaneseFont(const QFont& font) {
    const QStringList japanese = QFontDatabase::families(QFontDatabase::Japanese);
    if (japanese.contains(QFontInfo(font).family())) return font;
    for (const QString& family : {u"Noto Sans CJK JP"_s, u"IPAexGothic"_s, u"VL PGothic"_s}) {
        if (!japanese.contains(family)) continue;
        QFont with = font;
        with.setFamily(family);
        return with;
    }
    return font;
}

}  // namespace quibra
