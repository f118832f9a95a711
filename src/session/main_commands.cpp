#include "session/main_commands.h"

#include <QFile>
#include <cmath>

#include "core/attempt.h"
#include "core/numbers.h"
#include "core/settings.h"
#include "core/typed_number.h"
#include "session/rescue.h"
#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kSurveyFilter = u"全てのクイブラﾌｧｲﾙ(*.qb*)|*.qb*|全てのファイル(*.*)|*.*|"_s;
const QString kSaveFilter = u"クイブラデータ(*.qb)|*.qb|全てのファイル(*.*)|*.*|"_s;
const QString kPageFilter = u"集計結果(*.qbp)|*.qbp|"_s;
constexpr int kMinutesOfDay = 1440;

// Where a dialog starts: the folder of the survey that is open or was last.
QString StartFolder(const SurveySession& session) {
    const QString path = session.IsDead() ? session.settings.RecentFiles[0] : session.survey.FileName;
    return path.left(path.lastIndexOf(u'/') + 1);
}

QString LockText(const SurveySession& session) {
    if (session.menu.unlocked) return u"解錠中"_s;
    switch (session.survey.LockLevel) {
        case 0:
            return u"鍵なし"_s;
        case 1:
            return u"施錠（見るだけ）"_s;
        default:
            return u"施錠（見ることもできない）"_s;
    }
}

// A save that breaks off leaves the survey in memory as it was: no reason to end, and to lose it.
bool TrySave(SurveySession& session, const QString& path) {
    bool saved = false;
    Attempt(session.ui, [&] { saved = SurveySave(session, path); });
    return saved;
}

}  // namespace

MainStatus StatusOf(const SurveySession& session) {
    const Survey& survey = session.survey;
    if (session.IsDead())
        return {
            .caption = UserInterface::DefaultTitle(),
            .title = u"アンケートは読み込まれていません"_s,
            .file = {},
            .figures =
                u"「読み込み」でアンケートのファイルを開いてください。ファイルをこのウィンドウにドロップしても開けます。"_s};
    const bool hidesTitle = survey.LockLevel >= 2;
    QStringList figures = {u"質問 %1"_s.arg(survey.QuestionCount), u"サンプル %1"_s.arg(survey.SampleCount()),
                           LockText(session)};
    if (session.IsChanged()) figures += u"未保存の変更あり"_s;
    return {.caption = hidesTitle ? UserInterface::DefaultTitle() : survey.Title,
            .title = hidesTitle ? u"（データ隠蔽）"_s : survey.Title,
            .file = survey.FileName,
            .figures = figures.join(u"　・　"_s)};
}

bool AskToSaveChanges(SurveySession& session) {
    // What the lock window has turned on for a dead survey is nobody's work.
    if (!session.IsChanged() || session.IsDead()) return true;
    const QString text = u"アンケート「"_s + session.survey.Title + u"」は変更されています。保存しますか？"_s;
    switch (session.ui.Message(text, kYesNoCancel + kQuestion)) {
        case Answer::Yes:
            return SaveSurvey(session);
        case Answer::No:
            session.DeclineChanges();
            return true;
        default:
            return false;
    }
}

OpenOutcome SurveyOpen(SurveySession& session, const QString& path, int mode) {
    if (!AskToSaveChanges(session)) return {};
    QString toLoad = path;
    int result = SurveyLoad(session, toLoad, mode);
    const bool pageAfterBase = result == kLoadBaseFirst;
    if (pageAfterBase) result = SurveyLoad(session, toLoad, kExpectSurvey);
    const bool showsPage = result == kPageFile || (pageAfterBase && result == kLoaded);
    return {.replaced = result == kLoaded || session.IsDead(), .page = showsPage ? path : QString()};
}

OpenOutcome AskAndOpen(SurveySession& session, int mode) {
    const QString& filter = mode == kExpectPage ? kPageFilter : kSurveyFilter;
    const QString path = session.ui.FileBox(StartFolder(session), filter, false);
    return path.isEmpty() ? OpenOutcome() : SurveyOpen(session, path, mode);
}

bool SaveSurvey(SurveySession& session) {
    // The lock window turns "save" on again for a survey that is dead.
    if (session.menu.mnuFileSave && !session.IsDead()) return TrySave(session, session.survey.FileName);
    RefuseSave(session.ui);
    return false;
}

void SaveSurveyAs(SurveySession& session) {
    if (session.IsDead()) {
        RefuseSave(session.ui);
        return;
    }
    const QString path = session.ui.FileBox(session.survey.FileName, kSaveFilter, true);
    if (path.isEmpty() || !TrySave(session, path)) return;
    session.survey.FileName = path;
    session.Refresh(SurveySession::Change::File);
}

void RefuseOpen(UserInterface& ui) {
    ui.Message(u"読み込みは禁止されています。アンケートを読み込んでいないか、データが壊れています"_s, kOkOnly);
}

void RefuseSave(UserInterface& ui) {
    ui.Message(u"保存は禁止されています。アンケートを読み込んでいないか、データが壊れています"_s, kOkOnly);
}

void EditSaveInterval(SurveySession& session) {
    UserInterface& ui = session.ui;
    double& interval = session.settings.SaveInterval;
    const auto current = [&] { return NumberText(qRound(interval * kMinutesOfDay)); };
    QString text = current();
    while (ui.InputBox(u"保存の間隔"_s, u"保存する時間の間隔を入力してください"_s, u"間隔"_s, u"単位：分"_s, text)) {
        double minutes = 0;
        // What is no number stays in the box, to be mended.
        if (!Attempt(ui, [&] { minutes = TypedNumber(text); })) continue;
        if (std::nearbyint(minutes) >= kMinutesOfDay) {
            ui.Message(u"24時間(1440分)以上は設定できません"_s, kCritical);
        } else if (minutes < 1) {
            ui.Message(u"1分以上の時間を指定してください"_s, kCritical);
            interval = Settings().SaveInterval;
        } else {
            interval = static_cast<double>(RoundToInt16(minutes)) / kMinutesOfDay;
            return;
        }
        text = current();
    }
}

void ResetSettings(SurveySession& session) {
    if (session.ui.Message(u"各ウィンドウのサイズとフォントなどを初期化します。"_s, kOkCancel) != Answer::Ok) return;
    session.settings = SettingsDefault();
    session.survey.QuotaFirst = session.settings.QuotaFirst;
    session.survey.QuotaLast = session.settings.QuotaLast;
    session.Refresh(SurveySession::Change::Settings);
}

void DeleteWorkFiles(const QString& directory) {
    for (const QString& name : {u"_convert.tmp"_s, u"_result.tmp"_s})
        QFile::remove(directory + name);
}

void TellTheEnd(SurveySession& session, const QString& error) {
    QString text = error + u"\r\nクイブラを終了します。"_s;
    const QString rescued = LeaveUnasked(session);
    if (session.IsChanged() && !session.IsDead())
        text += rescued.isEmpty() ? u"\r\n変更したアンケートは書き出せませんでした。"_s
                                  : u"\r\n変更したアンケートを次のファイルに書き出しました。\r\n"_s + rescued;
    session.ui.Message(text, kCritical);
}

}  // namespace quibra
