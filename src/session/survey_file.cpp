#include "session/survey_file.h"

#include <QScopeGuard>
#include <memory>
#include <new>

#include "core/answer_store.h"
#include "core/binary_file.h"
#include "core/file_names.h"
#include "core/runtime_error.h"
#include "core/survey_reader.h"
#include "core/survey_writer.h"
#include "session/survey_exchange.h"
#include "session/unfinished_edit.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kCrLf = u"\r\n"_s;

QString ThisFile(const QString& path) {
    return u"このファイル"_s + kCrLf + path + kCrLf;
}

// A progress window and the busy pointer, for as long as this lives.
class LongWork {
  public:
    LongWork(UserInterface& ui, const ProgressSpec& spec) : ui_(ui) {
        ui_.Busy(true);
        ui_.ProgressOpen(spec);
    }
    ~LongWork() {
        ui_.ProgressClose();
        if (beeps_) ui_.Beep();
        ui_.Busy(false);
    }
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;

    void BeepAtEnd() { beeps_ = true; }

  private:
    UserInterface& ui_;
    bool beeps_ = false;
};

// Whether a file stands under the path; what cannot even be looked at is not there.
bool FileStands(const QString& path) {
    try {
        return KindOfPath(path) == PathKind::File;
    } catch (const RuntimeError&) {
        return false;
    }
}

// Runs `work`, and `failed` with the error when it breaks off; want of memory is an error like others.
template <typename Work, typename Failed>
void Guarded(Work work, Failed failed) {
    try {
        work();
    } catch (const RuntimeError& error) {
        failed(error);
    } catch (const std::bad_alloc&) {
        failed(RuntimeError(kErrorOutOfMemory));
    }
}

int CodeOfPage(const SurveySession& session, ByteReader& in, QString& path, int mode) {
    const QString base = ReadDoubleLen(in);
    const auto baseFirst = [&]() -> int {
        path = base;
        return kLoadBaseFirst;
    };
    const auto byAnswer = [&](Answer answer) -> int {
        if (answer == Answer::Yes) return baseFirst();
        return answer == Answer::No ? kPageFile : kNothing;
    };
    UserInterface& ui = session.ui;
    const QString& loaded = session.survey.FileName;
    if (mode == kExpectSurvey) {
        if (base == loaded) {
            const QString text = ThisFile(path) + u"は集計結果データです。読み込みますか？"_s;
            return ui.Message(text, kYesNo) == Answer::Yes ? kPageFile : kNothing;
        }
        return byAnswer(ui.Message(ThisFile(path) + u"は集計結果データです。基となるアンケートファイル"_s + kCrLf +
                                       base + kCrLf + u"を先に読み込みますか。"_s,
                                   kYesNoCancel));
    }
    if (mode == kExpectPage) {
        const QString thisPage = u"この集計結果データ"_s + kCrLf + path + kCrLf;
        if (loaded.isEmpty() || session.IsDead()) {
            const QString text = thisPage + u"を読み込む前に、基となるアンケートファイル"_s + kCrLf + base + kCrLf +
                                 u"を読み込みます。"_s;
            return ui.Message(text, kOkCancel) == Answer::Ok ? baseFirst() : kNothing;
        }
        if (base != loaded)
            return byAnswer(ui.Message(thisPage + u"は、基となるアンケートファイルが"_s + kCrLf + base + kCrLf +
                                           u"です。アンケートファイルを先に読み込みますか。"_s,
                                       kYesNoCancel));
    }
    return kPageFile;
}

int CodeOfSurvey(UserInterface& ui, int code, const QString& path, int mode) {
    if (mode == kExpectPage) {
        ui.Message(ThisFile(path) + u"はアンケートファイルデータです。ここでは読み込めません。"_s, kOkOnly);
        return kNothing;
    }
    if (mode != kExpectSurvey)
        ui.Message(u"FileVersion個別処理エラー(2)"_s, kOkOnly);
    else if (code == kSurvey1001)
        ui.Message(ThisFile(path) +
                       u"はクイブラ95年4,5月版の形式のファイルです。 保存すると95年9月版の形式のファイルになります。"_s,
                   kWarning);
    else if (code == kSurvey1002)
        ui.Message(
            ThisFile(path) +
                u"はクイブラ95年6,7,8月版の形式のファイルです。 保存すると95年9月版の形式のファイルになります。"_s,
            kWarning);
    return code;
}

// Reads what stands behind the head. False when the user stopped it.
bool ReadBody(SurveySession& session, ByteReader& in, int code) {
    Survey& survey = session.survey;
    UserInterface& ui = session.ui;
    session.DeadSurvey();
    survey.Samples.DropEssays([&ui] { ui.LetEventsRun(); });
    NewSurveyHead(survey, session.Directory());
    NewSurveyBody(survey);
    session.ChangedOff();

    SurveyReader reader(in, code, survey);
    reader.ReadTitleAndPassword();
    session.Unlock();
    reader.ReadLockLevelAndEditor();
    session.Lock();
    const bool goesOn = ui.Progress(u"ｱﾝｹｰﾄの質問・限定条件読み込み"_s, 0);
    reader.ReadDefinition();
    if (!reader.ReadSamples([&ui](const QString& text, double fraction) { return ui.Progress(text, fraction); }))
        return false;
    if (survey.SampleCount() > 0) {
        ui.Progress(u"サンプルIDの並びをチェック"_s, 1);
        SortSamples(survey, ui);
        RecalcQuotaUsed(survey);
    }
    reader.ReadTail();
    // A Stop at a report that does not ask for one has killed the survey all the same.
    return goesOn && !session.IsDead();
}

// False when the user stopped it.
bool WriteWhole(SurveySession& session, SurveyExchange& exchange, const std::vector<qint32>* selection) {
    UserInterface& ui = session.ui;
    ByteWriter out(exchange.Bytes());
    WriteFileHead(out, kSurvey1003, ui);
    if (!WriteSurvey(out, session.survey, selection,
                     [&ui](const QString& text, double fraction) { return ui.Progress(text, fraction); }))
        return false;
    out.Flush();
    exchange.Commit();
    return true;
}

// Whether the file that a save is to replace is still the one in memory, or the user wants it replaced all the same.
bool MayReplace(SurveySession& session, const QString& path) {
    switch (session.StateOfFile(path)) {
        case SurveySession::FileState::Changed:
            return session.ui.Message(
                       ThisFile(path) + u"は、読み込みまたは保存の後に他のプログラムが書き換えています。"_s + kCrLf +
                           u"上書きすると、その変更は失われます（拡張子 qb~ に残ります）。"_s + u"上書きしますか？"_s,
                       kYesNo + kWarning + kSecondDefault) == Answer::Yes;
        case SurveySession::FileState::Vanished:
            session.ui.Message(ThisFile(path) + u"はなくなっています。新しいファイルとして保存します。"_s,
                               kInformation);
            return true;
        default:
            return true;
    }
}

bool IsWholeSurvey(const QString& path) {
    bool whole = false;
    const auto read = [&] {
        if (!FileStands(path)) return;
        BinaryFile file = BinaryFile::OpenToRead(path);
        ByteReader in(file);
        const int kind = ReadMagic(in);
        if (kind != kSurvey1003) return;
        const auto survey = std::make_unique<Survey>();
        NewSurveyHead(*survey, QString());
        NewSurveyBody(*survey);
        SurveyReader reader(in, kind, *survey);
        reader.ReadTitleAndPassword();
        reader.ReadLockLevelAndEditor();
        reader.ReadDefinition();
        whole = reader.ReadSamples([](const QString&, double) { return true; });
        reader.ReadTail();
    };
    Guarded(read, [&](const RuntimeError&) { whole = false; });
    return whole;
}

// The file to read for the survey at `path`: itself, or a version that a broken save has left, when the user wants it.
// Nothing when the user has been told that there is none.
std::optional<QString> FileToLoad(UserInterface& ui, const QString& path) {
    if (FileStands(path)) return path;
    if (path.contains(QChar::ReplacementCharacter)) {
        ui.Message(path + u"が見つかりません。ファイル名が UTF-8 でないファイルは扱えません。"_s, kCritical);
        return std::nullopt;
    }
    for (const QString& left : LeftVersions(path)) {
        if (!IsWholeSurvey(left)) continue;
        const QString text = path + u"が見つかりません。"_s + kCrLf +
                             u"保存の途中で残された次のファイルを読み込みますか？"_s + kCrLf + left;
        if (ui.Message(text, kYesNo + kWarning) == Answer::Yes) return left;
        return std::nullopt;
    }
    ui.Message(path + u"が見つかりません"_s, kCritical);
    return std::nullopt;
}

}  // namespace

int ReadFileHead(SurveySession& session, ByteReader& in, QString& path, int mode) {
    const int code = ReadMagic(in);
    if (code == kNothing) {
        session.ui.Message(ThisFile(path) + u"はクイブラで扱えません。"_s, kWarning);
        return kNothing;
    }
    return code == kPageFile ? CodeOfPage(session, in, path, mode) : CodeOfSurvey(session.ui, code, path, mode);
}

void WriteFileHead(ByteWriter& out, int code, UserInterface& ui) {
    if (!WriteMagic(out, code)) ui.Message(u"ファイルの形式が正しく書き込めませんでした"_s, kOkOnly);
}

int SurveyLoad(SurveySession& session, QString& path, int mode) {
    const std::optional<QString> source = FileToLoad(session.ui, path);
    if (!source) return kNothing;
    int result = kNothing;
    std::optional<LongWork> work;  // stays open while an error is told
    const auto load = [&] {
        BinaryFile file = BinaryFile::OpenToRead(*source);
        ByteReader in(file);
        const int code = ReadFileHead(session, in, path, mode);
        const bool isSurvey = kSurvey1001 <= code && code <= kSurvey1003;
        if (!isSurvey) {
            result = code;
            return;
        }
        work.emplace(session.ui, ProgressSpec{.title = u"読み込み中"_s,
                                              .info = path,
                                              .caption = u"質問など"_s,
                                              .onFatalStop = [&session] { session.DeadSurvey(); }});
        session.SetLoading(true);
        const auto loaded = qScopeGuard([&session] { session.SetLoading(false); });
        if (!ReadBody(session, in, code)) {
            // The survey that a Stop has killed was not always the one read into.
            session.DeadSurvey();
            return;
        }
        Survey& survey = session.survey;
        session.ChangedOff();
        survey.FileName = path;
        survey.SavedSampleCount = survey.SampleCount();
        survey.SavedTime = QDateTime::currentDateTime();
        session.InStepWith(path);
        session.RememberFile(path);
        session.RecentAdd(path);
        session.Lock();
        session.Refresh(SurveySession::Change::File | SurveySession::Change::Definition |
                        SurveySession::Change::Samples);
        result = kLoaded;
    };
    Guarded(load, [&](const RuntimeError& error) {
        session.ui.Message(
            error.Text() + kCrLf + path + kCrLf +
                u"** ファイル関係のエラーの場合、ディスク接続不良・破損、データ破損、またはデータがクイブラ用でない可能性があります。"_s +
                kCrLf + u"今まで扱っていたデータも破壊されているので保存はしないで下さい。"_s,
            kWarning);
        session.DeadSurvey();
    });
    return result;
}

bool SurveySave(SurveySession& session, const QString& path, const std::vector<qint32>* places) {
    UserInterface& ui = session.ui;
    LongWork work(ui, {.title = u"保存中"_s, .info = path, .caption = u"質問など"_s, .save = true, .onFatalStop = {}});
    bool saved = false;
    bool cancelled = false;
    bool replaces = false;
    const bool held = session.HoldsFile(path);
    std::optional<FileLock> lock;
    std::optional<SurveyExchange> exchange;
    const auto save = [&] {
        if (!held) lock.emplace(path, [&ui] { ui.LetEventsRun(); });
        const PathKind kind = KindOfPath(path);
        if (kind == PathKind::Other) throw RuntimeError(kErrorPathAccess);
        replaces = kind == PathKind::File;
        if (replaces && path.endsWith(u"QB~"_s)) {
            ui.Message(u"ファイル名の拡張子を qb~ 以外にしてください"_s, kOkOnly);
            return;
        }
        if (replaces && IsWriteProtected(path)) throw RuntimeError(kErrorPermission);
        if (!MayReplace(session, path)) return;
        exchange.emplace(path);
        const WholeSurvey whole(session);
        saved = WriteWhole(session, *exchange, places);
        if (saved) {
            Survey& survey = session.survey;
            survey.SavedSampleCount = survey.SampleCount();
            session.ChangedOff();
            if (!places) session.InStepWith(path);
            session.RememberFile(path);
            session.RecentAdd(path);
            survey.SavedTime = QDateTime::currentDateTime();
            return;
        }
        cancelled = true;
        ui.Message(u"保存がｷｬﾝｾﾙされました。"_s, kOkOnly);
        exchange->TakeBack();
        // A first version has no older one that could come back.
        if (!replaces) throw RuntimeError(kErrorFileNotFound);
    };
    Guarded(save, [&](const RuntimeError& error) {
        ui.Message(error.Text() + kCrLf + u"正しく保存出来ませんでした。"_s, kWarning);
        if (cancelled || !exchange) return;
        Guarded([&] { exchange->TakeBack(); },
                [&](const RuntimeError& second) { ui.Message(second.Text(), kWarning); });
        if (!replaces) throw RuntimeError(kErrorFileNotFound);
    });
    exchange.reset();
    // The lock was that of the version before.
    if (saved && held) session.HoldFile(path);
    work.BeepAtEnd();
    return saved;
}

}  // namespace quibra
