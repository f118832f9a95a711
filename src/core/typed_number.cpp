#include "core/typed_number.h"

#include "core/numbers.h"

namespace quibra {

QString NarrowFigures(QString text) {
    for (QChar& c : text) {
        if ((c >= u'０' && c <= u'９') || c == u'．' || c == u'＋' || c == u'－' || c == u'，')
            c = QChar(c.unicode() - u'０' + u'0');
        else if (c == u'　')
            c = u' ';
        else if (c == u'−')
            c = u'-';
    }
    return text;
}

double TypedNumber(const QString& text) {
    return LeadingNumber(NarrowFigures(text));
}

}  // namespace quibra
