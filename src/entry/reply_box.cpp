#include "entry/reply_box.h"

namespace quibra {

void ShowCorrectionBox::ShowCorrection(const QString& head, const QString& tail, int pos, int len) {
    const QString text = box_.Text();
    QString symbol;
    if (pos > 0 && len > 0) {
        symbol = text.mid(pos - 1, len);
        box_.MarkError(pos - 1, len);
    }
    ui_.Message(head + u'(' + symbol + u')' + tail, kWarning);
    box_.SetText(text);
}

}  // namespace quibra
