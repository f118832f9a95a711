#include "entry/plugin_caller.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include "core/runtime_error.h"
#include "support/qt_printers.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "tree_paths.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

const QString kFailed = u"DLL呼び出しエラーが起きました。"_s;

// A survey of two questions with one sample, and somebody to ask.
class PluginCallerTest : public testing::Test {
  protected:
    PluginCallerTest() {
        builder_.Question(u"性別"_s, u"あなたは"_s, 1, {u"男"_s, u"女"_s});
        builder_.Question(QString(), u"趣味"_s, 2, {u"読書"_s, u"ほか"_s});
        builder_.Status(1, 2, {kEssay});
        builder_.Sample({{2}, {1, {2, u"釣り𠮷"_s}}});
        survey_ = builder_.Get();
        survey_.Title = u"調査"_s;
        survey_.FileName = folder_.filePath(u"a.qb"_s);
        survey_.ExternDLL = u"answers"_s;
    }

    QString ConsentPath() const { return folder_.filePath(u"settings/extern.json"_s); }
    // As a program that has just been started.
    QString CallAnew(int q = 1, int a = 1) { return PluginCaller(ui_, ConsentPath()).CallExternal(survey_, 0, q, a); }

    QTemporaryDir folder_;
    SurveyBuilder builder_;
    Survey survey_;
    ScriptedInterface ui_;
};

TEST_F(PluginCallerTest, PluginGetsTheSampleAndMayChangeNothingButItsName) {
    PluginCaller caller(ui_, ConsentPath());
    caller.SetWindow(77);
    caller.Trust(survey_);
    EXPECT_EQ(caller.CallExternal(survey_, 0, 1, 1), u"answers,77,調査,2,2,1,1,性別:2,質問2:12釣り?"_s);
    EXPECT_EQ(survey_.ExternDLL, u"renamed"_s);
    EXPECT_EQ(survey_.Title, u"調査"_s);
    EXPECT_EQ(survey_.Samples.Essay(0, 1), u"釣り𠮷"_s);
    EXPECT_EQ(ui_.TakeTranscript(), QStringList({u"busy on"_s, u"busy off"_s}));

    survey_.ExternDLL = u"answers"_s;
    EXPECT_EQ(caller.CallExternal(survey_, 0, -1, 0), u"answers,77,調査,0,2,0,1,性別:,質問2:"_s);
    EXPECT_THROW(caller.CallExternal(survey_, 1, 0, 0), RuntimeError);
    survey_.Samples.Allocate(0);
    survey_.ExternDLL = u"answers"_s;
    EXPECT_EQ(caller.CallExternal(survey_, 0, -1, 0), u"answers,77,調査,0,2,0,0,性別:,質問2:"_s);
}

TEST_F(PluginCallerTest, FailuresAreTold) {
    PluginCaller caller(ui_, ConsentPath());
    for (const auto& [name, reason] : std::initializer_list<std::pair<QString, QString>>{
             {u""_s, u"「」はライブラリの名前として使えません。半角の英数字と「_」「-」で64字までです。"_s},
             {u"/answers"_s,
              u"「/answers」はライブラリの名前として使えません。半角の英数字と「_」「-」で64字までです。"_s},
             {u"absent"_s, u"ライブラリ「absent」がプラグインのフォルダーにありません。"_s},
             {u"entryless"_s, u"ライブラリ「entryless」を読み込めないか、関数 QuibraExternMain がありません。"_s},
             {u"Crash"_s, u"ライブラリ「Crash」が異常終了しました。"_s},
             {u"OverrunByOne"_s, u"ライブラリ「OverrunByOne」が渡された領域の外に書き込みました。"_s},
             {u"LongResult"_s, u"ライブラリ「LongResult」の返した文字列が長すぎます。"_s}}) {
        survey_.ExternDLL = name;
        caller.Trust(survey_);
        EXPECT_EQ(caller.CallExternal(survey_, 0, 0, 0), kFailed + reason);
        EXPECT_EQ(survey_.ExternDLL, name);
    }
}

TEST_F(PluginCallerTest, UserIsAskedOnceForEachSurveyAndProgram) {
    const QString question =
        u"message 307 クイブラ: "
        u"アンケート「調査」は、回答の入力中に外部のプログラム「%1」を動かすように作られています。\\r\\n"
        u"外部のプログラムは、あなたのファイルを読むことも書き換えることもできます。"
        u"このアンケートとプログラムの出所を信頼できるときだけ「はい」を選んでください。\\r\\n\\r\\n"
        u"このプログラムを動かしてもよろしいですか？ -> %2"_s;
    const QString refused = kFailed + u"このアンケートのプログラムを動かすことは許可されていません。"_s;
    const auto asked = [this] { return ui_.Lines(u"message"_s).size(); };

    // Nobody to answer: not run, asked once while the program runs, and anew after its next start.
    PluginCaller caller(ui_, ConsentPath());
    EXPECT_EQ(caller.CallExternal(survey_, 0, 0, 0), QString());
    EXPECT_EQ(caller.CallExternal(survey_, 0, 0, 0), QString());
    EXPECT_EQ(ui_.TakeTranscript(), QStringList(question.arg(u"answers"_s, u"Cancel"_s)));
    EXPECT_FALSE(QFile::exists(ConsentPath()));

    // No is kept; a call that the user asks for himself asks again.
    ui_.messageAnswers = {Answer::No, Answer::No};
    EXPECT_EQ(CallAnew(), QString());
    EXPECT_EQ(CallAnew(), QString());
    EXPECT_EQ(asked(), 1);
    EXPECT_EQ(CallAnew(survey_.QuestionCount, 0), refused);
    EXPECT_EQ(CallAnew(-1, 0), refused);
    EXPECT_EQ(asked(), 3);

    // So is Yes, for this survey and this program.
    ui_.messageAnswers = {Answer::Yes};
    EXPECT_EQ(CallAnew(-1, 0).left(8), u"answers,"_s);
    survey_.ExternDLL = u"answers"_s;
    EXPECT_EQ(CallAnew().left(8), u"answers,"_s);
    EXPECT_EQ(asked(), 4);
    EXPECT_EQ(survey_.ExternDLL, u"renamed"_s);
    EXPECT_EQ(CallAnew(), QString());
    survey_.ExternDLL = u"answers"_s;
    survey_.FileName = folder_.filePath(u"b.qb"_s);
    EXPECT_EQ(CallAnew(), QString());
    EXPECT_EQ(asked(), 6);

    // A damaged file holds no answer and doesn't stop a new one.
    QFile file(ConsentPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{\"x\": [");
    file.close();
    ui_.messageAnswers = {Answer::Yes};
    EXPECT_EQ(CallAnew().left(8), u"answers,"_s);
    survey_.ExternDLL = u"answers"_s;
    EXPECT_EQ(CallAnew().left(8), u"answers,"_s);
    EXPECT_EQ(asked(), 7);
}

TEST_F(PluginCallerTest, ServiceOfTheBusIsStartedAndCalled) {
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", folder_.path().toUtf8());
    PluginCaller caller(ui_, ConsentPath());
    caller.SetWindow(77);
    const auto call = [&](const QString& name, const QString& title) {
        survey_.ExternDLL = name;
        survey_.Title = title;
        caller.Trust(survey_);
        return caller.CallExternal(survey_, 0, 1, 1);
    };
    EXPECT_EQ(call(u"a.b"_s, u"調査"_s), kFailed + u"セッションの D-Bus がありません。"_s);

    QDir(folder_.path()).mkpath(u"dbus-1/services"_s);
    QFile service(folder_.filePath(u"dbus-1/services/test.service"_s));
    ASSERT_TRUE(service.open(QIODevice::WriteOnly));
    service.write("[D-BUS Service]\nName=jp.example.Quibra-Test\nExec=" QUIBRA_BIN_DIR "/bus_service\n");
    service.close();
    qputenv("XDG_DATA_HOME", folder_.path().toUtf8());
    QProcess bus;
    bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
    ASSERT_TRUE(bus.waitForStarted() && bus.waitForReadyRead()) << bus.errorString().toStdString();
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.readLine().trimmed());

    EXPECT_EQ(call(u"jp.example.Quibra-Test"_s, u"調査"_s), u"調査,性別|質問2,||釣り𠮷|,77,2,2,1,1,1,2,0,2,1,2,0"_s);
    EXPECT_EQ(call(u"jp.example.Quibra-Test"_s, u"number"_s), u"1"_s);
    EXPECT_TRUE(call(u"jp.example.Quibra-Test"_s, u"leave"_s).startsWith(kFailed + u"「jp.example.Quibra-Test」: "_s));
    EXPECT_TRUE(call(u"jp.example.Absent"_s, QString()).startsWith(kFailed + u"「jp.example.Absent」: "_s));
    EXPECT_TRUE(call(u"answers.so"_s, QString()).startsWith(kFailed + u"「answers.so」: "_s));
    for (const QString& name :
         {u"../answers"_s, u"a..b"_s, u"1.2"_s, u"."_s, u"a.b\n"_s, QString(200, u'a') + u".b.c"_s.repeated(20)})
        EXPECT_EQ(call(name, QString()), kFailed + u"「%1」は D-Bus のサービスの名前として使えません。"_s.arg(name));
    bus.kill();
    bus.waitForFinished();
}

}  // namespace
}  // namespace quibra
