// Results as JSON, for scripts.
#pragma once

#include <QByteArray>

#include "core/survey.h"
#include "tabulation/total_sheet.h"

namespace quibra {

QByteArray WriteTotalJson(const Survey& survey, const TotalSheet& sheet);
QByteArray WriteEssayJson(const TotalSheet& sheet);

}  // namespace quibra
