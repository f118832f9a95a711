// Results as JSON, for scripts.
#pragma once

#include <QByteArray>

#include "core/survey.h"
#include "tabulation/total_result.h"

namespace quibra {

QByteArray WriteTotalJson(const Survey& survey, const TotalResult& result);
QByteArray WriteEssayJson(const TotalResult& result);

}  // namespace quibra
