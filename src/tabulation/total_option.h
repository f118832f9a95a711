// The description of one total: which questions, under which conditions, counted how.
#pragma once

#include <QString>

#include "core/limit_list.h"
#include "core/survey.h"

namespace quibra {

enum TotalKindValue { kTable = 1, kEssayList = 2 };
enum CrossModeValue { kCrossQuestion = 0, kCrossPreLimit = 1, kCrossFree = 2 };
// CrossMode of an essay list.
enum EssayConditionValue {
    kEssayNoCondition = -1,
    kEssayEmpty = 0,
    kEssayFilled = 1,
    kEssayHolds = 2,
    kEssayNumber = 3,
    kEssayCode = 4,
    kEssayAny = 5,
};

inline constexpr int kMaxLimitColumns = 128;

struct TotalOption {
    QString Nname = QStringLiteral("(題名)");
    qint16 TotalKind = kTable;
    qint16 FromQno = 0;
    qint16 ToQno = 0;
    qint16 Rank = 0;                                           // 0 all positions
    LimitList ExLimit;                                         // column 0 of Limits when the total started
    BoundedTable<LimitLine, 16, kMaxLimitColumns + 1> Limits;  // (line, column): column 0 the whole limit
    qint16 LimitCount = 1;
    qint16 CrossQno = 0;  // essay list: the choice, or the question's ChoiceCount for any
    qint16 CrossMode = kCrossFree;
    QString EssayText;
    double NumLow = 0;
    double NumHigh = 0;
    QString CodeLow;
    QString CodeHigh;
    bool Rough = false;
};

// The individual limits of a cross: a column for each choice of question q, 1, 2, ... and 0 last; or a column for each
// predefined condition that is written, copied line by line (one empty column when there is none).
void SetCrossQuestion(TotalOption& option, const Survey& survey, int q);
void SetCrossPreLimit(TotalOption& option, const Survey& survey);

// A TotalOption as JSON, its field names as keys, each condition as {"Mask": n, "Lines": [[a, b], ...]}, Limits with
// column 0 first. Absent keys keep their defaults; an absent ToQno is FromQno, an absent LimitCount the number of
// individual conditions given. RuntimeError as strict_json.h tells.
TotalOption ReadTotalOptionJson(const QByteArray& json, const Survey& survey);
QByteArray WriteTotalOptionJson(const TotalOption& option);

}  // namespace quibra
