#include "tabulation/sheet_rig.h"

using namespace Qt::StringLiterals;

namespace quibra {

void RecordingMonitor::Started() {
    running = true;
    cancelled_ = false;
    reports = 0;
    percents.clear();
}

void RecordingMonitor::ShowPass(int q, int toQno, int L, int limitCount) {
    lastPass = PassText(q, toQno, L, limitCount);
}

void RecordingMonitor::ShowPercent(qint32 done, qint32 of) {
    percents << PercentOf(done, of);
    if (++reports == cancelAtReport) cancelled_ = true;
}

QStringList SheetRig::Row(int row) const {
    QStringList cells;
    for (int column = 0; column < sheet.grid.Columns(); ++column)
        cells << sheet.grid.Text(column, row);
    return cells;
}

QStringList SheetRig::Rows(int from, int to) const {
    QStringList rows;
    for (int row = from; row <= to; ++row)
        rows << Row(row).join(u'|');
    return rows;
}

SurveyBuilder FruitSurvey() {
    SurveyBuilder builder;
    const int fruit = builder.Question(u"果物"_s, u"どちらが好きですか"_s, 1, {u"りんご"_s, u"みかん"_s});
    const int sex = builder.Question(u"性別"_s, u"性別は"_s, 1, {u"男"_s, u"女"_s});
    const int places = builder.Question(u"店"_s, u"どの店で"_s, 2, {u"回数"_s, u"店番"_s, u"その他"_s, u"買わない"_s});
    builder.Status(places, 1, {kEssay, kNumber});
    builder.Status(places, 2, {kEssay, kCode});
    builder.Status(places, 3, {kEssay, kOther});
    builder.QuestionLimit(places, {SurveyBuilder::Line(3, fruit, 1), SurveyBuilder::Line(1, fruit, 2)});
    builder.PreLimit(3, {SurveyBuilder::Line(3, sex, 2)});
    builder.PreLimit(5, {SurveyBuilder::Line(3, fruit, 1), SurveyBuilder::Line(4, sex, 1)});
    using G = GivenAnswer;
    builder.Sample({{1}, {1}, {G(1, u"12"_s), G(2, u"Ab:青果"_s)}});
    builder.Sample({{1}, {2}, {G(2, u"ac:果物屋"_s)}});
    builder.Sample({{1}, {2}, {G(3, u"畑で\t買う"_s), G(1, u"3.5"_s)}});
    builder.Sample({{2}, {1}, {G(1, u"0"_s)}});
    builder.Sample({{2}, {}, {G(1, u"なし"_s), G(2, u"無番"_s)}});
    builder.Sample({{1}, {1}, {4}});
    builder.Sample({{}, {2}, {G(1, u"99"_s)}});
    builder.Sample({{1}, {2}, {G(1)}});
    builder.Sample({{2}, {1}, {G(3, u"畑"_s), G(4)}});
    builder.Sample({{1}, {1}, {}});
    return builder;
}

TotalOption TableOf(int fromQno, int toQno, int rank) {
    TotalOption option;
    option.FromQno = static_cast<qint16>(fromQno);
    option.ToQno = static_cast<qint16>(toQno);
    option.Rank = static_cast<qint16>(rank);
    return option;
}

}  // namespace quibra
