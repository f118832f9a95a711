// Results, held to figures counted elsewhere and to a plain count over the dumped samples.
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include "cli/cli_run.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

const QString kGss = TestDataPath(u"gss.qb"_s);
const QString kResidents = SourcePath(u"data/samples/residents.qb"_s);

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

TEST_F(CliTest, JsonOfATableTellsItsCells) {
    const QStringList two = {u"total"_s, kResidents, u"--to"_s, u"2"_s, u"--cross"_s, u"3"_s};
    const QJsonObject json = Json(two + QStringList{u"--format=json"_s});
    const QList<QStringList> cells = Cells(two + QStringList{u"--show=counts"_s, u"--no-space"_s});
    ASSERT_EQ(json[u"Blocks"_s].toArray().size(), 2);
    qsizetype top = 0;
    for (const QJsonValue& block : json[u"Blocks"_s].toArray()) {
        EXPECT_EQ(block[u"Label"_s].toString(), cells[top][0]);
        const QJsonArray limits = block[u"Limits"_s].toArray();
        ASSERT_EQ(limits.size(), 9);
        const qsizetype rowCount = limits[0][u"Rows"_s].toArray().size();
        for (int column = 0; column < 9; ++column) {
            for (qsizetype row = 0; row < rowCount; ++row) {
                const QJsonValue told = limits[column][u"Rows"_s][row];
                EXPECT_EQ(told[u"Text"_s].toString(), cells[top + 3 + row][0]);
                EXPECT_EQ(QString::number(told[u"Count"_s].toInt()), cells[top + 3 + row][column + 1]);
            }
            EXPECT_EQ(QString::number(limits[column][u"Persons"_s].toInt()), cells[top + 3 + rowCount][column + 1]);
        }
        top += rowCount + 5;
    }
}

TEST_F(CliTest, EssaysAreThoseOfAPlainSearch) {
    const QJsonArray samples = Json({u"dump"_s, kResidents})[u"Samples"_s].toArray();
    using Passes = std::function<bool(int choice, const QString& text, int position)>;
    const struct {
        QStringList words;
        int slot;  // the first text slot of the question
        Passes passes;
    } cases[] = {
        {{u"32"_s, u"--text"_s, u"バス"_s}, 43, [](int, const QString& text, int) { return text.contains(u"バス"_s); }},
        {{u"32"_s, u"--filled"_s}, 43, [](int, const QString& text, int) { return !text.isEmpty(); }},
        {{u"32"_s, u"--empty"_s, u"--choice"_s, u"2"_s},
         43,
         [](int choice, const QString&, int) { return choice == 2; }},
        {{u"7"_s, u"--number"_s, u"60"_s, u"90"_s},
         5,
         [](int, const QString& text, int) { return text.toInt() >= 60 && text.toInt() <= 90; }},
        {{u"8"_s, u"--code"_s, u"301"_s, u"399"_s},
         6,
         [](int, const QString& text, int) { return text >= u"301"_s && text < u"4"_s; }},
        {{u"12"_s, u"--rank"_s, u"1"_s}, 10, [](int, const QString&, int position) { return position == 0; }},
    };
    for (const auto& [words, slot, passes] : cases) {
        QStringList found;
        for (const QJsonValue& sample : samples) {
            const QJsonArray answers = sample[u"Answers"_s][words[0].toInt() - 1].toArray();
            for (int i = 0; i < answers.size(); ++i) {
                const QString text = sample[u"Essays"_s][QString::number(slot + i)].toString();
                if (passes(answers[i].toInt(), text, i))
                    found += QString::number(sample[u"IDno"_s].toInt()) + u' ' + text;
            }
        }
        QStringList listed;
        const QList<QStringList> cells = Cells(QStringList{u"essays"_s, kResidents} + words);
        for (const QStringList& row : cells.mid(3, cells.size() - 5))
            listed += row[0] + u' ' + row[2];
        EXPECT_EQ(listed, found) << words.join(u' ').toStdString();
        EXPECT_EQ(cells[cells.size() - 2][0], u"のべ%1人"_s.arg(found.size()));
    }

    const QStringList words = {u"essays"_s, kResidents, u"9"_s,     u"--where"_s, u"Q2=8 Q1=2"_s,
                               u"--ref"_s,  u"8"_s,     u"--ref"_s, u"12"_s};
    const QJsonObject json = Json(words + QStringList{u"--format=json"_s});
    double sum = 0;
    for (const QJsonValue& row : json[u"Rows"_s].toArray())
        sum += row[u"Essay"_s].toString().toDouble();
    ASSERT_GT(json[u"Count"_s].toInt(), 20);
    EXPECT_DOUBLE_EQ(json[u"Average"_s].toDouble(), sum / json[u"Count"_s].toInt());
    EXPECT_EQ(json[u"Rows"_s][0][u"Refs"_s][1].toString(), Cells(words)[3][4]);
    EXPECT_TRUE(Done(words + QStringList{u"--format=html"_s}).startsWith("<html>"));
    // Without a look at the answers there is a row for each sample that the condition lets through.
    const QStringList women = Cells({u"total"_s, kResidents, u"--from=9"_s, u"--where=Q2=8 Q1=2"_s})[5];
    EXPECT_EQ(Cells({u"essays"_s, kResidents, u"9"_s, u"--none"_s, u"--where=Q2=8 Q1=2"_s}).size(),
              women[1].toInt() + 5);
}

TEST_F(CliTest, EssaysBeyondTheGridGoOnFromWhereTheyStopped) {
    for (const QJsonValue& counted : CountedElsewhere()[u"essay"_s].toArray()) {
        QSet<int> ids;
        double sum = 0;
        int rows = 0;
        for (int from = 0; from >= 0;) {
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
            if (from < 0)
                EXPECT_EQ(run.err, QString());
            else
                EXPECT_TRUE(run.err.endsWith(u"続きは --from-dno %1 で表示します。\n"_s.arg(from)))
                    << run.err.toStdString();
        }
        EXPECT_EQ(rows, counted[u"Answers"_s].toInt());
        EXPECT_EQ(ids.size(), rows);
        EXPECT_NEAR(sum / rows, counted[u"Mean"_s].toDouble(), 0.00005);
    }
}

}  // namespace quibra
