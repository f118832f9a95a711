// Surveys as JSON text: what is refused and in which words, and that no text does harm.
#include "core/survey_json.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <random>

#include "core/answer_store.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

Survey NewSurvey() {
    Survey survey;
    NewSurveyHead(survey, QString());
    NewSurveyBody(survey);
    return survey;
}

Survey ReadText(const QByteArray& text) {
    QBuffer device;
    device.setData(text);
    device.open(QIODevice::ReadOnly);
    Survey survey = NewSurvey();
    ReadSurveyJson(device, survey);
    return survey;
}

QByteArray WriteText(const Survey& survey) {
    QByteArray text;
    QBuffer device(&text);
    device.open(QIODevice::WriteOnly);
    WriteSurveyJson(survey, device, true);
    return text;
}

QString RefusalOf(const QByteArray& text) {
    try {
        ReadText(text);
    } catch (const RuntimeError& error) {
        return error.Text();
    }
    return QString();
}

// Two questions: one of two answers, the second with a text; one of a single answer. One sample.
const QByteArray kSmall = R"({"Questions":[{"Text":"a\rb\r\r","Anum":2,)"
                          R"("Choices":[{"Text":"無回答"},{"Text":"x"},{"Text":"y","Status":1}]},)"
                          R"({"Choices":[{"Text":"無回答"},{"Text":"z"}]}],"LineStart":[0,128,256,256],)"
                          R"("LineFlag":[true,false],"PreLimit":[[],[[3,1]]],"Samples":[{"IDno":1}]})";

// A device that takes so many bytes and then fails.
class FullDevice : public QIODevice {
  public:
    explicit FullDevice(qint64 room) : room_(room) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override {
        if (size > room_) return -1;
        room_ -= size;
        return size;
    }

  private:
    qint64 room_;
};

}  // namespace

TEST(SurveyJson, KeysComeInAnyOrderAndAbsentOnesKeepTheirDefaults) {
    const Survey survey = ReadText(
        R"({"Samples":[{"Essays":{"1":"第二"},"Answers":[[1,2],[]],"IDno":9},{"IDno":-3}],"Title":"題\"\\\u0001\t",)" +
        QByteArray(kSmall).mid(1).replace(R"(,"Samples":[{"IDno":1}])", ""));
    EXPECT_EQ(survey.Title, u"題\"\\\u0001\t"_s);
    EXPECT_EQ(survey.Editor, u"＊＊＊＊"_s);
    EXPECT_EQ(survey.Questions[0].Text, u"a\rb\r\r"_s.leftJustified(128));
    EXPECT_EQ(survey.Questions[1].Anum, 1);
    EXPECT_EQ(survey.Choices(0, 1).Status, 4);
    // Samples come to stand by their IDs; their cached conditions are worked out where none are given.
    ASSERT_EQ(survey.SampleCount(), 2);
    EXPECT_EQ(survey.Samples.IDno(0), -3);
    EXPECT_EQ(survey.Samples.Essay(1, 1), u"第二"_s);
    EXPECT_TRUE(SampleHasPreLimit(survey, 1, 1) && !SampleHasPreLimit(survey, 0, 1));
    EXPECT_EQ(survey.QuotaUsed, 9);
    EXPECT_EQ(WriteText(ReadText(WriteText(survey))), WriteText(survey));
}

// One change to a good text, and what is said of it.
TEST(SurveyJson, RefusalNamesThePlace) {
    const QByteArray id = R"({"IDno":1})", anum = R"("Anum":2)", choice = R"({"Text":"z"})", all = kSmall;
    const std::tuple<QByteArray, QByteArray, QString> cases[] = {
        {id, id, QString()},
        {id, R"({"IDno":1,"Answers":[[1],[1]]},{"IDno":2},{"IDno":1})",
         u"Samples[2].IDno：ID 1 は Samples[0] にもあります"_s},
        {id, R"({"Answers":[[1],[1]]})", u"Samples[0].IDno：必要なキーがありません"_s},
        {id, R"({"IDno":2147483648})", u"Samples[0].IDno：-2147483648から2147483647までの整数ではありません"_s},
        {id, R"({"IDno":18446744073709551615})",
         u"Samples[0].IDno：-2147483648から2147483647までの整数ではありません"_s},
        {id, R"({"IDno":1.0})", u"Samples[0].IDno：ここに書けない種類の値です"_s},
        {id, R"({"IDno":1,"PreLimitBits":32768})",
         u"Samples[0].PreLimitBits：-32768から32767までの整数ではありません"_s},
        {id, R"({"IDno":1},{"IDno":2,"Answers":[[1]]})", u"Samples[1].Answers：質問は2個です"_s},
        {id, R"({"IDno":1,"Answers":[[1],[1],[1]]})", u"Samples[0].Answers：質問は2個です"_s},
        {id, R"({"IDno":1,"Answers":[[1],[1,1]]})", u"Samples[0].Answers[1]：答は1個までです"_s},
        {id, R"({"IDno":1,"Answers":[[3],[]]})", u"Samples[0].Answers[0]：1から2までの整数ではありません"_s},
        {id, R"({"IDno":1,"Answers":[[0],[]]})", u"Samples[0].Answers[0]：1から2までの整数ではありません"_s},
        {id, R"({"IDno":1,"Answers":[["1"],[]]})", u"Samples[0].Answers[0]：ここに書けない種類の値です"_s},
        {id, R"({"IDno":1,"Essays":{"2":"t"}})", u"Samples[0].Essays.2：記述文の欄は0から1までです"_s},
        {id, R"({"IDno":1,"Essays":{"1":"t","01":"u"}})", u"Samples[0].Essays：欄1が二つあります"_s},
        {id, R"({"IDno":1,"Essays":{"0":")" + QByteArray(32768, 'x') + R"("}})",
         u"Samples[0].Essays.0：文字列が長すぎます（32767バイトまで）"_s},
        {id, R"({"IDno":1,"Weight":1})", u"Samples[0].Weight：知らないキーです"_s},
        {id, "7", u"Samples[0]：ここに書けない種類の値です"_s},
        {R"("Samples":)", R"("SampleCount":0,"Samples":)", u"SampleCount：実際の数は1個です"_s},
        {anum, R"("Anum":3)", u"Questions[0].Anum：1から2までの整数ではありません"_s},
        {anum, R"("Anum":"2")", u"Questions[0].Anum：整数ではありません"_s},
        {anum, R"("ChoiceCount":2)", u"Questions[0].ChoiceCount：実際の数は3個です"_s},
        {anum, R"("LabelKind":70000)", u"Questions[0].LabelKind：-32768から32767までの整数ではありません"_s},
        {anum, R"("QLimit":[[3]])", u"Questions[0].QLimit[0]：要素が1個あります（2個から2個まで）"_s},
        {anum, R"("QLimit":[[0,1]])", u"Questions[0].QLimit[0][0]：0 は条件の終わりの印です"_s},
        {anum, R"("QLimit":[)" + QByteArray("[3,1],").repeated(14) + "[3,1]]",
         u"Questions[0].QLimit：要素が15個あります（0個から14個まで）"_s},
        {R"("a\rb\r\r")", '"' + QByteArray(129, 'a') + '"', u"Questions[0].Text：128文字を超えています"_s},
        {R"({"Text":"無回答"},{"Text":"z"})", R"({"Text":"z"})", u"Questions[1].Choices[0]：選択肢0は「無回答」です"_s},
        {choice, R"({"Text":"z\r1"})", u"Questions[1].Choices[1]：改行(CR)は書けません"_s},
        {choice, R"({"Text":"z","Low":"1"})", u"Questions[1].Choices[1].Low：数ではありません"_s},
        {choice, QByteArray(R"({"Text":"z"},)").repeated(127) + R"({"Text":"z"})",
         u"Questions[1].Choices：要素が129個あります（1個から128個まで）"_s},
        {"256,256]", "256]", u"LineStart[2]：前と同じ値は最後に一度だけです"_s},
        {"[0,128", "[0,0,128", u"LineStart[1]：前と同じ値は最後に一度だけです"_s},
        {"[true,", "[true,true,", u"LineFlag：要素が3個あります（2個から2個まで）"_s},
        {"[true,", "[1,", u"LineFlag[0]：true か false ではありません"_s},
        {"{\"Questions\"", "{\"Password\":\"鍵\",\"Questions\"", u"Password：半角文字以外があります"_s},
        {"{\"Questions\"", "{\"Samples\":[],\"Questions\"", u"Samples：同じキーが二つあります"_s},
        {all, "[]", u"JSON：オブジェクトではありません"_s},
        {all, R"({"Samples":"x"})", u"Samples：ここに書けない種類の値です"_s},
        {all, R"({"Questions":1e999})", u"JSON：大きすぎる数があります"_s},
        {all, R"({"Title":"\xff"})", u"JSON の 12 バイト目：JSON として読めません"_s},
        {all, "", u"JSON の 1 バイト目：JSON として読めません"_s},
    };
    for (const auto& [from, to, refusal] : cases) {
        ASSERT_TRUE(kSmall.contains(from)) << from.toStdString();
        EXPECT_EQ(RefusalOf(QByteArray(kSmall).replace(from, to)), refusal) << to.left(200).toStdString();
    }
}

// Whatever happens to a text, it is refused with a reason or read as a survey that comes back from its own text.
TEST(SurveyJson, DamagedTextIsRefusedOrReadWhole) {
    const QByteArray whole = TestData(u"small.json"_s);
    std::mt19937 random(20260707);
    int read = 0;
    int refused = 0;
    for (int round = 0; round < 300; ++round) {
        QByteArray text = whole;
        for (int change = int(random() % 3); change >= 0; --change) {
            const qsizetype at = qsizetype(random() % size_t(text.size()));
            switch (random() % 4) {
                case 0:
                    text[at] = "0123456789-,:[]{}\"et"[random() % 20];
                    break;
                case 1:
                    text.remove(at, 1 + qsizetype(random() % 20));
                    break;
                case 2:
                    text.insert(at, text.mid(qsizetype(random() % size_t(text.size())), qsizetype(random() % 40)));
                    break;
                default:
                    text[at] = char(random());
            }
            if (text.isEmpty()) text = "{";
        }
        try {
            const QByteArray again = WriteText(ReadText(text));
            EXPECT_EQ(WriteText(ReadText(again)), again);
            ++read;
        } catch (const RuntimeError& error) {
            EXPECT_FALSE(error.Text().isEmpty());
            ++refused;
        }
    }
    EXPECT_GT(read, 3);
    EXPECT_GT(refused, 100);
    for (qsizetype size = 0; size < whole.size() - 1; size += 97)
        EXPECT_NE(RefusalOf(whole.left(size)), QString()) << size;
    EXPECT_NE(RefusalOf(QByteArray(1000000, '[')), QString());
    EXPECT_NE(RefusalOf("{\"Samples\":" + QByteArray(1000000, '[')), QString());
}

TEST(SurveyJson, WritingStopsWhenToldAndWhenTheDeviceIsFull) {
    Survey survey = ReadText(QByteArray(kSmall).replace(R"({"IDno":1})", R"({"IDno":1},{"IDno":2},{"IDno":3})"));
    FullDevice full(100);
    EXPECT_THROW(WriteSurveyJson(survey, full, true), RuntimeError);
    QByteArray text;
    QBuffer device(&text);
    device.open(QIODevice::WriteOnly);
    QList<qint32> ticks;
    WriteSurveyJson(survey, device, true, [&](qint32 sample) {
        ticks += sample;
        return sample < 2;
    });
    EXPECT_EQ(ticks, (QList<qint32>{1, 2}));
    EXPECT_TRUE(QJsonDocument::fromJson(text).isNull());
}

}  // namespace quibra
