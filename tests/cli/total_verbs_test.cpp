// Results, held to figures counted elsewhere.
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include "cli/cli_run.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kGss = TestDataPath(u"gss.qb"_s);

QJsonObject CountedElsewhere() {
    return QJsonDocument::fromJson(TestData(u"gss-totals.json"_s)).object();
}

// A column of the block that starts at row `top`: choices 1, 2, ..., 0, then the persons, who each gave one answer.
void ExpectCounts(const QList<QStringList>& cells, qsizetype top, int column, const QJsonObject& counts, int choices) {
    int persons = 0;
    for (int c = 1; c <= choices; ++c) {
        const int count = counts[QString::number(c % choices)].toInt();
        EXPECT_EQ(cells[top + 2 + c][column], QString::number(count)) << top << ' ' << column << ' ' << c;
        persons += count;
    }
    EXPECT_EQ(cells[top + 3 + choices][column], QString::number(persons));
}

}  // namespace

TEST_F(CliTest, TotalsShowTheFiguresCountedElsewhere) {
    const QJsonObject definition = Json({u"dump"_s, u"--no-samples"_s, kGss});
    const auto choicesOf = [&](int q) { return definition[u"Questions"_s][q][u"ChoiceCount"_s].toInt(); };
    const QJsonObject counted = CountedElsewhere();

    const QList<QStringList> cells = Cells({u"total"_s, kGss});
    int top = 0;
    for (const QJsonValue& simple : counted[u"simple"_s].toArray()) {
        const int choices = choicesOf(simple[u"Qno"_s].toInt());
        ExpectCounts(cells, top, 1, simple[u"Counts"_s].toObject(), choices);
        top += choices + 5;
    }
    EXPECT_EQ(cells.size(), top + 1);  // a line feed ends the last row

    for (const QJsonValue& cross : counted[u"cross"_s].toArray()) {
        const int q = cross[u"Qno"_s].toInt();
        const int x = cross[u"CrossQno"_s].toInt();
        const QList<QStringList> table = Cells({u"total"_s, kGss, u"--from"_s, QString::number(q + 1), u"--cross"_s,
                                                QString::number(x + 1), u"--no-space"_s, u"--show"_s, u"counts"_s});
        for (int column = 1; column <= choicesOf(x); ++column)
            ExpectCounts(table, 0, column, cross[u"Counts"_s][QString::number(column % choicesOf(x))].toObject(),
                         choicesOf(q));
    }

    // Q4 is 3 and Q2 not 3.
    const QJsonValue limited = counted[u"limited"_s][0];
    for (const QString& option : {u"--where"_s, u"--column"_s})
        ExpectCounts(Cells({u"total"_s, kGss, u"--from"_s, u"6"_s, u"--show=counts"_s, option, u"Q4=3 -Q2=3"_s}), 0, 1,
                     limited[u"Counts"_s].toObject(), choicesOf(5));
}

TEST_F(CliTest, EssaysBeyondTheGridGoOnFromWhereTheyStopped) {
    for (const QJsonValue& counted : CountedElsewhere()[u"essay"_s].toArray()) {
        QSet<int> ids;
        double sum = 0;
        int rows = 0;
        for (int from = 0, part = 0; from >= 0; ++part) {
            ASSERT_LT(part, 9);
            const CliRun run = Cli({u"essays"_s, kGss, QString::number(counted[u"Qno"_s].toInt() + 1), u"--from-dno"_s,
                                    QString::number(from), u"--format=json"_s});
            const QJsonObject json = QJsonDocument::fromJson(run.out).object();
            for (const QJsonValue& row : json[u"Rows"_s].toArray()) {
                ids += row[u"IDno"_s].toInt();
                sum += row[u"Essay"_s].toString().toDouble();
                ++rows;
            }
            ASSERT_TRUE(json[u"NextDno"_s].isDouble());
            from = json[u"NextDno"_s].toInt();
            if (from < 0) {
                EXPECT_EQ(run.err, QString());
            } else {
                EXPECT_EQ(json[u"Rows"_s].toArray().size(), 9994);
                EXPECT_TRUE(run.err.endsWith(u"続きは --from-dno %1 で表示します。\n"_s.arg(from)))
                    << run.err.toStdString();
            }
        }
        EXPECT_EQ(rows, counted[u"Answers"_s].toInt());
        EXPECT_EQ(ids.size(), rows);
        EXPECT_NEAR(sum / rows, counted[u"Mean"_s].toDouble(), 0.00005);
    }
}

}  // namespace quibra
