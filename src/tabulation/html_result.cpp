#include "tabulation/html_result.h"

#include "core/bounded_array.h"
#include "core/code_page.h"
#include "tabulation/table_figures.h"
#include "tabulation/total_sheet.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// What survey and respondents say is text, whatever it looks like.
QString Escaped(QString text) {
    return text.replace(u'&', u"&amp;"_s).replace(u'<', u"&lt;"_s).replace(u'>', u"&gt;"_s);
}

class HtmlPage {
  public:
    HtmlPage(const Survey& survey, const TotalResult& result, const TotalView& view, const ResultGrid& grid)
        : survey_(survey), result_(result), view_(view), grid_(grid) {}

    QString Write() {
        Line(u"<html>"_s);
        Line(u"<head>"_s);
        Line(u"<meta http-equiv=\"Content-Type\" content=\"text/html; charset=x-sjis\">"_s);
        Line(u"<title>"_s + Escaped(survey_.Title) + u"</title>"_s);
        Line(u"</head> "_s);
        Line(u"<body>"_s);
        if (result_.option.TotalKind == kTable) {
            for (int q = result_.option.FromQno; q <= result_.option.ToQno; ++q)
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

    void OpenTable(int q) { Line(u"<H2>"_s + Escaped(BlockHeading(survey_, result_, q)) + u"</H2>"_s); }

    void WriteBlock(int q) {
        const int limitCount = result_.option.LimitCount;
        const bool both = view_.percent == TotalView::CountsAndPercent;
        OpenTable(q);
        Line(u"<TABLE BORDER=\"1\">"_s);
        Line(HeadCell(u"[全体の限定]"_s) + u"<TD COLSPAN=\"2\" width=200>"_s + Escaped(result_.ExLimitText) +
             u"</TD></TR>"_s);
        QString limits = HeadCell(u"[個別の限定]"_s);
        std::vector<std::vector<BlockRow>> columns;
        CheckSubscript(limitCount, static_cast<int>(result_.LimitTexts.size()) + 1);  // fewer when a total broke off
        for (int L = 0; L < limitCount; ++L) {
            limits += both ? u"<TD COLSPAN=\"2\" width=200>"_s : u"<TD width=100>"_s;
            limits += Escaped(result_.LimitTexts.at(L)) + u"</TD>"_s;
            columns.push_back(BlockRows(survey_, result_, q, L));
        }
        Line(limits);
        // Rows bear the labels of the first limit, also where sorting gives other limits another order.
        const int rowCount = survey_.Questions[q].ChoiceCount + 1;
        for (int i = 0; i < rowCount; ++i) {
            QString line = HeadCell(Escaped(RowLabel(survey_, result_, 0, q, i)));
            for (const std::vector<BlockRow>& column : columns) {
                if (view_.ShowsCounts()) line += FigureCell(QString::number(column[static_cast<size_t>(i)].Figure));
                if (view_.ShowsPercent()) line += FigureCell(PercentText(column[static_cast<size_t>(i)].Share));
            }
            Line(line + u"</TR>"_s);
        }
        Line(u"</TABLE>"_s);
        Line(u"<BR>"_s);
    }

    static QString HeadCell(const QString& text) { return u"<TR><TH ALIGN=\"left\">"_s + Escaped(text) + u"</TH>"_s; }
    static QString FigureCell(const QString& text) { return u"<TD ALIGN=\"right\">"_s + text + u"</TD>"_s; }

    void WriteEssays() {
        const int lastColumn = static_cast<int>(result_.RefQno.size()) + 2;
        OpenTable(result_.option.FromQno);
        Line(Escaped(result_.ExLimitText) + u"<BR>"_s);
        Line(u"<TABLE BORDER=\"1\">"_s);
        for (int row = kEssayHeadRow; row < grid_.Rows(); ++row) {
            QString line = u"<TR><TH ALIGN=\"right\">"_s + Escaped(grid_.Text(0, row)) + u"</TH>"_s;
            for (int column = 1; column <= lastColumn; ++column)
                line += u"<TH ALIGN=\"center\">"_s + Escaped(grid_.Text(column, row)) + u"</TH>"_s;
            Line(line + u"</TR>"_s);
        }
        Line(u"</TABLE>"_s);
        Line(u"<BR>"_s);
    }

    const Survey& survey_;
    const TotalResult& result_;
    const TotalView& view_;
    const ResultGrid& grid_;
    QString page_;
};

}  // namespace

QByteArray WriteHtml(const Survey& survey, const TotalResult& result, const TotalView& view, const ResultGrid& grid) {
    return EncodeCodePage(HtmlPage(survey, result, view, grid).Write());
}

}  // namespace quibra
