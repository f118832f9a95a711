#include "session/journal.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>

#include "core/runtime_error.h"
#include "core/survey_writer.h"
#include "session/unfinished_edit.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// How the samples lie: what a change of it needs a rewrite for.
size_t ShapeOf(const Survey& survey) {
    size_t hash = qHash(survey.QuestionCount, 1);
    for (int q = 0; q < survey.QuestionCount; ++q) {
        const QuestionRec& question = survey.Questions[q];
        hash = qHashMulti(hash, question.Anum, question.ChoiceCount, HasEssaySlots(survey, q));
    }
    return hash;
}

template <typename Records>
size_t HashOf(const Records& records, size_t seed) {
    return qHashBits(records.data(), sizeof(*records.data()) * records.size(), seed);
}

// All that the survey's file holds but the samples.
size_t DefinitionOf(const Survey& survey) {
    size_t hash = qHashMulti(1, survey.Title, survey.Editor, survey.Password, survey.LockLevel, survey.CorrectFlags,
                             survey.DistName, survey.DistQno, survey.EssayFull, survey.ExternDLL, ShapeOf(survey));
    for (int q = 0; q < survey.QuestionCount; ++q) {
        const QuestionRec& question = survey.Questions[q];
        hash = qHashMulti(hash, question.Text, question.LabelKind);
        for (int c = 0; c < question.ChoiceCount; ++c) {
            const ChoiceRec& choice = survey.Choices(c, q);
            hash = qHashMulti(hash, choice.Text, choice.Low, choice.High, choice.CodeText, choice.Status);
        }
        hash = HashOf(survey.QLimit.Column(q), hash);
    }
    for (int slot = 0; slot < kPreLimitSlots; ++slot)
        hash = HashOf(survey.PreLimit.Column(slot), hash);
    for (int line = 0; line < kLineStartEntries; ++line)
        hash = qHashMulti(hash, survey.LineStart[line], survey.LineFlag[line]);
    return hash | 1;
}

}  // namespace

QString JournalFolder(const QString& settingsPath) {
    return QFileInfo(settingsPath).path() + u"/journal/"_s;
}

JournalHeader JournalHeaderOf(const QString& path) {
    struct stat state;
    if (path.isEmpty() || stat(QFile::encodeName(path).constData(), &state) != 0) return {};
    return {path, state.st_size, state.st_mtim.tv_sec, state.st_mtim.tv_nsec};
}

Journal::Journal(SurveySession& session, const QString& folder) : session_(session), folder_(folder) {
    session.changes.AddListener(this);
    connect(&session, &SurveySession::InStep, this, &Journal::OnInStep);
    connect(&session, &SurveySession::StateChanged, this, &Journal::OnStateChanged);
    connect(&session, &SurveySession::DraftChanged, this, &Journal::OnDraftChanged);
    connect(&session, &SurveySession::ChangesDeclined, this, [this] { declined_ = true; });
}

Journal::~Journal() {
    session_.changes.RemoveListener(this);
    if (declined_ || !session_.IsChanged()) Discard();
}

void Journal::Flush() {
    if (file_) file_->Flush();
}

QString Journal::Failure() const {
    return file_ ? file_->Failure() : failure_;
}

void Journal::OnSampleChange(const SampleChangeRecord& record) {
    declined_ = false;
    const bool started = Start();
    if (!Failure().isEmpty()) TellFailure();
    if (!started) return;
    // Texts are coded anew while the questionnaire is being edited: it is not yet the one by which samples lie.
    if (record.Cause != ChangeCause::Recode && DefinitionOf(session_.survey) != definition_) AppendDefinition();
    file_->Append(JournalContent(record));
}

void Journal::OnStateChanged() {
    // Before the first step a load may be under way. An edit tells when it is done.
    if (definition_ == 0 || session_.Edit() || !session_.IsChanged() || session_.IsDead()) return;
    // Another shape comes with the record of its rewrite, unless there is nothing to rewrite.
    const Survey& survey = session_.survey;
    const bool fits = ShapeOf(survey) == shape_ || survey.SampleCount() == 0;
    if (fits && DefinitionOf(survey) != definition_ && Start()) AppendDefinition();
}

void Journal::OnDraftChanged() {
    if ((!file_ && !session_.Draft()) || !Start()) return;
    file_->AppendDraft(JournalContent(JournalDraft{session_.Draft()}));
}

// Another survey comes into memory. The file stays when nobody has declined what is in it: it is offered at the next
// start.
void Journal::OnRestart() {
    if (declined_) Discard();
    file_.reset();
    declined_ = false;
    base_ = {};
    definition_ = shape_ = 0;
}

void Journal::OnInStep(const QString& path) {
    Discard();
    declined_ = false;
    base_ = JournalHeaderOf(path);
    definition_ = DefinitionOf(session_.survey);
    shape_ = ShapeOf(session_.survey);
    OnDraftChanged();
}

bool Journal::Start() {
    if (file_) return true;
    const QString name = QDateTime::currentDateTime().toString(u"yyyyMMdd-HHmmss-zzz"_s);
    try {
        QDir().mkpath(folder_);
        file_ = std::make_unique<JournalFile>(u"%1%2-%3.journal"_s.arg(folder_, name).arg(getpid()));
    } catch (const RuntimeError& error) {
        failure_ = error.Text();
        return false;
    }
    file_->Append(JournalContent(base_));
    if (base_.Path.isEmpty()) AppendDefinition();
    return true;
}

void Journal::AppendDefinition() {
    const WholeSurvey whole(session_);
    const Survey& survey = session_.survey;
    definition_ = DefinitionOf(survey);
    shape_ = ShapeOf(survey);
    QByteArray bytes;
    ByteWriter out(bytes);
    const std::vector<qint32> none;
    WriteMagic(out, kSurvey1003);
    WriteSurvey(out, survey, &none, [](const QString&, double) { return true; });
    out.Flush();
    file_->Append(JournalContent(JournalDefinition{bytes}));
}

// From the message loop: a sample is under change here.
void Journal::TellFailure() {
    if (std::exchange(toldFailure_, true)) return;
    const auto tell = [this, failure = Failure()] {
        session_.ui.Message(failure + u"\r\n入力の控えを書けません。こまめに保存してください。\r\n"_s + folder_,
                            kWarning);
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void Journal::Discard() {
    if (file_) file_->Remove();
    file_.reset();
}

}  // namespace quibra
