// Results as JSON, for scripts: docs/RESULT_JSON.md tells the keys and promises which of them stay.
#pragma once

#include <QByteArray>

#include "core/survey.h"
#include "tabulation/total_result.h"

namespace quibra {

QByteArray WriteTotalJson(const Survey& survey, const TotalResult& result);
QByteArray WriteEssayJson(const TotalResult& result);

}  // namespace quibra
