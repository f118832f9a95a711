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
        R"({"Samples":[{"Essays":{"1":"第二"},"Answers":[[1,2],[]],"IDno":9},{"IDno":-3}],"Title":"題\"\\\u0001\t","Questions":[)"
        R"({"Text":"a\rb\r\r","Anum":2,"Choices":[{"Text":"無回答"},{"Text":"x"},{"Text":"y","Status":1}]},)"
        R"({"Choices":[{"Text":"無回答"},{"Text":"z"}]}],"PreLimit":[[],[[3,1]]]})");
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
    for (const QByteArray& text : {WriteText(survey), WriteText(ReadText("{}"))})
        EXPECT_EQ(WriteText(ReadText(text)).toStdString(), text.toStdString());
}

// Whatever happens to a text, it is refused with a reason or read as a survey that comes back from its own text.
TEST(SlowSurveyJson, DamagedTextIsRefusedOrReadWhole) {
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
        EXPECT_THROW(ReadText(whole.left(size)), RuntimeError) << size;
    for (const char* start : {"", R"({"Samples":)"})
        EXPECT_THROW(ReadText(start + QByteArray(1000000, '[')), RuntimeError);
}

TEST(SurveyJson, WritingStopsWhenToldAndWhenTheDeviceIsFull) {
    Survey survey = ReadText(R"({"Samples":[{"IDno":1},{"IDno":2},{"IDno":3}]})");
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
