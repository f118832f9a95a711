#include "entry/entry_session.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "companion/answer_bits.h"
#include "core/answer_store.h"
#include "core/code_page.h"
#include "core/labels.h"
#include "core/numbers.h"
#include "core/survey_losses.h"
#include "session/main_commands.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kCrLf = u"\r\n"_s;
constexpr int kLongestID = 9;  // digits of an ID that is typed

bool IsEmptySample(const Survey& survey, qint32 dno) {
    for (int q = 0; q < survey.QuestionCount; ++q)
        if (AnswerAt(survey.QIdx[q], survey.Samples.Bits(dno), 0) != 0) return false;
    return true;
}

}  // namespace

// The window is refreshed once, behind the outermost call.
class EntrySession::Update {
  public:
    explicit Update(EntrySession& entry) : entry_(entry) { ++entry_.updates_; }
    ~Update() {
        if (--entry_.updates_ > 0) return;
        entry_.KeepDraft();
        entry_.view_.Refresh();
    }
    Update(const Update&) = delete;
    Update& operator=(const Update&) = delete;

  private:
    EntrySession& entry_;
};

EntrySession::EntrySession(SurveySession& session, ExternCaller& caller, EntryView& view)
    : session_(session), caller_(caller), view_(view) {
    state_.Now = u"-1"_s;
}

void EntrySession::Open() {
    const Update update(*this);
    RefreshControls();
    state_.Changed = false;
    state_.InputID = Data().CorrectFlags & kAskForID;
    if (Data().SampleCount() == 0) return;
    const std::optional<SheetDraft> draft = session_.Draft();
    const qint32 dno = draft ? DnoOfID(Data(), draft->IDno) : -1;
    Scroll(dno < 0 ? Data().SampleCount() - 1 : dno);
    if (dno < 0) return;
    SetReply(draft->Text);
    SetCaret(draft->Caret);
}

bool EntrySession::Close() {
    const Update update(*this);
    if (!driver_.isEmpty()) {
        session_.ui.Beep();
        session_.ui.Message(driver_ + u"ウィンドウが開いているうちはこのウィンドウは閉じられません"_s, kWarning);
        view_.RaiseDriver();
        return false;
    }
    // A window that is closed under the caret doesn't take the focus away first.
    if (!ApplyReply(QString())) return false;
    DropEmptySample(shownDno_);
    const int flags = Data().CorrectFlags & ~kAskForID;
    Data().CorrectFlags = static_cast<qint16>(state_.InputID ? flags | kAskForID : flags);
    return true;
}

void EntrySession::TypeReply(const QString& text, int caret) {
    const Update update(*this);
    state_.Text = text;
    state_.Changed = true;
    unread_ = true;
    SetCaret(caret);
}

void EntrySession::KeepDraft() {
    const bool kept = unread_ && shownDno_ >= 0 && shownDno_ < Data().SampleCount();
    session_.SetDraft(kept ? std::optional(SheetDraft{Data().Samples.IDno(shownDno_), state_.Text, state_.Caret})
                           : std::nullopt);
}

bool EntrySession::InEssay() const {
    const QStringView text = state_.Text;
    if (text.sliced(state_.Caret).count(u'/') % 2 != 0) return true;
    // A text whose closing slash is not typed yet has none behind the caret.
    const qsizetype start = state_.Caret == 0 ? 0 : text.lastIndexOf(u'\n', state_.Caret - 1) + 1;
    const qsizetype end = text.indexOf(u'\r', state_.Caret);
    return IsInsideEssay(text.sliced(start, (end < 0 ? text.size() : end) - start), state_.Caret - start);
}

void EntrySession::KeyEnter() {
    state_.Changed = true;
    ApplyReply(kCrLf);
}

bool EntrySession::KeySpace() {
    if (InEssay()) return false;
    ApplyReply(QString());
    return true;
}

bool EntrySession::KeyUpOrDown() {
    return ApplyReply(QString());
}

void EntrySession::ReplyLostFocus() {
    ApplyReply(QString());
}

bool EntrySession::ApplyReply(const QString& insert) {
    if (!state_.Changed) return true;
    const Update update(*this);
    Survey& survey = Data();
    session_.ChangedOn();
    SheetReading reading;
    reading.Text = state_.Text.left(state_.Caret) + insert + state_.Text.mid(state_.Caret);
    reading.Caret = state_.Caret + static_cast<int>(insert.size());
    const QString result = ReadSheet(reading);
    state_.Changed = false;
    if (!result.isEmpty() && result != kExecuteDll) {
        TellSheetError(result, reading.Caret);
        return false;
    }
    TellLosses(reading.Text);
    QString tail;
    if (!result.isEmpty() && reading.StopQ < survey.QuestionCount)
        tail = caller_.CallExternal(survey, shownDno_, reading.StopQ, reading.StopA);
    const SheetText sheet =
        BuildAnswerSheet(survey, shownDno_, reading.StopQ, reading.StopA, Look(), reading.CaretQ, tail);
    ShowBuilt(sheet);
    // What the library has put behind the last answer is read at the next key.
    state_.Changed = !result.isEmpty();
    SetCaret(sheet.CaretOut);
    UpdateViewer(reading.StopQ);
    if (reading.StopQ == survey.QuestionCount && reading.StopA == 0) {
        if (driver_.isEmpty()) view_.SetFocus(EntryControl::cmdNextInput);
    } else {
        FillChoices(reading.StopQ);
    }
    return true;
}

QString EntrySession::ReadSheet(SheetReading& reading) {
    SampleChange change(session_.changes, ChangeCause::Typing);
    change.Open(shownDno_);
    ShowCorrectionBox corrections(*this, session_.ui);
    return ParseAnswerSheet(
        Data(), shownDno_, reading, true,
        {.ui = session_.ui, .tables = tables_, .box = this, .notice = driver_.isEmpty() ? &corrections : nullptr});
}

void EntrySession::TellSheetError(const QString& message, int caret) {
    session_.ui.Beep();
    session_.ui.Message(message, kWarning);
    SetCaret(caret);
    view_.SetFocus(EntryControl::txtReply);
    state_.Status = message;
}

// What was typed is stored as it stands; the survey file will hold less of it.
void EntrySession::TellLosses(const QString& typed) {
    const QString losses = CodePageLosses(typed).isEmpty() ? QString() : LossesOfSample();
    if (!losses.isEmpty())
        state_.Status = losses;
    else if (state_.Status == toldLosses_)
        state_.Status.clear();
    toldLosses_ = losses;
}

// Of the first essay that loses something.
QString EntrySession::LossesOfSample() {
    std::array<qint16, kMaxAnswers> choices{};
    std::array<QString, kMaxAnswers> essays;
    for (int q = 0; q < Data().QuestionCount; ++q) {
        qint16 count = 0;
        GetAnswersEssay(Data(), shownDno_, q, count, choices.data(), essays.data());
        for (size_t a = 0; a < static_cast<size_t>(count); ++a) {
            const QString losses = LossWords({EssayPlace(q, choices[a]), CodePageLosses(essays[a])});
            if (!losses.isEmpty()) return losses;
        }
    }
    return QString();
}

void EntrySession::FillChoices(int q) {
    const Survey& survey = Data();
    const bool numbered = viewer_ && viewer_->IsVisible();
    state_.Choices = {QuestionLabel(survey, q, {.number = numbered, .name = true, .answers = true})};
    for (int c = 1; c < survey.Questions[q].ChoiceCount; ++c)
        state_.Choices += ChoiceLabel(survey, q, c, true, true);
}

void EntrySession::ShowBuilt(const SheetText& sheet) {
    state_.Text = sheet.Text;
    state_.Caret = 0;
    unread_ = false;
    view_.ShowSheet(sheet);
}

void EntrySession::SetText(const QString& text) {
    state_.Text = text;
    state_.Changed = true;
    unread_ = true;
    SetCaret(state_.Caret);
    view_.ShowText(text);
}

void EntrySession::MarkError(int start, int length) {
    view_.MarkError(start, length);
}

void EntrySession::SetCaret(qint64 caret) {
    state_.Caret = static_cast<int>(std::clamp<qint64>(caret, 0, state_.Text.size()));
}

void EntrySession::SetReply(const QString& text) {
    const Update update(*this);
    SetText(text);
    SetCaret(0);
}

qint32 EntrySession::WantedDno() const {
    return RoundToInt32(LeadingNumber(state_.Dno));
}

void EntrySession::ShowSample() {
    const Update update(*this);
    Survey& survey = Data();
    // By its number in front of what is done first, even if an empty sample before it goes.
    const qint32 wanted = WantedDno();
    ApplyReply(QString());
    if (!state_.New && wanted != shownDno_) DropEmptySample(shownDno_);
    if (wanted >= 0 && wanted < survey.SampleCount()) {
        shownDno_ = wanted;
        state_.Now = state_.Dno;
        state_.IDno = SampleIDText(survey, wanted);
        state_.ScrollValue = wanted;
        if (state_.New) {
            state_.New = false;
            SetReply(QString());
        } else {
            ShowBuilt(BuildAnswerSheet(survey, wanted, survey.QuestionCount, 0, Look(), survey.QuestionCount, {}));
            state_.Changed = false;
            UpdateViewer(survey.QuestionCount);
        }
        state_.Max = u"/ "_s + QString::number(survey.SampleCount() - 1);
    } else if (survey.SampleCount() > 0) {
        session_.ui.Message(u"番号は現在0から%1までです。"_s.arg(survey.SampleCount() - 1), kWarning);
    }
}

void EntrySession::StepDno(int by) {
    state_.Dno = QString::number(CheckedInt32(qint64{WantedDno()} + by));
    ShowSample();
}

void EntrySession::Scroll(qint32 value) {
    state_.Dno = QString::number(value);
    ShowSample();
}

void EntrySession::IDnoLostFocus() {
    const Update update(*this);
    const double id = std::nearbyint(LeadingNumber(state_.IDno));
    if (id > 4294967295.0 || id < -4294967296.0) {
        session_.ui.Message(u"探す番号は-4294967295から-4294967296です。"_s, kWarning);
        ShowSample();
        return;
    }
    using Limits = std::numeric_limits<qint32>;
    const bool fits = id >= Limits::min() && id <= Limits::max();
    const qint32 dno = fits ? DnoOfID(Data(), static_cast<qint32>(id)) : -1;
    if (dno < 0) {
        session_.ui.Message(u"指定のＩＤが見つかりません。"_s, kWarning);
        ShowSample();
        return;
    }
    Command(QString::number(dno));
}

void EntrySession::NextInput() {
    const Update update(*this);
    RemindToSave();
    DropEmptySample(shownDno_);
    const qint32 id = IssueNextID(Data());
    if (id < 0) {
        session_.ui.Message(
            u"発行できるＩＤが無くなりました。メインウィンドウ「ｱﾝｹｰﾄ」の「ＩＤの範囲」で、出せるＩＤを増やしてください。"_s,
            kWarning);
        return;
    }
    AddNewSample(id);
    ApplyReply(QString());
    if (state_.InputID) {
        ApplyReply(QString());
        ChangeID();
    }
    SetReply(QString());
    ApplyReply(QString());
    view_.SetFocus(EntryControl::txtReply);
}

void EntrySession::RemindToSave() {
    Survey& survey = Data();
    const QDateTime now = QDateTime::currentDateTime();
    if (!IsSaveReminderDue(session_.settings, survey.SavedTime, now)) return;
    if (session_.ui.Message(SaveReminderText(session_.settings), kYesNo + kQuestion) == Answer::Yes)
        SaveSurvey(session_);
    else
        survey.SavedTime = now;
    survey.SavedSampleCount = survey.SampleCount();
}

void EntrySession::Delete() {
    const Update update(*this);
    Survey& survey = Data();
    const qint32 dno = shownDno_;
    const QString question = u"サンプル%1を消去します"_s.arg(SampleIDText(survey, dno));
    if (session_.ui.Message(question, kOkCancel + kWarning) != Answer::Ok) return;
    RemoveSample(dno);
    RecalcQuotaUsed(survey);
    state_.Dno = QString::number(std::max(dno - 1, 0));
    ShowSample();
    view_.SetFocus(EntryControl::cmdNextInput);
}

void EntrySession::ChangeID() {
    const Update update(*this);
    Survey& survey = Data();
    UserInterface& ui = session_.ui;
    const qint32 old = survey.Samples.IDno(shownDno_);
    QString text = QString::number(old);
    const QString range = u"%1～%2"_s.arg(survey.QuotaFirst).arg(survey.QuotaLast);
    if (!ui.InputBox(u"IDの変更"_s, u"変更後のID"_s, range, QString(), text) || text.size() > kLongestID) return;
    const qint32 id = RoundToInt32(LeadingNumber(text));
    if (id == old) return;
    if (id < survey.QuotaFirst || id > survey.QuotaLast) {
        ui.Message(u"IDが割り当て外です"_s, kWarning);
        return;
    }
    if (DnoOfID(survey, id) >= 0) {
        ui.Message(u"IDが重複しています"_s, kWarning);
        return;
    }
    session_.ChangedOn();
    if (survey.QuotaUsed < id) survey.QuotaUsed = old;
    {
        SampleChange change(session_.changes, ChangeCause::Typing);
        shownDno_ = change.ChangeID(survey, ui, shownDno_, id);
    }
    state_.Dno = QString::number(shownDno_);
    ShowSample();
}

void EntrySession::Execute() {
    const QString text = caller_.CallExternal(Data(), shownDno_, Data().QuestionCount, 0);
    if (!text.isEmpty()) session_.ui.Message(text, kOkOnly);
}

void EntrySession::SetInputID(bool on) {
    const Update update(*this);
    state_.InputID = on;
}

bool EntrySession::HasFlag(int flag) const {
    return session_.settings.ColorSet[kSheetFlagsEntry] & flag;
}

void EntrySession::SetFlag(int flag, bool on) {
    qint32& flags = session_.settings.ColorSet[kSheetFlagsEntry];
    flags = on ? flags | flag : flags & ~flag;
    ShowSample();
}

void EntrySession::UpdateViewer(int endQ) {
    viewerEnd_ = endQ;
    if (viewer_ && viewer_->IsVisible()) viewer_->ShowSample(shownDno_, endQ);
}

void EntrySession::FillViewer() {
    if (viewer_) viewer_->ShowSample(shownDno_, viewerEnd_);
}

void EntrySession::Command(const QString& caption) {
    if (caption.isEmpty() || caption == state_.Dno) return;
    const Update update(*this);
    if (caption == u"ID") {
        IDnoLostFocus();
    } else if (caption == u"NEW") {
        AddNewSample(RoundToInt32(LeadingNumber(state_.IDno)));
    } else if (caption == u"AUTONEW") {
        const qint32 id = IssueNextID(Data());
        if (id < 0) {
            session_.ui.Message(
                u"ＩＤが尽きました。メインウィンドウ「内容変更」の「割り当てＩＤ」で、出せるＩＤを増やしてください。"_s,
                kWarning);
            state_.Status = u"ＩＤが尽きました"_s;
            return;
        }
        state_.IDno = QString::number(id);
        AddNewSample(id);
    } else if (caption == u"INPUT") {
        state_.Changed = true;
        ReplyLostFocus();
    } else {
        state_.Dno = caption;
        ShowSample();
    }
}

void EntrySession::RefreshControls() {
    const Update update(*this);
    state_.Enabled = Data().SampleCount() > 0;
    state_.ScrollMax = Data().SampleCount() - 1;
}

void EntrySession::AddNewSample(qint32 id) {
    Survey& survey = Data();
    // As many bytes as samples may take together.
    CheckedInt32((qint64{survey.SampleCount()} + 1) * survey.SampleRecBytes);
    session_.ChangedOn();
    SampleChange change(session_.changes, ChangeCause::Typing);
    const qint32 dno = change.Add(survey, session_.ui, id);
    // For an ID that is there already no box is emptied: it would be stored over the sample on show.
    state_.New = dno >= 0;
    if (state_.New && shownDno_ >= dno) ++shownDno_;
    RefreshControls();
    state_.Dno = QString::number(dno);
    ShowSample();
    state_.Changed = true;
}

void EntrySession::RemoveSample(qint32 dno) {
    if (dno >= Data().SampleCount()) return;
    session_.ChangedOn();
    SampleChange change(session_.changes, ChangeCause::Typing);
    change.Delete(Data(), session_.ui, dno);
    if (shownDno_ == dno) {
        // What stands in the box belongs to no sample now.
        shownDno_ = -1;
        state_.Changed = false;
        unread_ = false;
    } else if (shownDno_ > dno) {
        --shownDno_;
    }
    RefreshControls();
}

void EntrySession::DropEmptySample(qint32 dno) {
    Survey& survey = Data();
    if (dno < 0 || dno >= survey.SampleCount() || !IsEmptySample(survey, dno)) return;
    state_.Status = u"空のサンプル(ID=%1)を削除しました"_s.arg(survey.Samples.IDno(dno));
    RemoveSample(dno);
    RecalcQuotaUsed(survey);
}

qint32 IssueNextID(Survey& survey) {
    survey.QuotaUsed = std::max(survey.QuotaUsed, survey.QuotaFirst);
    qint32 dno = -1;
    while (survey.QuotaUsed <= survey.QuotaLast) {
        const qint32 candidate = survey.QuotaUsed;
        // IDs in a row are walked, not searched for one by one.
        const bool next = dno >= 0 && dno + 1 < survey.SampleCount() && survey.Samples.IDno(dno + 1) == candidate;
        dno = next ? dno + 1 : DnoOfID(survey, candidate);
        survey.QuotaUsed = CheckedInt32(qint64{candidate} + 1);
        if (dno < 0) return candidate;
    }
    return -1;
}

}  // namespace quibra
