// Surveys as files: info, dump, build, convert, get, set, and how the program refuses.
#include <QFile>
#include <QJsonArray>

#include "cli/cli_run.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

TEST_F(CliTest, EveryVerbHasHelpAndWrongUsageIsStatus2) {
    for (const QString& verb :
         {u"info"_s, u"total"_s, u"essays"_s, u"get"_s, u"set"_s, u"dump"_s, u"build"_s, u"convert"_s}) {
        const QString help = QString::fromUtf8(Done({verb, u"--help"_s}));
        EXPECT_TRUE(help.startsWith(u"使い方: quibra-cli %1 [オプション] "_s.arg(verb))) << help.toStdString();
        EXPECT_TRUE(help.contains(u"--help"_s));
        EXPECT_EQ(Refused({verb}, 2).left(4), u"使い方:"_s);
        EXPECT_EQ(Refused({verb, u"--wide"_s}, 2), u"知らないオプションです: wide\n"_s);
    }
    EXPECT_TRUE(QString::fromUtf8(Done({u"--help"_s})).contains(u"convert"_s));
    EXPECT_EQ(Done({u"--version"_s}).left(11), "quibra-cli ");
    EXPECT_TRUE(Refused({}, 2).startsWith(u"使い方: quibra-cli コマンド"_s));
    EXPECT_EQ(Refused({u"fly"_s}, 2), u"「fly」というコマンドはありません。quibra-cli --help で一覧を表示します。\n"_s);

    const QString file = SamplePath(u"residents.qb"_s);
    const auto usage = [&](const QStringList& words) { return Refused(words, 2).trimmed(); };
    EXPECT_EQ(usage({u"total"_s, file, u"--rank"_s}), u"オプション --rank の値が正しくありません"_s);
    EXPECT_EQ(usage({u"total"_s, file, u"--rank=x"_s}), u"--rank「x」は0から128までの整数ではありません"_s);
    EXPECT_EQ(usage({u"total"_s, file, u"--from"_s, u"33"_s}), u"質問番号「33」は1から32までの整数ではありません"_s);
    EXPECT_EQ(usage({u"total"_s, file, u"--from"_s, u"3"_s, u"--to"_s, u"2"_s}), u"--from が --to より後です"_s);
    EXPECT_EQ(usage({u"total"_s, file, u"--cross"_s, u"1"_s, u"--predefined"_s}),
              u"一緒には使えません: --cross --predefined"_s);
    EXPECT_EQ(usage({u"total"_s, file, u"--format"_s, u"xml"_s}), u"--format は text, json, csv, html のどれかです"_s);
    EXPECT_EQ(usage({u"total"_s, file, u"--show=all"_s}), u"--show は counts, both, percent のどれかです"_s);
    EXPECT_EQ(usage({u"essays"_s, file, u"7"_s, u"--number"_s, u"10"_s}),
              u"--number には LOW と HIGH の二つの値が要ります"_s);
    EXPECT_EQ(usage({u"essays"_s, file, u"7"_s, u"--number=10"_s}),
              u"--number LOW HIGH のように二つの値を書いてください"_s);
    EXPECT_EQ(usage({u"essays"_s, file, u"7"_s, u"--number"_s, u"a"_s, u"9"_s}), u"「a」は数ではありません"_s);
    EXPECT_EQ(usage({u"essays"_s, file, u"7"_s, u"--empty"_s, u"--text"_s, u"x"_s}),
              u"一緒には使えません: --empty --text"_s);
    const QString pointed = usage({u"total"_s, file, u"--where"_s, u"Q1=1 Q40=2"_s});
    EXPECT_TRUE(pointed.endsWith(u"\nQ1=1 Q40=2\n     ^^^^^"_s)) << pointed.toStdString();
}

TEST_F(CliTest, InfoTellsWhatASurveyHolds) {
    const QString path = Copy(u"residents.qb"_s);
    const QString info = QString::fromUtf8(Done({u"info"_s, u"residents.qb"_s}));
    EXPECT_TRUE(
        info.startsWith(u"題名              第8回 暮らしと市政についての市民アンケート\n"_s
                        u"作成者            みどり野市 企画課\n"_s
                        u"ファイル          %1\n"_s
                        u"ファイルの形式    95年9月版 (1003)\n"_s.arg(path)))
        << info.toStdString();
    for (const QString& line : {u"質問数            32\n"_s, u"サンプル数        2,000\n"_s,
                                u"データ隠蔽        0 見るのも変えるのも自由\n"_s, u"既成限定条件      8\n"_s,
                                u"\nQ27 優先施策 ［3つまで］ （選択肢13）\n"_s})
        EXPECT_TRUE(info.contains(line)) << line.toStdString();
    const CliRun old = Cli({u"info"_s, Copy(u"gss-1001.qb"_s)});
    EXPECT_TRUE(QString::fromUtf8(old.out).contains(u"95年4,5月版 (1001)\n"_s));
    EXPECT_TRUE(old.err.contains(
        u"はクイブラ95年4,5月版の形式のファイルです。 保存すると95年9月版の形式のファイルになります。\n"_s));
}

// All generations give the same text, the text gives the file again, and the file the same text.
TEST_F(CliTest, DumpAndBuildAreInverse) {
    const QJsonObject told = JsonOf(TestData(u"small.json"_s));
    for (const QString& name : {u"small-1001.qb"_s, u"small-1002.qb"_s, u"small-1003.qb"_s}) {
        EXPECT_EQ(JsonOf(Cli({u"dump"_s, TestDataPath(name)}).out), told) << name.toStdString();
        EXPECT_EQ(Cli({u"convert"_s, TestDataPath(name), Path(name)}).status, 0);
        Done({u"build"_s, TestDataPath(u"small.json"_s), Path(u"built.qb"_s)});
        EXPECT_EQ(FileBytes(Path(name)), FileBytes(Path(u"built.qb"_s))) << name.toStdString();
    }

    WriteFileBytes(Path(u"gss.json"_s), Done({u"dump"_s, TestDataPath(u"gss.qb"_s)}));
    EXPECT_EQ(Done({u"build"_s, Path(u"gss.json"_s), Path(u"gss.qb"_s)}), "");
    EXPECT_EQ(FileBytes(Path(u"gss.qb"_s)), TestData(u"gss.qb"_s));
    EXPECT_EQ(Done({u"dump"_s, Path(u"gss.qb"_s)}), FileBytes(Path(u"gss.json"_s)));

    QJsonObject definition = JsonOf(FileBytes(Path(u"gss.json"_s)));
    definition.remove(u"Samples"_s);
    EXPECT_EQ(JsonOf(Done({u"dump"_s, u"--no-samples"_s, Path(u"gss.qb"_s)})), definition);
}

TEST_F(CliTest, SampleSurveyIsMadeAgainByteForByte) {
    const CliRun script =
        RunProgram(QStringLiteral(QUIBRA_PYTHON), {QStringLiteral(QUIBRA_SOURCE_DIR) + u"/scripts/make_sample.py"_s},
                   folder_.path());
    ASSERT_EQ(script.status, 0) << script.err.toStdString();
    WriteFileBytes(Path(u"full.json"_s), script.out);
    Done({u"build"_s, u"full.json"_s, u"residents.qb"_s});
    EXPECT_EQ(FileBytes(Path(u"residents.qb"_s)), FileBytes(SamplePath(u"residents.qb"_s)));
    QJsonObject full = JsonOf(script.out);
    const QJsonObject dump = JsonOf(Done({u"dump"_s, u"residents.qb"_s}));
    EXPECT_EQ(dump[u"Questions"_s], full[u"Questions"_s]);
    EXPECT_EQ(dump[u"LineStart"_s], full[u"LineStart"_s]);
    ASSERT_EQ(dump[u"Samples"_s].toArray().size(), 2000);
    EXPECT_EQ(dump[u"Samples"_s][1999][u"Answers"_s], full[u"Samples"_s][1999][u"Answers"_s]);
}

TEST_F(CliTest, ConvertAndBuildKeepTheOldFileAsBackup) {
    const QString path = Copy(u"small-1001.qb"_s);
    const CliRun run = Cli({u"convert"_s, u"small-1001.qb"_s});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(
        run.err,
        u"このファイル\n%1\nはクイブラ95年4,5月版の形式のファイルです。 保存すると95年9月版の形式のファイルになります。\n"_s
            .arg(path));
    EXPECT_EQ(FileBytes(Path(u"small-1001.qb~"_s)), TestData(u"small-1001.qb"_s));
    EXPECT_TRUE(QString::fromUtf8(Done({u"info"_s, path})).contains(u"(1003)"_s));

    // Over an existing file of that ending nothing is written.
    WriteFileBytes(Path(u"x.QB~"_s), "mine");
    EXPECT_EQ(Refused({u"build"_s, TestDataPath(u"small.json"_s), u"x.QB~"_s}),
              u"ファイル名の拡張子を qb~ 以外にしてください\n"_s);
    EXPECT_EQ(FileBytes(Path(u"x.QB~"_s)), "mine");
    EXPECT_NE(Refused({u"build"_s, TestDataPath(u"small.json"_s), u"no/such/folder.qb"_s}), u""_s);
    EXPECT_EQ(Refused({u"build"_s, u"absent.json"_s, u"y.qb"_s}), u"absent.jsonが見つかりません\n"_s);
    WriteFileBytes(Path(u"bad.json"_s),
                   R"({"Questions":[{"Text":"a","Choices":[{"Text":"無回答"},{"Text":"b","Staus":1}]}]})");
    EXPECT_EQ(Refused({u"build"_s, u"bad.json"_s, u"y.qb"_s}),
              u"bad.json：Questions[0].Choices[1].Staus：知らないキーです\n"_s);
    EXPECT_FALSE(QFile::exists(Path(u"y.qb"_s)));
}

TEST_F(CliTest, AnswersAreReadStoredAndClearedWithTheirTexts) {
    const QString file = Copy(u"residents.qb"_s);
    const auto get = [&](const QString& q) { return QString::fromUtf8(Done({u"get"_s, file, u"1001"_s, q})); };
    const auto set = [&](const QString& q, const QStringList& answers) {
        EXPECT_EQ(Done(QStringList{u"set"_s, file, u"1001"_s, q} + answers), "");
    };
    EXPECT_EQ(get(u"8"_s), u"1/104:若葉台\n"_s);
    set(u"6"_s, {u"7/送迎 / 船"_s, u"1"_s});
    EXPECT_EQ(get(u"Q6"_s), u"7/送迎 / 船\n1\n"_s);
    set(u"6"_s, {u"0"_s});
    EXPECT_EQ(get(u"6"_s), u"0\n"_s);
    // The text of the cleared answer does not come back with the next one, nor stay in the file.
    set(u"6"_s, {u"7"_s});
    EXPECT_EQ(get(u"6"_s), u"7\n"_s);
    EXPECT_FALSE(Done({u"dump"_s, file}).contains("送迎 / 船"));
    // The cached conditions follow: the respondent turns from no answer to a man and back.
    const auto men = [&] {
        return Cells(Done({u"total"_s, file, u"--from"_s, u"1"_s, u"--where"_s, u"P0"_s}))[3][1].toInt();
    };
    set(u"1"_s, {u"2"_s});
    const int before = men();
    set(u"1"_s, {u"1"_s});
    EXPECT_EQ(men(), before + 1);

    const QByteArray bytes = FileBytes(file);
    EXPECT_EQ(Refused({u"set"_s, file, u"1001"_s, u"6"_s, u"8"_s}), u"Q6 に選択肢 8 はありません（1から7まで）\n"_s);
    EXPECT_EQ(Refused({u"set"_s, file, u"1001"_s, u"6"_s, u"1"_s, u"0"_s}),
              u"Q6 に選択肢 0 はありません（1から7まで）\n"_s);
    EXPECT_EQ(Refused({u"set"_s, file, u"1001"_s, u"6"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s}),
              u"Q6 の回答は3つまでです\n"_s);
    EXPECT_EQ(Refused({u"set"_s, file, u"1001"_s, u"6"_s, u"1/歩き"_s}), u"Q6 の選択肢 1 は記述付きではありません\n"_s);
    EXPECT_EQ(Refused({u"set"_s, file, u"5"_s, u"6"_s, u"1"_s}), u"サンプルID 5 はありません\n"_s);
    EXPECT_EQ(Refused({u"get"_s, file, u"5"_s, u"6"_s}), u"サンプルID 5 はありません\n"_s);
    EXPECT_EQ(Refused({u"set"_s, file, u"1001"_s, u"6"_s, u"walk"_s}, 2),
              u"回答「walk」は番号でも「番号/記述」でもありません\n"_s);
    EXPECT_EQ(FileBytes(file), bytes);
}

TEST_F(CliTest, ALockAsksForThePassword) {
    QJsonObject survey = JsonOf(TestData(u"small.json"_s));
    survey[u"Password"_s] = u"himitsu"_s;
    const auto build = [&](int level) {
        survey[u"LockLevel"_s] = level;
        WriteFileBytes(Path(u"locked.json"_s), QJsonDocument(survey).toJson());
        Done({u"build"_s, u"locked.json"_s, u"locked.qb"_s});
    };
    const QString wrong = u"パスワードが正しくありません\n"_s;
    const QString missing = u"パスワードが正しくありません（--password で指定してください）\n"_s;
    const QString title = survey[u"Title"_s].toString();
    const QStringList shows[] = {{u"get"_s, u"locked.qb"_s, u"1000"_s, u"1"_s},
                                 {u"total"_s, u"locked.qb"_s},
                                 {u"essays"_s, u"locked.qb"_s, u"1"_s}};
    const QStringList changes[] = {{u"set"_s, u"locked.qb"_s, u"1000"_s, u"1"_s, u"2"_s},
                                   {u"convert"_s, u"locked.qb"_s},
                                   {u"dump"_s, u"locked.qb"_s}};

    for (const int level : {1, 2}) {
        build(level);
        const QByteArray bytes = FileBytes(Path(u"locked.qb"_s));
        for (const QStringList& verb : changes) {
            EXPECT_EQ(Refused(verb), missing);
            EXPECT_EQ(Refused(verb + QStringList{u"--password"_s, u"himits"_s}), wrong);
        }
        for (const QStringList& verb : shows) {
            if (level == 1)
                Done(verb);
            else
                EXPECT_EQ(Refused(verb), missing);
            Done(verb + QStringList{u"--password=Himitsu"_s});
        }
        EXPECT_EQ(Done({u"info"_s, u"locked.qb"_s}).contains(title.toUtf8()), level == 1);
        EXPECT_TRUE(Done({u"info"_s, u"locked.qb"_s, u"--password=himitsu"_s}).contains(title.toUtf8()));
        EXPECT_EQ(FileBytes(Path(u"locked.qb"_s)), bytes);
        for (const QStringList& verb : changes)
            Done(verb + QStringList{u"--password=himitsu"_s});
        EXPECT_EQ(JsonOf(Done({u"dump"_s, u"locked.qb"_s, u"--password=himitsu"_s}))[u"LockLevel"_s].toInt(), level);
    }
}

TEST_F(CliTest, UnreadableFilesAreToldInTheSystemsWordsAndLeftAlone) {
    EXPECT_EQ(Refused({u"info"_s, u"absent.qb"_s}), Path(u"absent.qb"_s) + u"が見つかりません\n"_s);
    const QString file = Path(u"cut.qb"_s);
    const QByteArray whole = TestData(u"small-1003.qb"_s);
    for (const int size : {0, 20, 500, 2900}) {
        WriteFileBytes(file, whole.left(size));
        const QString told = Refused({u"set"_s, file, u"1000"_s, u"1"_s, u"1"_s});
        if (size <= 20)
            EXPECT_EQ(told, u"このファイル\n%1\nはクイブラで扱えません。\n"_s.arg(file));
        else
            EXPECT_TRUE(told.endsWith(
                u"\n%1\n** ファイル関係のエラーの場合、ディスク接続不良・破損、データ破損、またはデータがクイブラ用でない可能性があります。\n"_s
                u"今まで扱っていたデータも破壊されているので保存はしないで下さい。\n"_s.arg(file)))
                << told.toStdString();
        EXPECT_EQ(FileBytes(file), whole.left(size));
    }
    EXPECT_FALSE(QFile::exists(Path(u"cut.qb~"_s)));
}

// A result page names the survey on which it is based; reading verbs go there only when told to, changing ones never.
TEST_F(CliTest, AResultPageLeadsToItsSurveyOnlyWithYes) {
    const QString base = Copy(u"small-1003.qb"_s);
    QByteArray page("\0\0\x22\0", 4);
    const QByteArray magic("Velmor Quibra PageData Since 95.10");
    for (auto character = magic.crbegin(); character != magic.crend(); ++character)
        page += static_cast<char>(~*character);
    const QByteArray path = base.toUtf8();
    for (int i = 0; i < 2; ++i)
        page += QByteArray{}.append(static_cast<char>(path.size())).append('\0');
    const QString pagePath = Path(u"page.qbp"_s);
    WriteFileBytes(pagePath, page + path);

    const QString question =
        u"このファイル\n%1\nは集計結果データです。基となるアンケートファイル\n%2\nを先に読み込みますか。\n"_s.arg(
            pagePath, base);
    EXPECT_EQ(Refused({u"total"_s, u"page.qbp"_s}), question + u"→ キャンセル（--yes なら「はい」）\n"_s);
    const CliRun run = Cli({u"total"_s, u"page.qbp"_s, u"--yes"_s});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, question + u"→ はい\n"_s);
    EXPECT_EQ(run.out, Done({u"total"_s, base}));
    EXPECT_TRUE(
        Refused({u"convert"_s, u"page.qbp"_s, u"--yes"_s}).endsWith(u"集計結果データは書き換えられません。\n"_s));
    EXPECT_EQ(FileBytes(pagePath), page + path);
}

TEST_F(CliTest, OutputThatCannotBeWrittenEndsTheRun) {
    const QString file = Copy(u"gss.qb"_s);
    const CliRun full = RunShell(u"$CLI dump gss.qb > /dev/full"_s, folder_.path());
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, u"標準出力に書けません。ディスクの空き容量が不足しています。\n"_s);
    // A reader that has seen enough is no failure to speak of.
    const CliRun gone = RunShell(u"$CLI dump gss.qb | head -c 10; exit ${PIPESTATUS[0]}"_s, folder_.path());
    EXPECT_EQ(gone.status, 1);
    EXPECT_EQ(gone.out, "{\"Title\":\"");
    EXPECT_EQ(gone.err, u""_s);
    // The survey must not become the closed standard output.
    EXPECT_EQ(RunShell(u"$CLI dump gss.qb >&-"_s, folder_.path()).status, 1);
    EXPECT_EQ(RunShell(u"$CLI convert gss.qb out.qb <&- >&- 2>&-"_s, folder_.path()).status, 0);
    EXPECT_EQ(FileBytes(Path(u"out.qb"_s)), FileBytes(file));
    // Japanese words stay whole without a locale.
    const CliRun bare = RunShell(u"env -i \"$CLI\" total gss.qb --from 質問"_s, folder_.path());
    EXPECT_EQ(bare.err, u"質問番号「質問」は1から9までの整数ではありません\n"_s);
}

}  // namespace quibra
