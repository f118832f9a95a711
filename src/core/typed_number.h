// Numbers as people type them: an input method gives full-width figures, which mean what the narrow ones do.
#pragma once

#include <QString>

namespace quibra {

// The text with full-width figures, signs and points made narrow.
QString NarrowFigures(QString text);
// The leading number of such a text; see LeadingNumber.
double TypedNumber(const QString& text);

}  // namespace quibra
