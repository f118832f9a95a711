// The survey file: its bytes in all generations, what a load says to the user, and what damage does.
#include "session/survey_file.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <random>

#include "core/answer_store.h"
#include "core/binary_file.h"
#include "core/settings.h"
#include "core/survey_reader.h"
#include "core/survey_writer.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "support/survey_bytes.h"
#include "tree_paths.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QString LoadFailure(RuntimeErrorNumber number, const QString& path) {
    return u"message 48 クイブラ: %1\\r\\n%2\\r\\n** ファイル関係のエラーの場合、ディスク接続不良・破損、データ破損、"
           u"またはデータがクイブラ用でない可能性があります。\\r\\n"
           u"今まで扱っていたデータも破壊されているので保存はしないで下さい。 -> Ok"_s.arg(RuntimeError(number).Text(),
                                                                                           path);
}

// A literal with its zero bytes.
template <size_t Size>
QByteArray Bytes(const char (&literal)[Size]) {
    return QByteArray(literal, Size - 1);
}

// The bytes of a page file whose survey lies at `base`.
QByteArray PageBytes(const QString& base) {
    QByteArray bytes;
    ByteWriter out(bytes);
    WriteMagic(out, kPageFile);
    WriteDoubleLen(out, base);
    out.Flush();
    return bytes;
}

class SurveyFile : public testing::Test {
  protected:
    ScriptedInterface user;
    SurveySession session{user, u"/nowhere"_s};
    QTemporaryDir folder;

    QString Put(const QString& name, QByteArrayView bytes) {
        const QString path = folder.filePath(name);
        WriteFileBytes(path, bytes);
        return path;
    }
    int Load(QString path, int mode = kExpectSurvey) {
        user.transcript.clear();
        const int result = SurveyLoad(session, path, mode);
        loadedPath = path;
        EXPECT_EQ(user.OpenProgressWindows(), 0);
        EXPECT_FALSE(user.IsBusy());
        return result;
    }
    // True in the dead state, where nothing can be saved or shown.
    bool IsDead() const {
        return session.IsDead() && session.survey.LockLevel == 2 && !session.menu.mnuFileSaveAs &&
               !session.menu.mnuStatis && session.menu.mnuKey;
    }
    QStringList Messages() const { return user.Lines(u"message"_s); }

    QString loadedPath;
};

// 256 questions of 127 choices, texts that fill their fields, IDs at both ends of 32 bits.
TEST_F(SurveyFile, SurveyAtItsLimitsComesBackWhole) {
    QStringList choices;
    for (int c = 1; c < kMaxChoices; ++c)
        choices += QString::number(c);
    SurveyBuilder builder;
    for (int q = 0; q < kMaxQuestions; ++q) {
        builder.Question(QString(kQuestionTextLength, QChar(0x3042 + q % 80)), QString(), 1 + q % 2, choices);
        builder.Status(q, 127, {kEssay});
        for (int line = 1; line <= 14; ++line)
            builder.Get().QLimit(line, q) = {3, PackPosition(q, line)};
        builder.Get().LineStart[q] = PackPosition(q, 127);
    }
    Survey& survey = session.survey = builder.Get();
    survey.LineStart[256] = survey.LineStart[255];
    survey.LineFlag[255] = true;
    RecalcLayout(survey);
    survey.Samples.SetLayout(survey.SampleBytes, survey.EssaySlots);
    constexpr qint32 kMax = std::numeric_limits<qint32>::max();
    for (const qint32 id : {-kMax - 1, -1, 0, kMax}) {
        const qint16 answers[] = {127, 1};
        const QString texts[] = {QString(16000, u'長'), QString()};
        SetAnswersEssay(survey, AddSample(survey, user, id), 255, 2, answers, texts);
    }
    const QByteArray bytes = WriteSurveyBytes(survey);
    const QString path = Put(u"limits.qb"_s, bytes);
    ASSERT_EQ(Load(path), kLoaded);
    EXPECT_EQ(WriteSurveyBytes(survey), bytes);
    EXPECT_EQ(DnoOfID(survey, kMax), 3);
    EXPECT_EQ(survey.Samples.Essay(0, survey.QIdx[255].EssayStart), QString(16000, u'長'));

    // One character more than 16 bits of bytes hold is an overflow, and what was saved before stays.
    survey.Samples.SetEssay(0, 0, QString(16384, u'長'));
    EXPECT_FALSE(SurveySave(session, path));
    EXPECT_EQ(user.Lines(u"message 48"_s).last(),
              u"message 48 クイブラ: オーバーフローしました。\\r\\n正しく保存出来ませんでした。 -> Ok"_s);
    EXPECT_EQ(FileBytes(path), bytes);
}

}  // namespace

TEST_F(SurveyFile, LoadLeavesASavedUnchangedSurveyUnderItsLock) {
    const QString path = Put(u"a.qb"_s, TestData(u"small-1003.qb"_s));
    session.ChangedOn();
    ASSERT_EQ(Load(path), kLoaded);
    EXPECT_FALSE(session.IsChanged());
    EXPECT_EQ(session.survey.FileName, path);
    EXPECT_EQ(session.survey.SavedSampleCount, 12);
    EXPECT_TRUE(session.survey.SavedTime.isValid());
    EXPECT_EQ(session.settings.RecentFiles[0], path);
    EXPECT_TRUE(session.menu.unlocked == false && session.menu.mnuInput && session.menu.mnuStatis);
    EXPECT_EQ(user.transcript.mid(0, 4),
              (QStringList{u"busy on"_s, u"progress open 読み込み中 | "_s + path + u" | 質問など"_s,
                           u"progress ｱﾝｹｰﾄの質問・限定条件読み込み 0"_s, u"progress 回答 1/12 0.0833333"_s}));
    EXPECT_EQ(user.Lines(u"progress 回答"_s).last(), u"progress 回答 12/12 1"_s);
    EXPECT_EQ(user.Lines(u"progress サンプル"_s), QStringList{u"progress サンプルIDの並びをチェック 1"_s});
    EXPECT_EQ(user.transcript.last(2), (QStringList{u"progress close"_s, u"busy off"_s}));
    EXPECT_EQ(session.survey.QuotaUsed, session.survey.Samples.IDno(11));

    // A lock from the file holds: level 1 shows, level 2 does not even that.
    for (const int level : {1, 2}) {
        session.survey.LockLevel = static_cast<qint16>(level);
        ASSERT_EQ(Load(Put(u"locked.qb"_s, WriteSurveyBytes(session.survey))), kLoaded);
        EXPECT_EQ(session.survey.LockLevel, level);
        EXPECT_TRUE(!session.menu.mnuInput && session.menu.mnuStatis == (level == 1) && !session.IsDead());
    }
}

TEST_F(SurveyFile, LargeFileReportsAHundredTimesAndIsSorted) {
    ASSERT_EQ(Load(TestDataPath(u"gss.qb"_s)), kLoaded);
    const qint32 count = session.survey.SampleCount();
    const qint32 interval = count / 100 + 1;
    QStringList expected;
    for (qint32 step = interval; step < count; step += interval)
        expected += u"progress 回答 %1/%2 %3"_s.arg(step).arg(count).arg(static_cast<double>(step) / count);
    expected += u"progress 回答 %1/%1 1"_s.arg(count);
    EXPECT_EQ(user.Lines(u"progress 回答"_s), expected);

    Survey& survey = session.survey;
    survey.Samples.Move(count - 1, 0);
    survey.Samples.Move(10, 4000);
    const QString path = Put(u"unsorted.qb"_s, WriteSurveyBytes(survey));
    ASSERT_EQ(Load(path), kLoaded);
    EXPECT_FALSE(user.Lines(u"progress ID並び替え"_s).isEmpty());
    EXPECT_TRUE(WriteSurveyBytes(survey) == TestData(u"gss.qb"_s));
}

TEST_F(SurveyFile, HeadDecidesWithTheUserWhatTheFileIs) {
    const QString survey = Put(u"s.qb"_s, TestData(u"small-1003.qb"_s));
    const QString s1001 = Put(u"s1001.qb"_s, TestData(u"small-1001.qb"_s));
    const QString s1002 = Put(u"s1002.qb"_s, TestData(u"small-1002.qb"_s));
    const QString page = Put(u"p.qbp"_s, PageBytes(survey));
    const QString otherPage = Put(u"other.qbp"_s, PageBytes(u"/基/b.qb"_s));
    const QString unknown = Put(u"unknown.qb"_s, "\0\0\7\0unknown"_ba);

    const QString thisFile = u": このファイル\\r\\n%1\\r\\nは"_s;
    const QString saved = u"版の形式のファイルです。 保存すると95年9月版の形式のファイルになります。"_s;
    const QString noPage = thisFile + u"アンケートファイルデータです。ここでは読み込めません。"_s;
    const QString baseFirst = u": この集計結果データ\\r\\n%1\\r\\nを読み込む前に、基となるアンケートファイル\\r\\n"_s +
                              survey + u"\\r\\nを読み込みます。"_s;
    const QString readIt = thisFile + u"集計結果データです。読み込みますか？"_s;
    const QString otherBase = thisFile +
                              u"集計結果データです。基となるアンケートファイル\\r\\n/基/b.qb\\r\\nを"
                              u"先に読み込みますか。"_s;
    const QString otherPageBase =
        u": この集計結果データ\\r\\n%1\\r\\nは、基となるアンケートファイルが\\r\\n/基/b.qb\\r\\n"
        u"です。アンケートファイルを先に読み込みますか。"_s;
    const std::vector<std::pair<Answer, int>> baseOrPage{
        {Answer::Yes, kLoadBaseFirst}, {Answer::No, kPageFile}, {Answer::Cancel, kNothing}};
    // One after the other; with an empty text, nothing is asked. A page wants its survey first.
    const struct {
        QString path;
        int mode, style;
        QString text;
        std::vector<std::pair<Answer, int>> outcomes;
    } cases[] = {
        {page, kExpectPage, 1, baseFirst, {{Answer::Ok, kLoadBaseFirst}, {Answer::Cancel, kNothing}}},
        {survey, kExpectSurvey, 0, {}, {{Answer::Ok, kLoaded}}},
        {s1001, kExpectSurvey, 48, thisFile + u"クイブラ95年4,5月"_s + saved, {{Answer::Ok, kLoaded}}},
        {s1002, kExpectSurvey, 48, thisFile + u"クイブラ95年6,7,8月"_s + saved, {{Answer::Ok, kLoaded}}},
        {survey, kExpectPage, 0, noPage, {{Answer::Ok, kNothing}}},
        {s1001, kExpectPage, 0, noPage, {{Answer::Ok, kNothing}}},
        {survey, 3, 0, u": FileVersion個別処理エラー(2)"_s, {{Answer::Ok, kLoaded}}},
        {unknown, kExpectSurvey, 48, thisFile + u"クイブラで扱えません。"_s, {{Answer::Ok, kNothing}}},
        {page, kExpectPage, 0, {}, {{Answer::Ok, kPageFile}}},
        {otherPage, 3, 0, {}, {{Answer::Ok, kPageFile}}},
        {page, kExpectSurvey, 4, readIt, {{Answer::Yes, kPageFile}, {Answer::No, kNothing}}},
        {otherPage, kExpectSurvey, 3, otherBase, baseOrPage},
        {otherPage, kExpectPage, 3, otherPageBase, baseOrPage},
    };
    for (const auto& [path, mode, style, text, outcomes] : cases)
        for (const auto& [answer, result] : outcomes) {
            user.messageAnswers = {answer};
            EXPECT_EQ(Load(path, mode), result) << qPrintable(text);
            const QString told = u"message %1 クイブラ"_s.arg(style) + QString(text).replace(u"%1"_s, path) +
                                 u" -> "_s + ScriptedInterface::NameOf(answer);
            EXPECT_EQ(Messages(), text.isEmpty() ? QStringList() : QStringList(told));
            EXPECT_EQ(loadedPath, result != kLoadBaseFirst ? path : path == page ? survey : u"/基/b.qb"_s);
        }
    EXPECT_FALSE(session.IsDead()) << "a refused file harmed the survey in memory";
}

TEST_F(SurveyFile, WithoutAWholeMagicItIsNoFileOfOurs) {
    const QByteArray whole = TestData(u"small-1003.qb"_s);
    const QByteArray page = PageBytes(u"/b.qb"_s);
    const auto refused = [&](const QString& path) {
        EXPECT_EQ(Load(path), kNothing);
        EXPECT_EQ(user.transcript, QStringList{u"message 48 クイブラ: このファイル\\r\\n"_s + path +
                                               u"\\r\\nはクイブラで扱えません。 -> Ok"_s});
    };
    for (int length = 0; length < 4 + 33; ++length)
        refused(Put(u"cut.qb"_s, whole.first(length)));
    for (const int length : {0, -1, 1024})
        refused(Put(u"length.qb"_s, Bytes("\0\0") + QByteArray(1, static_cast<char>(length)) +
                                        QByteArray(1, static_cast<char>(length >> 8)) + whole.mid(4)));

    const QString missing = folder.filePath(u"missing.qb"_s);
    for (const QString& path : {missing, folder.path(), QString()}) {
        EXPECT_EQ(Load(path), kNothing);
        EXPECT_EQ(user.transcript, QStringList{u"message 16 クイブラ: "_s + path + u"が見つかりません -> Ok"_s});
    }

    QByteArray head;
    ByteWriter out(head);
    WriteFileHead(out, kSurvey1002, user);
    out.Flush();
    EXPECT_EQ(head, Bytes("\0\0"));
    EXPECT_EQ(user.transcript.last(), u"message 0 クイブラ: ファイルの形式が正しく書き込めませんでした -> Ok"_s);
}

TEST_F(SurveyFile, StopWhileLoadingLeavesTheDeadState) {
    const QString path = Put(u"a.qb"_s, TestData(u"small-1003.qb"_s));
    const QString question =
        u"message 305 クイブラ: 中止するとクイブラ内部のアンケートデータが壊れて保存出来なくなります。 -> "_s;
    for (int step = 14; step >= ScriptedInterface::kStopAtOpen; --step) {
        if (step == 0) continue;
        user.stopAtProgress = step;
        user.messageAnswers = {Answer::Ok};
        if (step == 3) user.messageAnswers.push_front(Answer::Cancel);
        EXPECT_EQ(Load(path), kNothing) << step;
        EXPECT_EQ(Messages(), step == 3 ? (QStringList{question + u"Cancel"_s, question + u"Ok"_s})
                                        : QStringList{question + u"Ok"_s});
        EXPECT_TRUE(IsDead() && !session.IsChanged()) << step;
        EXPECT_EQ(session.survey.SampleCount(), 12) << step;
        // Pressed in front of the second sample and confirmed in front of the third: two are there.
        if (step == 3) {
            EXPECT_TRUE(session.survey.Samples.IDno(1) != 0 && session.survey.Samples.IDno(3) == 0);
        }
    }
    EXPECT_TRUE(session.settings.RecentFiles[0].isEmpty());
}

TEST_F(SurveyFile, OptionalFieldsBehindTheSamplesMayBeAbsent) {
    Survey survey;
    ASSERT_TRUE(ReadSurveyBytes(TestData(u"small-1003.qb"_s), survey));
    survey.ExternDLL = u"lib"_s;
    survey.DistName = u"dist"_s;
    survey.EssayFull = -1;
    survey.LineStart.Fill(384);
    survey.LineStart[0] = 128;
    survey.LineStart[1] = 256;
    survey.LineFlag[1] = true;
    const QByteArray whole = WriteSurveyBytes(survey);
    const int externBytes = 4 + 3;
    const int flagBytes = 3 * 2;
    const int countedBytes = 2 + 4 + 4 + 2 + 2;

    const QByteArray samplesOnly = whole.chopped(externBytes + flagBytes + countedBytes);
    const Survey& read = session.survey;
    // ExternDLL, DistName, DistQno, EssayFull and the first line flags.
    const auto tail = [&](const QByteArray& bytes) {
        EXPECT_EQ(Load(Put(u"a.qb"_s, bytes)), kLoaded);
        QString told = u"%1 %2 %3 %4 "_s.arg(read.ExternDLL, read.DistName).arg(read.DistQno).arg(read.EssayFull);
        for (int i = 0; i < 4; ++i)
            told += read.LineFlag[i] ? u'1' : u'0';
        return told.toStdString();
    };
    EXPECT_EQ(tail(whole), "lib dist 3 -1 0100");
    EXPECT_EQ(tail(whole.chopped(externBytes)), " dist 3 -1 0100");
    EXPECT_EQ(tail(whole.chopped(externBytes + flagBytes)), " dist 3 -1 0000");
    EXPECT_EQ(tail(samplesOnly), " newfile 0 0 0000");
    // One field only, and flags of which the first and third are neither on nor off.
    EXPECT_EQ(tail(samplesOnly + Bytes("\1\0\2\0\2\0xy\7\0\1\0\3\0\1\0\0\0")), " xy 0 0 0101");
}

TEST_F(SurveyFile, PasswordIsSquares) {
    QByteArray bytes;
    ByteWriter out(bytes);
    WriteSquareStr(out, u"aｱ"_s);
    out.Flush();
    EXPECT_EQ(bytes, Bytes("\2\0\x61\xfa\xc1\xa4"));  // 177 squared - 32768, 97 squared - 32768
    ByteReader in(bytes);
    EXPECT_EQ(ReadSquareStr(in), u"aｱ"_s);
    EXPECT_THROW(WriteSquareStr(out, u"あ"_s), RuntimeError);

    const QByteArray many = Bytes("\xe9\x03zz");  // 1001
    ByteReader tooMany(many);
    EXPECT_EQ(ReadSquareStr(tooMany), QString());
    EXPECT_EQ(tooMany.Remaining(), 2);
}

TEST_F(SurveyFile, TextsBelongToAnswersInEachGeneration) {
    SurveyBuilder builder;
    builder.Question(QString(), QString(), 3, {u"a"_s, u"b"_s, u"c"_s});
    builder.Status(0, 2, {kEssay});
    builder.Status(0, 3, {kEssay});
    builder.Sample({{1, 3, 2}});
    Survey& survey = builder.Get();
    survey.Samples.SetEssay(0, 0, u"zero"_s);
    survey.Samples.SetEssay(0, 1, u"one"_s);
    const QByteArray current = WriteSurveyBytes(survey);
    const QByteArray tail = current.mid(current.lastIndexOf("one") + 3);
    const QByteArray head = current.first(current.indexOf("zero") - 8);
    const auto slotsOf = [&](const char* magic, const QByteArray& essays) {
        QByteArray bytes = head + essays + tail;
        for (int i = 0; i < 33; ++i)
            bytes[4 + i] = static_cast<char>(~magic[32 - i]);
        Survey read;
        EXPECT_TRUE(ReadSurveyBytes(bytes, read));
        QString texts;
        for (int slot = 0; slot < 4; ++slot)
            texts += read.Samples.Essay(0, slot) + u'|';
        return texts.toStdString();
    };
    const char* const now = "Velmor Quibra Datafile Since 95.9";
    const char* const older = "Velmor Quibra Datafile Since 95.6";
    const QByteArray two = Bytes("\2\0\0\0\4\0\4\0zero\1\0\3\0\3\0one");
    EXPECT_EQ(slotsOf(now, two), "zero|one|||");
    // Choices 3 and 2 bear the texts: they are the question's first and second.
    EXPECT_EQ(slotsOf(older, two), "|zero|one||");
    // Beyond the text-bearing answers a slot stays where it is, unless an answer's own text comes there.
    EXPECT_EQ(slotsOf(older, Bytes("\1\0\2\0\1\0\1\0x")), "||x||");
    EXPECT_EQ(slotsOf(older, Bytes("\2\0\1\0\1\0\1\0a\2\0\1\0\1\0x")), "||a||");
    // The slot behind the last is a spare; nothing lies beyond it.
    EXPECT_EQ(slotsOf(now, Bytes("\1\0\3\0\1\0\1\0x")), "||||");
    for (const char* magic : {now, older}) {
        EXPECT_THROW(slotsOf(magic, Bytes("\1\0\4\0\1\0\1\0x")), RuntimeError);
        EXPECT_THROW(slotsOf(magic, Bytes("\1\0\377\377\1\0\1\0x")), RuntimeError);
    }
}

TEST_F(SurveyFile, NumbersBeyondTheArraysAreRefusedWithTheDeadState) {
    // Offsets of numbers in the file of a new survey.
    session.NewSurvey();
    const QByteArray bytes = WriteSurveyBytes(session.survey);
    const int questionCountAt = 4 + 33 + 18 + 2 + 2 + 12;
    const int textAt = questionCountAt + 2;
    const int limitAt = textAt + 4 + (bytes[textAt] & 255) + ((bytes[textAt + 1] & 255) << 8);
    const int sampleCountAt = static_cast<int>(bytes.size()) - 4 - (2 + 11 + 4 + 2 + 4);
    ASSERT_EQ(bytes[questionCountAt], 1);
    ASSERT_EQ(bytes[limitAt + 4], 1);

    // `value` stands over the bytes at `at`, or in front of them.
    const auto load = [&](int at, const QByteArray& value, bool insert = false) {
        session.NewSurvey();
        return Load(Put(u"a.qb"_s, QByteArray(bytes).replace(at, insert ? 0 : value.size(), value)));
    };
    const auto refused = [&](RuntimeErrorNumber number, int at, const QByteArray& value, bool insert = false) {
        EXPECT_EQ(load(at, value, insert), kNothing);
        EXPECT_EQ(Messages(), QStringList{LoadFailure(number, folder.filePath(u"a.qb"_s))});
        EXPECT_EQ(user.transcript.last(), u"busy off"_s);
        EXPECT_TRUE(IsDead());
    };
    const QByteArray line = Bytes("\1\0\0\0");
    EXPECT_EQ(load(limitAt, line.repeated(14), true), kLoaded);
    refused(kErrorSubscript, limitAt, line.repeated(15), true);
    refused(kErrorSubscript, questionCountAt, Bytes("\xff\xff"));
    refused(kErrorSubscript, questionCountAt, Bytes("\x01\x01"));
    refused(kErrorSubscript, limitAt + 4, Bytes("\xff\xff"));  // Anum
    refused(kErrorInvalidCall, limitAt + 8, Bytes("\0\0"));    // ChoiceCount
    refused(kErrorPastEnd, sampleCountAt, Bytes("\xff\xff\xff\x7f"));
    EXPECT_EQ(load(sampleCountAt, Bytes("\xff\xff\xff\xff")), kLoaded);
    EXPECT_EQ(session.survey.SampleCount(), 0);

    QByteArray starts;
    for (int i = 0; i < 257; ++i)
        starts.append(static_cast<char>(i)).append(static_cast<char>((i >> 8) + 1));
    const int lineStartAt = sampleCountAt - 2 - 4;
    refused(kErrorSubscript, lineStartAt, starts, true);
    starts.replace(512, 2, starts.mid(510, 2));
    EXPECT_EQ(Load(Put(u"a.qb"_s, bytes.first(lineStartAt) + starts + bytes.mid(lineStartAt + 4))), kLoaded);
    EXPECT_EQ(session.survey.LineStart[256], session.survey.LineStart[255]);
}

using SlowSurveyFile = SurveyFile;

TEST_F(SlowSurveyFile, CutAnywhereIsRefusedOrLoaded) {
    for (const QString& name : {u"small-1001.qb"_s, u"small-1002.qb"_s, u"small-1003.qb"_s, u"gss.qb"_s}) {
        const QByteArray whole = TestData(name);
        const int step = whole.size() > 10000 ? 1601 : 1;
        const QString path = Put(u"cut.qb"_s, whole);
        int loaded = 0;
        for (qsizetype length = whole.size() - 1; length >= 4 + 35; length -= step) {
            ASSERT_TRUE(QFile::resize(path, length));
            if (Load(path) == kLoaded) {
                ++loaded;
                EXPECT_GT(length, whole.size() - 40) << qPrintable(name) << length;
            } else {
                EXPECT_EQ(Messages().last(), LoadFailure(kErrorPastEnd, path)) << length;
                EXPECT_TRUE(IsDead());
            }
        }
        // Behind the samples, behind the three counted fields and behind the line flags.
        if (step == 1) {
            EXPECT_EQ(loaded, 3) << qPrintable(name);
        }
    }
}

TEST_F(SlowSurveyFile, DamagedBytesAreRefusedOrASurveyForEver) {
    std::mt19937 random(20251);
    for (const QString& name : {u"small-1001.qb"_s, u"small-1002.qb"_s, u"small-1003.qb"_s}) {
        const QByteArray whole = TestData(name);
        for (int round = 0; round < 1500; ++round) {
            QByteArray damaged = whole;
            const int hits = 1 + static_cast<int>(random() % 4);
            for (int hit = 0; hit < hits; ++hit) {
                const auto at = static_cast<qsizetype>(39 + random() % (whole.size() - 39));
                const char small[] = {0, 1, -1, 127, -128};
                damaged[at] = random() % 2 ? static_cast<char>(random()) : small[random() % 5];
            }
            ASSERT_EQ(RoundTripFault(damaged), QString()) << qPrintable(name) << " round " << round;
        }
    }
}

TEST_F(SurveyFile, KeptFindingsOfTheFuzzerHold) {
    const QDir corpus(QStringLiteral(QUIBRA_SOURCE_DIR) + u"/fuzz/corpus/survey"_s);
    const QStringList names = corpus.entryList(QDir::Files);
    ASSERT_FALSE(names.isEmpty());
    for (const QString& name : names)
        EXPECT_EQ(RoundTripFault(FileBytes(corpus.filePath(name))), QString()) << qPrintable(name);
}

}  // namespace quibra
