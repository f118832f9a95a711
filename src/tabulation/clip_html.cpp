#include "tabulation/clip_html.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// A row that heads figures: its texts stand over the empty cells behind them.
bool IsHeading(const TotalSheet& sheet, int row) {
    const TotalResult& result = sheet.result;
    if (result.option.TotalKind != kTable) return row < kEssayHeadRow;
    for (int q = result.option.FromQno; q <= result.option.ToQno; ++q) {
        const int inBlock = row - result.RowStart[q];
        if (inBlock >= 0 && inBlock <= kLimitRow) return true;
    }
    return false;
}

bool IsFigure(const QString& text) {
    static const QRegularExpression kFigure(u"^-?[0-9]+(\\.[0-9]+)?%?$"_s);
    return kFigure.match(text).hasMatch();
}

}  // namespace

QString ClipHtml(const TotalSheet& sheet, int column1, int row1, int column2, int row2) {
    const ResultGrid& grid = sheet.grid;
    const bool isTable = sheet.result.option.TotalKind == kTable;
    QString html =
        u"<html><head><meta http-equiv=\"content-type\" content=\"text/html; charset=utf-8\"></head><body>"_s
        u"<table border=\"1\" style=\"border-collapse:collapse\">\n"_s;
    for (int row = row1; row <= row2; ++row) {
        const bool isHeading = IsHeading(sheet, row);
        html += u"<tr>"_s;
        for (int column = column1; column <= column2; ++column) {
            const QString& text = grid.Text(column, row);
            int span = 1;
            while (isHeading && !text.isEmpty() && column + span <= column2 && grid.Text(column + span, row).isEmpty())
                ++span;
            QString cell = u"<td"_s;
            if (span > 1) cell += u" colspan=\"%1\""_s.arg(span);
            if (!isHeading && IsFigure(text) && (isTable || column == 0))
                cell += u" align=\"right\""_s;
            else if (!isTable)
                cell += u" style=\"mso-number-format:'\\@'\""_s;  // a text stays one, even if it reads like a date
            html += cell + u'>' +
                    (isHeading && !text.isEmpty() ? u"<b>"_s + text.toHtmlEscaped() + u"</b>"_s : text.toHtmlEscaped());
            html += u"</td>"_s;
            column += span - 1;
        }
        html += u"</tr>\n"_s;
    }
    return html + u"</table></body></html>"_s;
}

}  // namespace quibra
