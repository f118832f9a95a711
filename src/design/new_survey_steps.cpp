#include "design/new_survey_steps.h"

#include "core/attempt.h"
#include "session/main_commands.h"
#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kSaveFilter = u"クイブラデータ(*.qb*)|*.qb*|全てのファイル(*.*)|*.*|"_s;
const QString kLater = u"後でも変更できます。"_s;
constexpr qint16 kHidden = 2;  // the lock level from which on nothing of a survey may be seen

}  // namespace

void ClearForNewSurvey(SurveySession& session) {
    NewSurveyHead(session.survey, session.Directory());
    session.changes.Restart();
    session.Unlock();
    session.Lock();
    session.ChangedOff();
}

NewSurveySteps::NewSurveySteps(SurveySession& session, NewSurveyWindows& windows)
    : session_(session), windows_(windows), canUseBase_(session.survey.LockLevel < kHidden) {
    baseName_ = canUseBase_ ? session.survey.Title : u"元になるアンケートは隠蔽されています"_s;
}

NewSurveySteps::Panel NewSurveySteps::CurrentPanel() const {
    switch (step_) {
        case kIntroduction:
            return {
                u"新しいアンケートを作る"_s, u"ここでは次のものを入力します"_s,
                u"1. タイトルと制作者名\n2. 質問・選択肢\n3. 回答欄の行あたり回答数\n4. このコンピュータの割り当てID"_s};
        case kBase:
            return {QString(), u"どちらか選んでください"_s, QString()};
        case kTitle:
            return {u"タイトルと制作者名"_s, u"いまからタイトルと制作者名を設定します"_s, kLater};
        case kQuestions:
            return {
                u"質問と選択肢の設定"_s, u"いまから質問と選択肢を設定します"_s,
                u"サンプルを入力した後で質問文と選択肢文以外を変更すると、サンプルデータの修正に時間がかかります。"_s};
        case kLines:
            return {u"回答欄の行あたり回答数"_s, u"いまから回答欄の行あたり回答数を設定します"_s, kLater};
        case kQuota:
            return {u"このコンピュータの割り当てID"_s, u"このコンピュータで出せるIDの範囲を指定します"_s, kLater};
        case kSave:
            break;
    }
    return {u"アンケートの設定が終わりました"_s, u"最後に保存をしてください"_s, QString()};
}

void NewSurveySteps::Next() {
    switch (step_) {
        case kIntroduction:
            LeaveOldSurvey();
            return;
        case kBase:
            if (!usesBase_) NewSurveyBody(session_.survey);
            session_.Refresh(SurveySession::Change::File | SurveySession::Change::Definition |
                             SurveySession::Change::Samples);
            break;
        case kTitle:
            windows_.ShowAbout();
            break;
        case kQuestions:
            windows_.ShowQuestions();
            break;
        case kLines:
            windows_.ShowLines();
            break;
        case kQuota:
            windows_.ShowQuota();
            break;
        case kSave:
            Save();
            return;
    }
    step_ = static_cast<Step>(step_ + 1);
}

// Asks about changes; a survey whose save has failed stays.
void NewSurveySteps::LeaveOldSurvey() {
    if (session_.IsChanged()) {
        const QString text = u"アンケート「"_s + session_.survey.Title + u"」は変更されています。保存しますか？"_s;
        const Answer answer = session_.ui.Message(text, kYesNoCancel + kQuestion);
        closed_ = answer == Answer::Cancel;
        if (closed_ || (answer == Answer::Yes && !SaveSurvey(session_))) return;
        if (answer == Answer::No) session_.DeclineChanges();
    }
    windows_.CloseOthers();
    ClearForNewSurvey(session_);
    if (!canUseBase_) NewSurveyBody(session_.survey);
    step_ = canUseBase_ ? kBase : kTitle;
    session_.Refresh(SurveySession::Change::File | SurveySession::Change::Definition | SurveySession::Change::Samples);
}

void NewSurveySteps::Save() {
    const QString path = session_.ui.FileBox(session_.survey.FileName, kSaveFilter, true);
    if (path.isEmpty()) return;
    bool saved = false;
    Attempt(session_.ui, [&] { saved = SurveySave(session_, path); });
    if (!saved) return;
    session_.survey.FileName = path;
    session_.ui.Message(u"保存が終わりました。"_s, kOkOnly);
    session_.ui.Message(
        u"データのパスワードは現在設定されていません。変更するときは『その他』の中の『データにパスワードをつける』を選んでください。"_s,
        kOkOnly);
    session_.survey.LockLevel = 0;
    closed_ = true;
    session_.Refresh(SurveySession::Change::File | SurveySession::Change::Definition | SurveySession::Change::Samples);
}

void NewSurveySteps::Back() {
    if (step_ == kIntroduction) return;
    step_ = step_ == kTitle && !canUseBase_ ? kIntroduction : static_cast<Step>(step_ - 1);
}

void NewSurveySteps::Cancel() {
    if (session_.ui.Message(u"本当にアンケートの設定を中止しますか"_s, kYesNo + kSecondDefault) == Answer::Yes)
        closed_ = true;
}

}  // namespace quibra
