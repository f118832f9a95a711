// Totals of the sample survey of 21,483 people against figures that another program has counted.
#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "core/survey_file.h"
#include "tabulation/sheet_rig.h"

using namespace Qt::StringLiterals;

namespace quibra {

class GssTotals : public testing::Test {
  protected:
    void SetUp() override {
        const QString folder = QStringLiteral(QUIBRA_SOURCE_DIR "/tests/data/");
        QString path = folder + u"gss.qb"_s;
        ASSERT_EQ(SurveyLoad(session, path, kExpectSurvey), kLoaded);
        QFile file(folder + u"gss-totals.json"_s);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        totals = QJsonDocument::fromJson(file.readAll()).object();
    }

    // The cells of a block under limit L against the figures counted elsewhere.
    void ExpectBlock(const SheetRig& rig, int q, int L, const QJsonObject& counts) {
        const int start = rig.sheet.RowStart(q);
        const int column = rig.sheet.ColStart(L) + (L == 0 ? 1 : 0);
        const int choices = session.survey.Questions[q].ChoiceCount;
        int persons = 0;
        for (int i = 0; i < choices; ++i) {
            const int figure = counts[QString::number((i + 1) % choices)].toInt();
            EXPECT_EQ(rig.sheet.grid.Text(column, start + 3 + i), QString::number(figure)) << q << ' ' << L << ' ' << i;
            persons += figure;
        }
        EXPECT_EQ(rig.sheet.grid.Text(column, start + 3 + choices), QString::number(persons));
    }

    ScriptedInterface ui;
    SurveySession session{ui, QString()};
    QJsonObject totals;
};

TEST_F(GssTotals, AgreeWithFiguresOfAnotherProgram) {
    SheetRig rig(session.survey);
    rig.sheet.DoTotal(TableOf(0, session.survey.QuestionCount - 1));
    const QJsonArray simple = totals["simple"_L1].toArray();
    ASSERT_EQ(simple.size(), session.survey.QuestionCount);
    for (const QJsonValue& each : simple)
        ExpectBlock(rig, each["Qno"_L1].toInt(), 0, each["Counts"_L1].toObject());

    const QJsonArray crosses = totals["cross"_L1].toArray();
    ASSERT_FALSE(crosses.isEmpty());
    for (const QJsonValue& each : crosses) {
        const int q = each["Qno"_L1].toInt();
        const int cross = each["CrossQno"_L1].toInt();
        TotalOption option = TableOf(q, q);
        SetCrossQuestion(option, session.survey, cross);
        rig.sheet.DoTotal(option);
        for (int L = 0; L < option.LimitCount; ++L) {
            const QString choice = QString::number((L + 1) % option.LimitCount);
            ExpectBlock(rig, q, L, each["Counts"_L1][choice].toObject());
        }
    }

    const QJsonArray limited = totals["limited"_L1].toArray();
    ASSERT_FALSE(limited.isEmpty());
    for (const QJsonValue& each : limited) {
        const int q = each["Qno"_L1].toInt();
        TotalOption option = TableOf(q, q);
        int line = 0;
        for (const QJsonValue& pair : each["Limit"_L1].toArray())
            option.Limits(++line, 0) = {static_cast<qint16>(pair[0].toInt()), static_cast<qint16>(pair[1].toInt())};
        rig.sheet.DoTotal(option);
        ExpectBlock(rig, q, 0, each["Counts"_L1].toObject());
    }
}

TEST_F(GssTotals, EssayListsGoOnUntilEveryAnswerIsListed) {
    const QJsonArray essays = totals["essay"_L1].toArray();
    ASSERT_FALSE(essays.isEmpty());
    for (const QJsonValue& each : essays) {
        TotalOption option = TableOf(each["Qno"_L1].toInt(), 0);
        option.TotalKind = kEssayList;
        option.CrossQno = session.survey.Questions[option.FromQno].ChoiceCount;
        option.CrossMode = kEssayFilled;
        SheetRig rig(session.survey);
        double sum = 0;
        qsizetype rows = 0;
        do {
            rig.sheet.DoTotal(option);
            sum += rig.sheet.EssaySum;
            rows += static_cast<qsizetype>(rig.sheet.EssayRows.size());
            ASSERT_LE(rig.sheet.EssayRows.size(), 9999u);
        } while (rig.sheet.HasNext);
        EXPECT_EQ(rows, each["Answers"_L1].toInt());
        EXPECT_NEAR(sum / static_cast<double>(rows), each["Mean"_L1].toDouble(), 0.0001);
        EXPECT_EQ(rig.ui.transcript.size(), rows / 9990);
    }
}

}  // namespace quibra
