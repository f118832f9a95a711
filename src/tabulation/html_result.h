// A result as an HTML page.
#pragma once

#include <QByteArray>

#include "core/survey.h"
#include "tabulation/total_sheet.h"

namespace quibra {

// The page's bytes, in code page 932 with CR LF line ends.
QByteArray WriteHtml(const Survey& survey, const TotalSheet& sheet);

}  // namespace quibra
