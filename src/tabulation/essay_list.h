// What an essay list asks of each sample.
#pragma once

#include <QString>
#include <vector>

#include "core/limit_list.h"
#include "core/survey.h"
#include "tabulation/total_option.h"

namespace quibra {

// One answer that an essay list shows.
struct EssayHit {
    qint16 Cno;
    QString essay;
};

// True when the sample meets the condition `list` and some of its answers, which become `hits`, match the option's
// choice and essay condition. Without an essay condition (CrossMode below 0) it has one hit of choice 0 with no text.
bool EssayMatch(const Survey& survey, qint32 dno, const TotalOption& option, const LimitList& list,
                std::vector<EssayHit>& hits);

// The code in front of ":" of a text with a code; "?" when there is none.
QString EssayCode(const QString& essay);

}  // namespace quibra
