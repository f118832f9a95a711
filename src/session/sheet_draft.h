// A sheet that has been typed and not yet read: of which sample, and where the caret stood.
#pragma once

#include <QString>

namespace quibra {

struct SheetDraft {
    qint32 IDno = 0;
    QString Text;
    qint32 Caret = 0;

    bool operator==(const SheetDraft&) const = default;
};

}  // namespace quibra
