#include "session/survey_file.h"

#include <QFile>
#include <climits>
#include <new>

#include "core/answer_store.h"
#include "core/binary_file.h"
#include "core/runtime_error.h"
#include "core/survey_reader.h"
#include "core/survey_writer.h"

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

// "data.2001/a.qb" has its first dot in the folder's name, and so its backup beside that folder.
QString BackupName(const QString& path) {
    return path.left(path.indexOf(u'.') + 1) + u"qb~"_s;
}

// "a.qb~new", in the same folder, from which alone a rename is one step; a name that leaves no room for this is cut.
QString GrowingName(const QString& path) {
    const QString suffix = u"~new"_s;
    const qsizetype folder = path.lastIndexOf(u'/') + 1;
    QString name = path.mid(folder);
    while (QFile::encodeName(name + suffix).size() > NAME_MAX)
        name.chop(1);
    return path.left(folder) + name + suffix;
}

// A save under way. The new version grows beside the old one under a name of its own, and only when it is complete and
// on the disk are the names exchanged: whenever the machine stops, a whole survey stands under the path or the backup's
// name.
class FileExchange {
  public:
    // REQUIRES: nothing or a plain file under `path`.
    FileExchange(const QString& path, bool replaces)
        : path_(ResolvedPath(path)), growing_(GrowingName(path_)), backup_(BackupName(path)), replaces_(replaces) {}

    BinaryFile Create() {
        BinaryFile file = BinaryFile::Create(growing_, replaces_ ? std::optional(PermissionsOf(path_)) : std::nullopt);
        created_ = true;
        return file;
    }
    bool Created() const { return created_; }

    // Puts the new version under the path, the old one under the backup's name.
    void Commit() {
        if (replaces_ && ResolvedPath(backup_) != path_) {
            MoveFile(path_, backup_);
            movedOld_ = true;
            SyncFolder(backup_);
        }
        MoveFile(growing_, path_);
        movedNew_ = true;
        SyncFolder(path_);
    }

    // Drops the new version and puts the old one back where it was. A file that is its own backup has no way back, but
    // its new version is complete by then.
    void TakeBack() {
        RemoveFile(growing_);
        if (movedOld_) {
            MoveFile(backup_, path_);
            SyncFolder(path_);
        } else if (movedNew_ && !replaces_) {
            RemoveFile(path_);
        }
    }

  private:
    const QString path_;
    const QString growing_;
    const QString backup_;
    const bool replaces_;
    bool created_ = false;
    bool movedOld_ = false;
    bool movedNew_ = false;
};

// False when the user stopped it.
bool WriteWhole(SurveySession& session, FileExchange& exchange, const std::vector<qint32>* selection) {
    UserInterface& ui = session.ui;
    BinaryFile file = exchange.Create();
    ByteWriter out(file);
    WriteFileHead(out, kSurvey1003, ui);
    if (!WriteSurvey(out, session.survey, selection,
                     [&ui](const QString& text, double fraction) { return ui.Progress(text, fraction); }))
        return false;
    out.Flush();
    file.Sync();
    file.Close();
    exchange.Commit();
    return true;
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
    if (!FileStands(path)) {
        session.ui.Message(path + u"が見つかりません"_s, kCritical);
        return kNothing;
    }
    int result = kNothing;
    std::optional<LongWork> work;  // stays open while an error is told
    const auto load = [&] {
        BinaryFile file = BinaryFile::OpenToRead(path);
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
        session.RecentAdd(path);
        session.Lock();
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
    std::optional<FileExchange> exchange;
    const auto save = [&] {
        const PathKind kind = KindOfPath(path);
        if (kind == PathKind::Other) throw RuntimeError(kErrorPathAccess);
        replaces = kind == PathKind::File;
        if (replaces && path.endsWith(u"QB~"_s)) {
            ui.Message(u"ファイル名の拡張子を qb~ 以外にしてください"_s, kOkOnly);
            return;
        }
        exchange.emplace(path, replaces);
        saved = WriteWhole(session, *exchange, places);
        if (saved) {
            Survey& survey = session.survey;
            survey.SavedSampleCount = survey.SampleCount();
            session.ChangedOff();
            if (!places) session.InStepWith(path);
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
        if (cancelled || !exchange || !exchange->Created()) return;
        Guarded([&] { exchange->TakeBack(); },
                [&](const RuntimeError& second) { ui.Message(second.Text(), kWarning); });
        if (!replaces) throw RuntimeError(kErrorFileNotFound);
    });
    work.BeepAtEnd();
    return saved;
}

}  // namespace quibra
