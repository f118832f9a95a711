#include "tabulation/html_result.h"

#include "core/bounded_array.h"
#include "core/code_page.h"
#include "tabulation/table_figures.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// Texts of the survey go into the page as they are, markup included: a title may be made bold.
class HtmlPage {
  public:
    HtmlPage(const Survey& survey, const TotalSheet& sheet) : survey_(survey), sheet_(sheet) {}

    QString Write() {
        Line(u"<html>"_s);
        Line(u"<head>"_s);
        Line(u"<meta http-equiv=\"Content-Type\" content=\"text/html; charset=x-sjis\">"_s);
        Line(u"<title>"_s + survey_.Title + u"</title>"_s);
        Line(u"</head> "_s);
        Line(u"<body>"_s);
        if (sheet_.option.TotalKind == kTable) {
            for (int q = sheet_.option.FromQno; q <= sheet_.option.ToQno; ++q)
                WriteBlock(q);
        } else {
            WriteEssays();
        }
        Line(u"</form>"_s);  // no form is open; readers of these pages have always found it here
        Line(u"</body>"_s);
        Line(u"</html>"_s);
        return page_;
    }

  private:
    void Line(const QString& text) { page_ += text + u"\r\n"_s; }

    void OpenTable(int q) { Line(u"<H2>"_s + sheet_.BlockHeading(q) + u"</H2>"_s); }

    void WriteBlock(int q) {
        const int limitCount = sheet_.option.LimitCount;
        const bool both = sheet_.view.percent == TotalView::CountsAndPercent;
        OpenTable(q);
        Line(u"<TABLE BORDER=\"1\">"_s);
        Line(HeadCell(u"[全体の限定]"_s) + u"<TD COLSPAN=\"2\" width=200>"_s + sheet_.ExLimitText + u"</TD></TR>"_s);
        QString limits = HeadCell(u"[個別の限定]"_s);
        std::vector<std::vector<TotalSheet::BlockRow>> columns;
        CheckSubscript(limitCount, static_cast<int>(sheet_.LimitTexts.size()) + 1);  // fewer when a total broke off
        for (int L = 0; L < limitCount; ++L) {
            limits += both ? u"<TD COLSPAN=\"2\" width=200>"_s : u"<TD width=100>"_s;
            limits += sheet_.LimitTexts.at(L) + u"</TD>"_s;
            columns.push_back(sheet_.Block(q, L));
        }
        Line(limits);
        // Rows bear the labels of the first limit, also where sorting gives other limits another order.
        const int rowCount = survey_.Questions[q].ChoiceCount + 1;
        for (int i = 0; i < rowCount; ++i) {
            QString line = HeadCell(sheet_.RowLabel(0, q, i));
            for (const std::vector<TotalSheet::BlockRow>& column : columns) {
                if (sheet_.view.ShowsCounts())
                    line += FigureCell(QString::number(column[static_cast<size_t>(i)].Figure));
                if (sheet_.view.ShowsPercent()) line += FigureCell(PercentText(column[static_cast<size_t>(i)].Share));
            }
            Line(line + u"</TR>"_s);
        }
        Line(u"</TABLE>"_s);
        Line(u"<BR>"_s);
    }

    static QString HeadCell(const QString& text) { return u"<TR><TH ALIGN=\"left\">"_s + text + u"</TH>"_s; }
    static QString FigureCell(const QString& text) { return u"<TD ALIGN=\"right\">"_s + text + u"</TD>"_s; }

    void WriteEssays() {
        const ResultGrid& grid = sheet_.grid;
        const int lastColumn = static_cast<int>(sheet_.RefQno.size()) + 2;
        OpenTable(sheet_.option.FromQno);
        Line(sheet_.ExLimitText + u"<BR>"_s);
        Line(u"<TABLE BORDER=\"1\">"_s);
        for (int row = kEssayHeadRow; row < grid.Rows(); ++row) {
            QString line = u"<TR><TH ALIGN=\"right\">"_s + grid.Text(0, row) + u"</TH>"_s;
            for (int column = 1; column <= lastColumn; ++column)
                line += u"<TH ALIGN=\"center\">"_s + grid.Text(column, row) + u"</TH>"_s;
            Line(line + u"</TR>"_s);
        }
        Line(u"</TABLE>"_s);
        Line(u"<BR>"_s);
    }

    const Survey& survey_;
    const TotalSheet& sheet_;
    QString page_;
};

}  // namespace

QByteArray WriteHtml(const Survey& survey, const TotalSheet& sheet) {
    return EncodeCodePage(HtmlPage(survey, sheet).Write());
}

}  // namespace quibra
