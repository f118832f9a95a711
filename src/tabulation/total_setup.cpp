#include "tabulation/total_setup.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "core/labels.h"
#include "core/numbers.h"
#include "core/typed_number.h"

using namespace Qt::StringLiterals;

namespace quibra {

TotalSetup::TotalSetup(const Survey& survey, UserInterface& ui, LimitPicker editLimit)
    : Nname(TotalOption().Nname), survey_(survey), ui_(ui), editLimit_(std::move(editLimit)) {
    SelectEssayQuestion(0);
}

void TotalSetup::SelectQuestion(int q) {
    fromQno_ = q;
    toQno = q;
    rank = 0;
}

void TotalSetup::ResetLimitList() {
    for (int column = 1; column <= kMaxLimitColumns; ++column)
        ClearColumn(column);
    limitCount_ = 1;
    limitRow = 0;
}

void TotalSetup::SelectCross(CrossModeValue mode) {
    cross_ = mode;
    ResetLimitList();
    if (mode == kCrossFree) return;
    if (mode == kCrossQuestion)
        SetCrossQuestion(option_, survey_, crossQno_);
    else
        SetCrossPreLimit(option_, survey_);
    limitCount_ = option_.LimitCount;
}

void TotalSetup::SelectCrossQuestion(int q) {
    crossQno_ = q;
    SelectCross(kCrossQuestion);
}

QString TotalSetup::ColumnText(int column) const {
    return LimitText(survey_, LimitList(option_.Limits.Column(column)), false);
}

bool TotalSetup::EditColumn(int column) {
    LimitList list(option_.Limits.Column(column));
    if (!editLimit_(list)) return false;
    SetColumn(column, LimitColumn(list.Data(), 16));
    (column == 0 ? wroteWhole_ : wroteColumns_) = true;
    return true;
}

void TotalSetup::SetColumn(int column, LimitColumn lines) {
    std::ranges::copy(lines, option_.Limits.Column(column).begin());
}

void TotalSetup::ClearColumn(int column) {
    std::ranges::fill(option_.Limits.Column(column), LimitLine{});
}

QStringList TotalSetup::LimitRows() const {
    QStringList rows;
    for (int column = 1; column <= limitCount_; ++column)
        rows += ColumnText(column);
    return rows << u"以上↑"_s;
}

void TotalSetup::AddLimit() {
    CheckSubscript(limitCount_, kMaxLimitColumns);
    LimitList list;
    if (!editLimit_(list)) return;
    const int added = limitRow + 1;
    for (int column = ++limitCount_; column > added; --column)
        SetColumn(column, option_.Limits.Column(column - 1));
    SetColumn(added, LimitColumn(list.Data(), 16));
    ++limitRow;  // the same row as before stays selected, so that conditions added one by one keep their order
    cross_ = kCrossFree;
    wroteColumns_ = true;
}

void TotalSetup::ChangeLimit() {
    if (limitRow < limitCount_ && EditColumn(limitRow + 1)) cross_ = kCrossFree;
}

void TotalSetup::DeleteLimit() {
    if (limitRow >= limitCount_ || limitCount_ == 1) return;
    for (int column = limitRow + 1; column < limitCount_; ++column)
        SetColumn(column, option_.Limits.Column(column + 1));
    ClearColumn(limitCount_--);
    cross_ = kCrossFree;
}

QString TotalSetup::WholeLimitText() const {
    return ColumnText(0);
}

void TotalSetup::EditWholeLimit() {
    EditColumn(0);
}

void TotalSetup::SetWholeLimit(const LimitList& list) {
    SetColumn(0, LimitColumn(list.Data(), 16));
}

void TotalSetup::SelectEssayQuestion(int q) {
    essayQno_ = q;
    essayCno = survey_.Questions[q].ChoiceCount;  // any choice but 無回答
    essayRank = 0;
}

void TotalSetup::SelectEssayCondition(EssayConditionValue condition) {
    if (condition == kEssayHolds || condition == kEssayNumber || condition == kEssayCode) {
        essayDetail_ = condition;
        AskEssayDetail();
    } else {
        essayCondition_ = condition;
    }
}

void TotalSetup::AskEssayDetail() {
    if (essayDetail_ == kEssayNumber) AskNumbers();
    if (essayDetail_ == kEssayCode) AskCodes();
    if (essayDetail_ != kEssayHolds) return;
    QString text = essayText_;
    if (ui_.InputBox(u"記述の条件"_s, u"記述="_s, QString(), u"条件を指定しないことも出来ます"_s, text))
        essayText_ = text;
}

void TotalSetup::AskNumbers() {
    const QString title = u"数量の条件"_s;
    QString text = NumberText(numLow_);
    if (!ui_.InputBox(title, u"最小値は"_s, QString(), QString(), text)) return;
    const double low = TypedNumber(text);
    text = NumberText(numHigh_);
    if (!ui_.InputBox(title, u"最大値は"_s, NumberText(low) + u'～', QString(), text)) return;
    std::tie(numLow_, numHigh_) = std::minmax({low, TypedNumber(text)});
}

void TotalSetup::AskCodes() {
    const QString title = u"ｺｰﾄﾞの条件"_s;
    QString low = codeLow_;
    if (!ui_.InputBox(title, u"最小値は"_s, QString(), QString(), low)) return;
    QString high = codeHigh_;
    if (!ui_.InputBox(title, u"最大値は"_s, low + u'～', QString(), high)) return;
    std::tie(codeLow_, codeHigh_) = std::minmax({low, high});
}

QString TotalSetup::EssayDetailText() const {
    switch (essayDetail_) {
        case kEssayHolds:
            return essayText_;
        case kEssayNumber:
            return NumberText(numLow_) + u" ～ "_s + NumberText(numHigh_);
        case kEssayCode:
            return codeLow_ + u" ～ "_s + codeHigh_;
        default:
            return QString();
    }
}

QStringList TotalSetup::RankRows(int q) const {
    QStringList rows{u"全順位"_s};
    for (int n = 1; n <= survey_.Questions[q].Anum; ++n)
        rows += QString::number(n) + u'位';
    return rows;
}

QStringList TotalSetup::EssayChoiceRows() const {
    QStringList rows;
    for (int c = 0; c < survey_.Questions[essayQno_].ChoiceCount; ++c)
        rows += ChoiceLabel(survey_, essayQno_, c, true, true);
    return rows << u"全選択肢(無回答除く)"_s;
}

const TotalOption& TotalSetup::BuildOption(TotalKindValue kind) {
    wroteWhole_ = false;
    if (kind == kTable) wroteColumns_ = false;  // an essay list uses none
    option_.Nname = Nname;
    option_.Rough = rough;
    option_.TotalKind = kind;
    option_.Rank = static_cast<qint16>(rank);
    if (kind == kTable) {
        option_.LimitCount = static_cast<qint16>(limitCount_);
        option_.FromQno = static_cast<qint16>(fromQno_);
        option_.ToQno = static_cast<qint16>(std::max(fromQno_, toQno));  // an earlier last question doesn't count
        option_.CrossMode = cross_;
        if (cross_ == kCrossQuestion) option_.CrossQno = static_cast<qint16>(crossQno_);
        return option_;
    }
    option_.LimitCount = 1;
    option_.FromQno = static_cast<qint16>(essayQno_);
    option_.CrossQno = static_cast<qint16>(essayCno);
    option_.CrossMode = kEssayNoCondition;
    if (require) return option_;
    option_.Rank = static_cast<qint16>(essayRank);
    option_.CrossMode = essayCondition_ == kEssayFilled ? essayDetail_ : essayCondition_;
    if (option_.CrossMode == kEssayHolds) option_.EssayText = essayText_;
    if (option_.CrossMode == kEssayNumber) {
        option_.NumLow = numLow_;
        option_.NumHigh = numHigh_;
    }
    if (option_.CrossMode == kEssayCode) {
        option_.CodeLow = codeLow_;
        option_.CodeHigh = codeHigh_;
    }
    return option_;
}

void TotalSetup::SetTotalOption(const TotalOption& option) {
    wroteWhole_ = wroteColumns_ = false;
    SetColumn(0, option.Limits.Column(0));
    SelectCross(kCrossFree);
    Nname = option.Nname;
    if (option.TotalKind == kTable) ShowTable(option);
    if (option.TotalKind == kEssayList) ShowEssayList(option);
}

bool TotalSetup::AskToLose(const QString& question) {
    return !HasUnused() || ui_.Message(question, kOkCancel + kQuestion + kSecondDefault) == Answer::Ok;
}

bool TotalSetup::MayDiscard() {
    return AskToLose(u"書いた限定条件を集計に使わずに閉じます。"_s);
}

bool TotalSetup::MayReplace() {
    return AskToLose(u"書いた限定条件を集計に使わずに、手前の集計結果の設定に替えます。"_s);
}

void TotalSetup::ShowTable(const TotalOption& option) {
    page = kTable;
    if (option.CrossMode == kCrossQuestion && IsQuestion(option.CrossQno)) SelectCrossQuestion(option.CrossQno);
    if (option.CrossMode == kCrossPreLimit) SelectCross(kCrossPreLimit);
    if (option.CrossMode == kCrossFree) {
        limitCount_ = std::clamp<int>(option.LimitCount, 1, kMaxLimitColumns);
        for (int column = 1; column <= limitCount_; ++column)
            SetColumn(column, option.Limits.Column(column));
    }
    if (IsQuestion(option.FromQno)) SelectQuestion(option.FromQno);
    if (IsQuestion(option.ToQno)) toQno = option.ToQno;
    if (HasRank(fromQno_, option.Rank)) rank = option.Rank;
    rough = option.Rough;
}

void TotalSetup::ShowEssayList(const TotalOption& option) {
    page = kEssayList;
    if (IsQuestion(option.FromQno)) SelectEssayQuestion(option.FromQno);
    if (option.CrossQno >= 0 && option.CrossQno <= survey_.Questions[essayQno_].ChoiceCount) essayCno = option.CrossQno;
    if (HasRank(fromQno_, option.Rank)) rank = option.Rank;
    require = option.CrossMode < 0;
    if (!require && HasRank(essayQno_, option.Rank)) essayRank = option.Rank;
    switch (option.CrossMode) {
        case kEssayHolds:
            essayText_ = option.EssayText;
            break;
        case kEssayNumber:
            numLow_ = option.NumLow;
            numHigh_ = option.NumHigh;
            break;
        case kEssayCode:
            codeLow_ = option.CodeLow;
            codeHigh_ = option.CodeHigh;
            break;
        case kEssayFilled:
        case kEssayEmpty:
        case kEssayAny:
            break;
        default:
            return;
    }
    const auto condition = static_cast<EssayConditionValue>(option.CrossMode);
    const bool whole = condition == kEssayEmpty || condition == kEssayAny;
    essayCondition_ = whole ? condition : kEssayFilled;
    if (!whole) essayDetail_ = condition;
}

}  // namespace quibra
