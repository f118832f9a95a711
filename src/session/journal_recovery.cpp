#include "session/journal_recovery.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <new>

#include "core/answer_store.h"
#include "core/change_replay.h"
#include "core/runtime_error.h"
#include "core/survey_reader.h"
#include "session/journal.h"
#include "session/journal_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kCrLf = u"\r\n"_s;

Survey ReadDefinition(const QByteArray& bytes) {
    Survey definition;
    NewSurveyHead(definition, QString());
    NewSurveyBody(definition);
    ByteReader in(bytes);
    if (ReadMagic(in) != kSurvey1003) throw RuntimeError(kErrorPastEnd);
    SurveyReader reader(in, kSurvey1003, definition);
    reader.ReadTitleAndPassword();
    reader.ReadLockLevelAndEditor();
    reader.ReadDefinition();
    reader.ReadSamples([](const QString&, double) { return true; });
    reader.ReadTail();
    return definition;
}

class Replay {
  public:
    explicit Replay(SurveySession& session) : session_(session) {}

    void operator()(const JournalHeader&) {}
    void operator()(const JournalDefinition& definition) {
        TakeDefinition({});
        definition_ = ReadDefinition(definition.File);
    }
    void operator()(const SampleChangeRecord& record) {
        TakeDefinition(record.Rewrite ? record.Map : Renumbering());
        RedoChange(session_.survey, session_.ui, record);
        session_.changes.Repeat(record);
    }
    void operator()(const JournalDraft& draft) { draft_ = draft.Draft; }

    void Finish() {
        TakeDefinition({});
        session_.SetDraft(draft_);
    }

  private:
    // A questionnaire that was edited comes in front of the record that tells how its samples followed.
    void TakeDefinition(const Renumbering& map) {
        if (definition_) ChangeDefinition(session_.survey, *definition_, map);
        definition_.reset();
    }

    SurveySession& session_;
    std::optional<Survey> definition_;
    std::optional<SheetDraft> draft_;
};

bool HoldsSomething(const JournalContents& contents) {
    return std::any_of(contents.Entries.begin(), contents.Entries.end(), [](const JournalEntry& entry) {
        const auto* draft = std::get_if<JournalDraft>(&entry);
        return !draft || draft->Draft;
    });
}

}  // namespace

int LeftJournal::Records() const {
    return static_cast<int>(
        std::count_if(Contents.Entries.begin(), Contents.Entries.end(),
                      [](const JournalEntry& entry) { return std::holds_alternative<SampleChangeRecord>(entry); }));
}

QDateTime LeftJournal::LastTime() const {
    QDateTime time;
    for (const JournalEntry& entry : Contents.Entries)
        if (const auto* record = std::get_if<SampleChangeRecord>(&entry)) time = record->Time;
    return time;
}

bool LeftJournal::FitsItsFile() const {
    return JournalHeaderOf(Contents.Header.Path) == Contents.Header;
}

std::vector<LeftJournal> LeftJournals(const QString& folder) {
    std::vector<LeftJournal> left;
    const QDir dir(folder);
    for (const QString& name : dir.entryList({u"*.journal"_s}, QDir::Files, QDir::Name)) {
        const QString path = dir.filePath(name);
        const auto bytes = ReadLeftJournal(path);
        if (!bytes) continue;
        auto contents = DecodeJournal(*bytes);
        if (!contents) continue;
        if (HoldsSomething(*contents))
            left.push_back({path, std::move(*contents)});
        else
            QFile::remove(path);
    }
    return left;
}

JournalDecision OfferJournal(UserInterface& ui, const LeftJournal& journal) {
    const QString& path = journal.Contents.Header.Path;
    QString text = u"保存される前に終わってしまった入力が残っています。"_s + kCrLf +
                   (path.isEmpty() ? u"（まだ保存されていない新しいアンケート）"_s : path) + kCrLf +
                   u"記録 %1件"_s.arg(journal.Records());
    if (const QDateTime last = journal.LastTime(); last.isValid())
        text += u"、最後は %1"_s.arg(last.toLocalTime().toString(u"yyyy/MM/dd HH:mm:ss"_s));
    text += kCrLf;
    if (!journal.FitsItsFile())
        text += u"アンケートのファイルはその後に変わっているので、元に戻せない回答があるかもしれません。"_s + kCrLf;
    text += u"読み込んで元に戻しますか？"_s + kCrLf +
            u"「いいえ」でこの入力を捨てます。「ｷｬﾝｾﾙ」なら次に起動した時にまた尋ねます。"_s;
    switch (ui.Message(text, kYesNoCancel + kQuestion)) {
        case Answer::Yes:
            return JournalDecision::Restore;
        case Answer::No:
            return JournalDecision::Discard;
        default:
            return JournalDecision::Later;
    }
}

bool RestoreJournal(SurveySession& session, const LeftJournal& journal) {
    Replay replay(session);
    bool fitted = true;
    int done = 0;
    const auto stop = [&](const QString& reason) {
        fitted = false;
        const QString kept = journal.Path + u'~';
        QFile::rename(journal.Path, kept);
        session.ui.Message(
            u"%1\r\n残っていた入力は %2件目まで元に戻しました。残りは次のファイルにあります。\r\n%3"_s.arg(reason)
                .arg(done)
                .arg(kept),
            kWarning);
    };
    try {
        for (const JournalEntry& entry : journal.Contents.Entries) {
            std::visit(replay, entry);
            ++done;
        }
        replay.Finish();
    } catch (const RuntimeError& error) {
        stop(error.Text());
    } catch (const std::bad_alloc&) {
        stop(RuntimeError(kErrorOutOfMemory).Text());
    }
    if (session.survey.SampleCount() > 0) RecalcQuotaUsed(session.survey);
    session.ChangedOn();
    session.Refresh(SurveySession::Change::File | SurveySession::Change::Samples);
    return fitted;
}

void DiscardJournal(const LeftJournal& journal) {
    QFile::remove(journal.Path);
}

}  // namespace quibra
