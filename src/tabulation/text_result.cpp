#include "tabulation/text_result.h"

#include "core/code_page.h"

using namespace Qt::StringLiterals;

namespace quibra {

QByteArray WriteText(const QString& caption, const ResultGrid& grid) {
    const QString cells = ClipText(grid.Dump(0, ResultGrid::kFixedRows, grid.Columns() - 1, grid.Rows() - 1));
    return EncodeCodePage(caption + u"\r\n"_s + cells + u"\r\n"_s);
}

}  // namespace quibra
