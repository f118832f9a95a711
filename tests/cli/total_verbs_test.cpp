// Results: total and essays, held to figures counted elsewhere and to a plain count over the dumped samples.
#include <QJsonArray>
#include <QSet>

#include "cli/cli_run.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

int CountOf(const QJsonObject& counts, int c) {
    return counts[QString::number(c)].toInt();
}

// The row of choice c in a block that starts at `top`, rows in the order 1, 2, ..., 0.
int RowOf(int top, int c, int choiceCount) {
    return top + 3 + (c == 0 ? choiceCount - 1 : c - 1);
}

}  // namespace

TEST_F(CliTest, TotalsShowTheFiguresCountedElsewhere) {
    const QString file = TestDataPath(u"gss.qb"_s);
    const QJsonArray questions = JsonOf(Done({u"dump"_s, u"--no-samples"_s, file}))[u"Questions"_s].toArray();
    const QJsonObject counted = JsonOf(TestData(u"gss-totals.json"_s));

    const QList<QStringList> cells = Cells(Done({u"total"_s, file}));
    int top = 0;
    for (const QJsonValue& simple : counted[u"simple"_s].toArray()) {
        const int choiceCount = questions[simple[u"Qno"_s].toInt()][u"ChoiceCount"_s].toInt();
        int persons = 0;  // every question takes one answer
        for (int c = 0; c < choiceCount; ++c) {
            const int count = CountOf(simple[u"Counts"_s].toObject(), c);
            EXPECT_EQ(cells[RowOf(top, c, choiceCount)][1].toInt(), count);
            persons += count;
        }
        EXPECT_EQ(cells[top + 3 + choiceCount].mid(0, 2), (QStringList{u"[人数]"_s, QString::number(persons)}));
        top += choiceCount + 5;
    }
    EXPECT_EQ(cells.size(), top + 1);  // a line feed ends the last row

    for (const QJsonValue& cross : counted[u"cross"_s].toArray()) {
        const int q = cross[u"Qno"_s].toInt();
        const int x = cross[u"CrossQno"_s].toInt();
        const QStringList words = {
            u"total"_s,      file,        u"--from"_s, QString::number(q + 1), u"--cross"_s, QString::number(x + 1),
            u"--no-space"_s, u"--show"_s, u"counts"_s};
        const QList<QStringList> table = Cells(Done(words));
        const int choiceCount = questions[q][u"ChoiceCount"_s].toInt();
        const int columns = questions[x][u"ChoiceCount"_s].toInt();
        for (int column = 0; column < columns; ++column) {
            const QJsonObject counts = cross[u"Counts"_s][QString::number(column)].toObject();
            for (int c = 0; c < choiceCount; ++c)
                EXPECT_EQ(table[RowOf(0, c, choiceCount)][column == 0 ? columns : column].toInt(), CountOf(counts, c))
                    << q << " by " << x << ": " << column << ", " << c;
        }
    }

    // Q4 is 3 and Q2 not 3, in the notation and as the only column of an option file, packed.
    const QJsonObject limited = counted[u"limited"_s][0].toObject();
    const QStringList base = {u"total"_s, file, u"--from"_s, QString::number(limited[u"Qno"_s].toInt() + 1),
                              u"--show=counts"_s};
    const QList<QStringList> where = Cells(Done(base + QStringList{u"--where"_s, u"Q4=3 -Q2=3"_s}));
    EXPECT_EQ(Done(base + QStringList{u"--where=Q4=3 -Q2=3"_s}),
              Done(base + QStringList{u"--where"_s, u"Q4=3 -Q2=3"_s}));
    const QList<QStringList> column = Cells(Done(base + QStringList{u"--column"_s, u"Q4=3 -Q2=3"_s}));
    for (int c = 0; c < 10; ++c) {
        EXPECT_EQ(where[RowOf(0, c, 10)][1].toInt(), CountOf(limited[u"Counts"_s].toObject(), c));
        EXPECT_EQ(column[RowOf(0, c, 10)][1], where[RowOf(0, c, 10)][1]);
    }
    EXPECT_NE(Done(base + QStringList{u"--where=-Q2=3"_s}), Done(base + QStringList{u"--where=Q2=3"_s}));
    EXPECT_EQ(Done(base + QStringList{u"--where=-Q2=3"_s}), Done(base + QStringList{u"--where"_s, u"-Q2=3"_s}));
}

TEST_F(CliTest, TableIsPrintedCellByCellInEveryFormat) {
    const QString file = SamplePath(u"residents.qb"_s);
    // Questions under a condition count only those it lets through; the base of the shares is theirs.
    EXPECT_EQ(
        QString::fromUtf8(Done({u"total"_s, file, u"--from"_s, u"20"_s, u"--cross"_s, u"1"_s, u"--show=counts"_s})),
        QString::fromUtf8(FileBytes(QStringLiteral(QUIBRA_SOURCE_DIR) + u"/tests/cli/golden/library_by_sex.txt"_s)));
    const QByteArray csv = Done({u"total"_s, file, u"--from"_s, u"27"_s, u"--rank"_s, u"1"_s, u"--sort"_s,
                                 u"--predefined"_s, u"--show=percent"_s, u"--no-space"_s, u"--format=csv"_s});
    EXPECT_EQ(QString::fromUtf8(csv), QString::fromUtf8(FileBytes(QStringLiteral(QUIBRA_SOURCE_DIR) +
                                                                  u"/tests/cli/golden/first_priority.csv"_s)));

    const QStringList two = {u"total"_s, file, u"--to"_s, u"2"_s, u"--cross"_s, u"3"_s};
    const QJsonObject json = JsonOf(Done(two + QStringList{u"--format=json"_s}));
    const QList<QStringList> cells = Cells(Done(two + QStringList{u"--show=counts"_s, u"--no-space"_s}));
    ASSERT_EQ(json[u"Blocks"_s].toArray().size(), 2);
    EXPECT_EQ(json[u"ExLimitText"_s].toString(), u"条件なし"_s);
    int top = 0;
    for (const QJsonValue& block : json[u"Blocks"_s].toArray()) {
        EXPECT_EQ(block[u"Label"_s].toString(), cells[top][0]);
        const QJsonArray limits = block[u"Limits"_s].toArray();
        ASSERT_EQ(limits.size(), 9);
        for (int column = 0; column < 9; ++column) {
            const QJsonArray rows = limits[column][u"Rows"_s].toArray();
            for (int row = 0; row < rows.size(); ++row) {
                EXPECT_EQ(rows[row][u"Text"_s].toString(), cells[top + 3 + row][0]);
                EXPECT_EQ(QString::number(rows[row][u"Count"_s].toInt()), cells[top + 3 + row][column + 1]);
            }
            EXPECT_EQ(QString::number(limits[column][u"Persons"_s].toInt()),
                      cells[top + 3 + int(rows.size())][column + 1]);
        }
        top += int(limits[0][u"Rows"_s].toArray().size()) + 5;
    }
    const QByteArray html = Done(two + QStringList{u"--format=html"_s});
    EXPECT_TRUE(html.startsWith("<html>\r\n")) << html.left(40).toStdString();
    EXPECT_TRUE(html.contains("\x92\x6A\x90\xAB"));  // 男性 in code page 932
    EXPECT_TRUE(html.contains(u">%1<"_s.arg(cells[3][1]).toLatin1())) << html.left(400).toStdString();
}

TEST_F(CliTest, OptionFileHoldsAWholeTotal) {
    const QString file = SamplePath(u"residents.qb"_s);
    QJsonArray limits = {QJsonObject{{u"Mask"_s, 0}, {u"Lines"_s, QJsonArray{QJsonArray{3, 1}}}}};
    QStringList words = {u"total"_s, file, u"--from=2"_s, u"--to=3"_s, u"--where=Q1=1"_s};
    for (int column = 0; column < 128; ++column) {
        const int c = column % 8 + 1;
        limits += QJsonObject{{u"Mask"_s, 2}, {u"Lines"_s, QJsonArray{QJsonArray{3, 128 + c}}}};
        words += u"--column=P1 Q2=%1"_s.arg(c);
    }
    const QJsonObject option = {{u"FromQno"_s, 1}, {u"ToQno"_s, 2}, {u"Limits"_s, limits}, {u"LimitCount"_s, 128}};
    WriteFileBytes(Path(u"option.json"_s), QJsonDocument(option).toJson());
    const QByteArray result = Done({u"total"_s, file, u"--option"_s, u"option.json"_s, u"--sort"_s});
    EXPECT_EQ(result, Done(words + QStringList{u"--sort"_s}));

    EXPECT_TRUE(Refused(words + QStringList{u"--column=Q1=1"_s}, 2).contains(u"128"_s));
    WriteFileBytes(Path(u"option.json"_s), R"({"FromQno": 32})");
    EXPECT_TRUE(Refused({u"total"_s, file, u"--option=option.json"_s}).startsWith(u"option.json："_s));
    EXPECT_TRUE(
        Refused({u"total"_s, file, u"--option=option.json"_s, u"--rank=1"_s}, 2).contains(u"--option --rank"_s));
    EXPECT_EQ(Refused({u"total"_s, file, u"--option=none.json"_s}), u"none.jsonが見つかりません\n"_s);
}

TEST_F(CliTest, EssaysAreThoseOfAPlainSearch) {
    const QString file = SamplePath(u"residents.qb"_s);
    const QJsonArray samples = JsonOf(Done({u"dump"_s, file}))[u"Samples"_s].toArray();
    // The rows "ID, text" of question q (its first text slot given) whose text passes.
    const auto search = [&](int q, int slot, const auto& passes) {
        QStringList rows;
        for (const QJsonValue& sample : samples) {
            const QJsonArray answers = sample[u"Answers"_s][q].toArray();
            for (int i = 0; i < answers.size(); ++i) {
                const QString text = sample[u"Essays"_s][QString::number(slot + i)].toString();
                if (passes(answers[i].toInt(), text)) rows += QString::number(sample[u"IDno"_s].toInt()) + u' ' + text;
            }
        }
        return rows;
    };
    const auto listed = [&](const QStringList& words) {
        QStringList rows;
        const QList<QStringList> cells = Cells(Done(QStringList{u"essays"_s, file} + words));
        for (int row = 3; row < cells.size() - 2; ++row)
            rows += cells[row][0] + u' ' + cells[row][2];
        EXPECT_EQ(cells[cells.size() - 2][0], u"のべ%1人"_s.arg(rows.size()));
        return rows;
    };
    const int opinion = 43;  // the last text slot
    EXPECT_EQ(listed({u"32"_s, u"--text"_s, u"バス"_s}),
              search(31, opinion, [](int, const QString& text) { return text.contains(u"バス"_s); }));
    EXPECT_EQ(listed({u"32"_s, u"--filled"_s}),
              search(31, opinion, [](int, const QString& text) { return !text.isEmpty(); }));
    EXPECT_EQ(listed({u"32"_s, u"--empty"_s, u"--choice"_s, u"2"_s}),
              search(31, opinion, [](int c, const QString&) { return c == 2; }));
    EXPECT_EQ(listed({u"7"_s, u"--number"_s, u"60"_s, u"90"_s}),
              search(6, 5, [](int, const QString& text) { return text.toInt() >= 60 && text.toInt() <= 90; }));
    EXPECT_EQ(listed({u"8"_s, u"--code"_s, u"301"_s, u"399"_s}),
              search(7, 6, [](int, const QString& text) { return text >= u"301"_s && text < u"4"_s; }));
    EXPECT_EQ(
        listed({u"12"_s, u"--rank"_s, u"1"_s}).size(),
        search(11, 10, [](int, const QString&) { return true; }).size() - [&] {
            int later = 0;
            for (const QJsonValue& s : samples)
                later += std::max(0, int(s[u"Answers"_s][11].toArray().size()) - 1);
            return later;
        }());

    const QStringList words = {u"essays"_s, file,   u"9"_s,     u"--where"_s, u"Q2=8 Q1=2"_s,
                               u"--ref"_s,  u"8"_s, u"--ref"_s, u"12"_s};
    const QJsonObject json = JsonOf(Done(words + QStringList{u"--format=json"_s}));
    const QList<QStringList> cells = Cells(Done(words));
    double sum = 0;
    for (const QJsonValue& row : json[u"Rows"_s].toArray())
        sum += row[u"Essay"_s].toString().toDouble();
    ASSERT_GT(json[u"Count"_s].toInt(), 20);
    EXPECT_DOUBLE_EQ(json[u"Average"_s].toDouble(), sum / json[u"Count"_s].toInt());
    EXPECT_EQ(json[u"Rows"_s][0][u"Refs"_s].toArray().size(), 2);
    EXPECT_EQ(json[u"Rows"_s][0][u"Refs"_s][1].toString(), cells[3][4]);
    EXPECT_TRUE(Done(words + QStringList{u"--format=html"_s}).startsWith("<html>"));
    // Without a look at the answers there is a row for each sample that the condition lets through.
    const int women = Cells(Done({u"total"_s, file, u"--from=9"_s, u"--where=Q2=8 Q1=2"_s}))[5][1].toInt();
    EXPECT_EQ(listed({u"9"_s, u"--none"_s, u"--where=Q2=8 Q1=2"_s}).size(), women);
}

TEST_F(CliTest, EssaysBeyondTheGridGoOnFromWhereTheyStopped) {
    const QString file = TestDataPath(u"gss.qb"_s);
    const QJsonObject counted = JsonOf(TestData(u"gss-totals.json"_s))[u"essay"_s][0].toObject();
    QSet<int> ids;
    double sum = 0;
    int rows = 0;
    int from = 0;
    for (int part = 0; part < 3; ++part) {
        const CliRun run = Cli({u"essays"_s, file, u"3"_s, u"--from-dno"_s, QString::number(from), u"--format=json"_s});
        EXPECT_EQ(run.status, 0);
        const QJsonObject json = JsonOf(run.out);
        for (const QJsonValue& row : json[u"Rows"_s].toArray()) {
            ids += row[u"IDno"_s].toInt();
            sum += row[u"Essay"_s].toString().toDouble();
            ++rows;
        }
        from = json[u"NextDno"_s].toInt();
        if (part < 2) {
            EXPECT_TRUE(run.err.endsWith(u"続きは --from-dno %1 で表示します。\n"_s.arg(from)))
                << run.err.toStdString();
            EXPECT_EQ(json[u"Rows"_s].toArray().size(), 9994);
        } else {
            EXPECT_EQ(run.err, u""_s);
        }
    }
    EXPECT_EQ(rows, counted[u"Answers"_s].toInt());
    EXPECT_EQ(ids.size(), rows);
    EXPECT_NEAR(sum / rows, counted[u"Mean"_s].toDouble(), 0.00005);
}

}  // namespace quibra
