#include "conditions/limit_editor.h"

#include <QScopeGuard>
#include <utility>

#include "companion/limit_terms.h"
#include "conditions/block_condition.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kLastLine = 15;
constexpr int kFullList = 16;      // rows: 14 lines between the heading and the closing row
constexpr int kHighestRank = 127;  // that a line has bits for
constexpr qint32 kSamplesAFigure = 50;

LimitLine MakeLine(int kind, int q, int c, int rank) {
    return {static_cast<qint16>(rank * 16 + kind), PackPosition(q, c)};
}

qint16 SlotBit(int k) {
    return static_cast<qint16>(1 << k);
}

}  // namespace

LimitEditor::LimitEditor(SurveySession& session) : LimitEditor(session, LimitList(), kPickLines, false) {
    SelectSlot(0);
}

LimitEditor::LimitEditor(SurveySession& session, const LimitList& list, qint16 mode)
    : LimitEditor(session, list, mode, true) {
    ShowLimitLines();
}

LimitEditor::LimitEditor(SurveySession& session, const LimitList& list, qint16 mode, bool picker)
    : session_(session), picker_(picker), mode_(mode), limitPass_(list), limitWork_(list) {
    for (int k = 0; k < kPreLimitSlots; ++k)
        preLimitRows_ += PreLimitText(k);
    if (session_.survey.QuestionCount > 0) SelectQuestion(0);
}

QStringList LimitEditor::ChoicesOfQuestion() const {
    return chosen_.question < 0 ? QStringList() : ChoiceList(session_.survey, chosen_.question);
}

QStringList LimitEditor::FillRankCombo() const {
    QStringList ranks{u"順位不問"_s};
    const int answers = chosen_.question < 0 ? 0 : session_.survey.Questions[chosen_.question].Anum;
    for (int rank = 1; rank <= std::min(answers, kHighestRank); ++rank)
        ranks += QString::number(rank) + u"位で回答"_s;
    return ranks;
}

void LimitEditor::SelectQuestion(int q) {
    chosen_ = {q, std::min(1, session_.survey.Questions[q].ChoiceCount - 1), 0};
}

void LimitEditor::SelectRow(int row) {
    row_ = row;
    if (!IsLineRow(row)) return;
    int q = 0;
    int c = 0;
    UnpackPosition(limitWork_[row].b, q, c);
    if (q >= session_.survey.QuestionCount) return;
    SelectQuestion(q);
    chosen_.choice = c < session_.survey.Questions[q].ChoiceCount ? c : -1;
    const int rank = LimitRankOf(limitWork_[row]);
    if (rank <= session_.survey.Questions[q].Anum) chosen_.rank = rank;
}

void LimitEditor::ShowLimitLines() {
    rows_ = {picker_ ? u"さらに加える条件↓"_s : u"限定条件その%1↓"_s.arg(slot_)};
    for (int i = 1; i <= limitWork_.LineCount(); ++i)
        rows_ += LimitLineText(session_.survey, i, limitWork_);
    rows_ += u"↑以上"_s;
    row_ = static_cast<int>(rows_.size()) - 1;
}

void LimitEditor::AddLimitLine(int kind) {
    if (chosen_.question < 0 || chosen_.choice < 0) {
        session_.ui.Beep();
        return;
    }
    // More lines than fit come from damaged files, and from lines doubled below.
    if (rows_.size() >= kFullList) {
        session_.ui.Beep();
        session_.ui.Message(u"条件は14個までです。"_s, kWarning);
        return;
    }
    const int pos = InsertionRow();
    for (int j = kLastLine - 1; j > pos; --j)
        limitWork_[j] = limitWork_[j - 1];
    limitWork_[kLastLine] = {};  // closes the list, whatever lines out of sight were pushed here

    // The refusals of a から come behind the move, so that they leave the line at `pos` doubled.
    int choice = chosen_.choice;
    if (kind == kLimitOr && pos == 1) {
        session_.ui.Message(u"「又は」を先頭にすることはできません。"_s, kWarning);
        kind = kLimitNone;
    } else if (kind == kLimitTo && !CheckRange(pos, kind, choice)) {
        return;
    }
    limitWork_[pos] = MakeLine(kind, chosen_.question, choice, chosen_.rank);
    rows_.insert(pos, LimitLineText(session_.survey, pos, limitWork_));
    row_ = pos + 1;  // the next line goes behind this one
    touched_ = true;
    CommitPreLimit();
}

// The rules of a から in front of row `pos`, which may make it another kind, or swap its choice with the line's before
// it so that a range reads from low to high. False when it is refused.
bool LimitEditor::CheckRange(int pos, int& kind, int& choice) {
    UserInterface& ui = session_.ui;
    if (chosen_.rank >= 1) {
        ui.Message(u"『から』では順位は指定できません"_s, kWarning);
        chosen_.rank = 0;
    }
    LimitLine& before = limitWork_[pos - 1];
    if (pos < 2 || LimitKindOf(before) == kLimitTo) {
        ui.Message(u"「から」の前には「から」以外の条件が必要です。"_s, kWarning);
        kind = kLimitAnd;
        return true;
    }
    int question = 0;
    int low = 0;
    UnpackPosition(before.b, question, low);
    if (question != chosen_.question) {
        ui.Message(u"「から」は直前の条件と質問文が同じでなければいけません。"_s, kWarning);
        return false;
    }
    if (choice == low) {
        ui.Message(u"直前のと同じ選択肢です。"_s, kWarning);
        return false;
    }
    if (choice < low) {
        before.b = PackPosition(question, choice);
        rows_[pos - 1] = LimitLineText(session_.survey, pos - 1, limitWork_);
        choice = low;
    }
    return true;
}

void LimitEditor::DeleteLine() {
    if (!IsLineRow(row_)) {
        session_.ui.Beep();
        return;
    }
    limitWork_[kLastLine] = {};
    for (int j = row_; j < kLastLine; ++j)
        limitWork_[j] = limitWork_[j + 1];
    rows_.removeAt(row_);
    --row_;
    touched_ = true;
    CommitPreLimit();
}

void LimitEditor::ClearLines() {
    for (int i = 1; i <= kLastLine; ++i)
        limitWork_[i] = {};
    ShowLimitLines();
    touched_ = true;
    CommitPreLimit();
}

QString LimitEditor::PreLimitText(int k) const {
    LimitList work;
    work[0].b = SlotBit(k);
    return LimitText(session_.survey, work, false);
}

void LimitEditor::SelectSlot(int k) {
    slot_ = k;
    limitWork_ = LimitList(session_.survey.PreLimit.Column(k));
    ShowLimitLines();
}

void LimitEditor::CommitPreLimit() {
    if (picker_) return;
    const auto slot = session_.survey.PreLimit.Column(slot_);
    slot[0].b = 0;
    std::copy(limitWork_.Data() + 1, limitWork_.Data() + slot.size(), slot.begin() + 1);
    preChanged_[slot_] = true;
    preLimitRows_[slot_] = PreLimitText(slot_);
    session_.ChangedOn();
    session_.Refresh(SurveySession::Change::Definition);
}

void LimitEditor::Pick(int k, bool on) {
    if (IsPicked(k) == on) return;
    limitWork_[0].b = static_cast<qint16>(limitWork_[0].b ^ SlotBit(k));
    touched_ = true;
}

void LimitEditor::Close(const std::function<void(const QString&)>& show) {
    if (picker_) {
        limitPass_ = limitWork_;
        return;
    }
    session_.ui.Busy(true);
    const auto done = qScopeGuard([this] { session_.ui.Busy(false); });
    session_.ChangedOn();
    session_.Refresh(SurveySession::Change::Definition);
    for (int k = 0; k < kPreLimitSlots; ++k)
        if (preChanged_[k]) RefreshPreLimitBits(k, show);
}

// Bit k of each sample's PreLimitBits becomes what RefreshPreLimitBit would make it, by blocks of samples.
void LimitEditor::RefreshPreLimitBits(int k, const std::function<void(const QString&)>& show) {
    Survey& survey = session_.survey;
    LimitList list(survey.PreLimit.Column(k));
    list[0].b = 0;
    const BlockCondition condition(survey, list);
    SamplePlanes planes(survey, condition.FieldCount());
    const qint32 samples = survey.SampleCount();
    int shown = -1;
    for (qint32 first = 0; first < samples; first += kBlockSamples) {
        planes.Load(first, std::min(samples - first, kBlockSamples));
        BlockMask met = planes.Valid();
        condition.Restrict(planes, met);
        for (int s = 0; s < planes.Count(); ++s) {
            qint16& flags = survey.Samples.Flags()[first + s];
            const bool on = (met[static_cast<size_t>(s / 64)] >> s % 64) & 1;
            flags = static_cast<qint16>(on ? flags | SlotBit(k) : flags & ~SlotBit(k));
            const qint32 tested = first + s + 1;
            if (tested % kSamplesAFigure != 0 && tested != samples) continue;
            const int percent = qRound(100.0 * tested / samples * (k + 1) / kPreLimitSlots);
            if (std::exchange(shown, percent) != percent) show(QString::number(percent) + u'%');
        }
    }
}

bool LimitEditor::MayDiscard() {
    if (!picker_ || !touched_) return true;
    return session_.ui.Message(u"変更した限定条件を使わずに閉じます。"_s, kOkCancel + kQuestion + kSecondDefault) ==
           Answer::Ok;
}

}  // namespace quibra
