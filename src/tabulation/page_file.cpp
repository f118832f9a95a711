#include "tabulation/page_file.h"

#include <nlohmann/json.hpp>

#include "core/binary_file.h"
#include "core/numbers.h"
#include "core/survey_format.h"
#include "core/survey_reader.h"
#include "core/survey_writer.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kLinesOfLimit = 16;
constexpr qint16 kPercentFlags = 3;
constexpr qint16 kSortFlag = 4;
constexpr qint16 kSpaceFlag = 8;

// The fields in front of the conditions.
struct PageHead {
    QString title;
    bool isEssayList = false;
    QString caption;
    qint16 FromQno = 0;
    qint16 ToQno = 0;
    qint16 ViewFlags = 0;
    bool Rough = false;
    qint16 Rank = 0;
    qint16 LimitCount = 0;
};

PageHead ReadHead(ByteReader& in) {
    PageHead head;
    head.title = ReadDoubleLen(in);
    head.isEssayList = in.Int16() != 0;
    head.caption = ReadDoubleLen(in);
    head.FromQno = in.Int16();
    head.ToQno = in.Int16();
    head.ViewFlags = in.Int16();
    head.Rough = in.Int16() == 1;
    head.Rank = in.Int16();
    head.LimitCount = in.Int16();
    return head;
}

void WriteColumn(ByteWriter& out, LimitColumn column) {
    for (const LimitLine& line : column) {
        out.Int16(line.a);
        out.Int16(line.b);
    }
}

void ReadColumn(ByteReader& in, std::span<LimitLine, kLinesOfLimit> column) {
    for (LimitLine& line : column) {
        line.a = in.Int16();
        line.b = in.Int16();
    }
}

[[noreturn]] void RefuseValue(const char16_t* field, int value) {
    throw RuntimeError(kErrorSubscript,
                       u"集計結果ファイルの%1が正しくありません（%2）。"_s.arg(QStringView(field)).arg(value));
}

void CheckRange(const char16_t* field, int value, int low, int high) {
    if (value < low || value > high) RefuseValue(field, value);
}

TotalView ViewOf(qint16 flags) {
    TotalView view;
    view.percent = (flags & kPercentFlags) == 1   ? TotalView::CountsOnly
                   : (flags & kPercentFlags) == 2 ? TotalView::PercentOnly
                                                  : TotalView::CountsAndPercent;
    view.sort = flags & kSortFlag;
    view.space = flags & kSpaceFlag;
    return view;
}

void WriteTable(ByteWriter& out, const TotalResult& result) {
    const TotalOption& option = result.option;
    for (int q = option.FromQno; q <= option.ToQno + 1; ++q)
        out.Int16(result.RowStart[q]);
    const int last = result.RowStart[option.ToQno + 1] + 1;
    for (int L = 0; L < option.LimitCount; ++L)
        for (int row = 0; row <= last; ++row) {
            out.Int16(result.RowCode(L, row));
            out.Int32(result.Counts(L, row));
        }
}

void WriteGrid(ByteWriter& out, const ResultGrid& grid) {
    out.Int16(CheckedInt16(grid.Columns()));
    out.Int16(CheckedInt16(grid.Rows()));
    for (int column = 0; column < grid.Columns(); ++column)
        out.Int32(grid.ColumnWidth(column));
    for (int row = ResultGrid::kFixedRows; row < grid.Rows(); ++row)
        out.Int32(grid.RowHeight(row));
    for (int column = 0; column < grid.Columns(); ++column)
        for (int row = ResultGrid::kFixedRows; row < grid.Rows(); ++row)
            WriteDoubleLen(out, grid.Text(column, row));
}

Json LinesJson(ByteReader& in) {
    std::array<LimitLine, kLinesOfLimit> column{};
    ReadColumn(in, column);
    Json lines = Json::array();
    for (const LimitLine& line : column)
        lines.push_back({line.a, line.b});
    return lines;
}

void DumpTable(ByteReader& in, const PageHead& head, Json& page) {
    Json rowStart = Json::array();
    int last = 0;
    for (int q = head.FromQno; q <= head.ToQno + 1; ++q) {
        last = in.Int16();
        rowStart.push_back(last);
    }
    CheckRange(u"行数", last, 0, kMaxTableRows);
    page["RowStart"] = std::move(rowStart);
    Json codes = Json::array(), counts = Json::array();
    for (int L = 0; L < head.LimitCount; ++L) {
        Json code = Json::array(), count = Json::array();
        for (int row = 0; row <= last + 1; ++row) {
            code.push_back(in.Int16());
            count.push_back(in.Int32());
        }
        codes.push_back(std::move(code));
        counts.push_back(std::move(count));
    }
    page["RowCode"] = std::move(codes);
    page["Counts"] = std::move(counts);
}

void DumpGrid(ByteReader& in, Json& page) {
    const int columns = in.Int16(), rows = in.Int16();
    page["Columns"] = columns;
    page["Rows"] = rows;
    Json widths = Json::array(), heights = Json::array(), cells = Json::array();
    for (int column = 0; column < columns; ++column)
        widths.push_back(in.Int32());
    for (int row = ResultGrid::kFixedRows; row < rows; ++row)
        heights.push_back(in.Int32());
    for (int column = 0; column < columns; ++column) {
        Json texts = Json::array();
        for (int row = ResultGrid::kFixedRows; row < rows; ++row)
            texts.push_back(ReadDoubleLen(in).toStdString());
        cells.push_back(std::move(texts));
    }
    page["ColumnWidths"] = std::move(widths);
    page["RowHeights"] = std::move(heights);
    page["Cells"] = std::move(cells);
}

}  // namespace

QByteArray WritePage(const Survey& survey, const TotalSheet& sheet, const QString& surveyPath, const QString& caption) {
    const TotalResult& result = sheet.result;
    const TotalOption& option = result.option;
    const bool isEssayList = option.TotalKind == kEssayList;
    QByteArray bytes;
    ByteWriter out(bytes);
    WriteMagic(out, kPageFile);
    WriteDoubleLen(out, surveyPath);
    WriteDoubleLen(out, survey.Title);
    out.Int16(isEssayList ? 1 : 0);
    WriteDoubleLen(out, caption);
    out.Int16(option.FromQno);
    out.Int16(option.ToQno);
    out.Int16(sheet.ViewFlags);
    out.Int16(option.Rough ? 1 : 0);
    out.Int16(option.Rank);
    out.Int16(option.LimitCount);
    for (int i = 0; i < option.LimitCount; ++i) {
        if (!isEssayList)
            WriteColumn(out, option.Limits.Column(i + 1));
        else
            out.Int16(static_cast<qint16>(
                static_cast<size_t>(i) < result.RefQno.size() ? result.RefQno[static_cast<size_t>(i)] : 0));
    }
    WriteColumn(out, option.Limits.Column(0));
    if (isEssayList)
        WriteGrid(out, sheet.grid);
    else
        WriteTable(out, result);
    out.Flush();
    return bytes;
}

void ReadPage(ByteReader& in, const Survey& survey, TotalOption& option, TotalView& view) {
    const PageHead head = ReadHead(in);
    TotalOption page = option;
    page.TotalKind = head.isEssayList ? kEssayList : kTable;
    page.Nname = head.caption;
    page.FromQno = head.FromQno;
    page.ToQno = head.ToQno;
    if (head.isEssayList) page.CrossQno = head.ToQno;
    page.Rough = head.Rough;
    page.Rank = head.Rank;
    page.LimitCount = head.LimitCount;
    const int lastQuestion = survey.QuestionCount - 1;
    CheckRange(u"最初の質問", page.FromQno, 0, lastQuestion);
    CheckRange(u"最後の質問", page.ToQno, head.isEssayList ? 0 : page.FromQno,
               head.isEssayList ? kMaxQuestions : lastQuestion);
    CheckRange(u"順位", page.Rank, 0, kMaxAnswers);
    CheckRange(u"限定条件の数", page.LimitCount, 1, kMaxLimitColumns);
    for (int L = 1; L <= page.LimitCount; ++L)
        ReadColumn(in, page.Limits.Column(L));
    ReadColumn(in, page.Limits.Column(0));
    option = page;
    view = ViewOf(head.ViewFlags);
}

QByteArray DumpPage(ByteReader& in) {
    if (ReadMagic(in) != kPageFile) throw RuntimeError(kErrorTypeMismatch, u"集計結果ファイルではありません。"_s);
    Json page;
    page["SurveyPath"] = ReadDoubleLen(in).toStdString();
    const PageHead head = ReadHead(in);
    page["Title"] = head.title.toStdString();
    page["TotalKind"] = head.isEssayList ? kEssayList : kTable;
    page["Caption"] = head.caption.toStdString();
    page["FromQno"] = head.FromQno;
    page["ToQno"] = head.ToQno;
    page["ViewFlags"] = head.ViewFlags;
    page["Rough"] = head.Rough;
    page["Rank"] = head.Rank;
    page["LimitCount"] = head.LimitCount;
    CheckRange(u"限定条件の数", head.LimitCount, 0, kMaxLimitColumns);
    Json limits = Json::array();
    for (int i = 0; i < head.LimitCount; ++i)
        limits.push_back(head.isEssayList ? Json(in.Int16()) : LinesJson(in));
    Json whole = LinesJson(in);
    if (head.isEssayList) {
        page["RefQno"] = std::move(limits);
        page["Limits"] = Json::array({std::move(whole)});
        DumpGrid(in, page);
    } else {
        limits.insert(limits.begin(), std::move(whole));
        page["Limits"] = std::move(limits);
        DumpTable(in, head, page);
    }
    return QByteArray::fromStdString(page.dump(1, ' ', false, Json::error_handler_t::replace)) + '\n';
}

QString EssayPageWarning() {
    return u"記述集計の一覧を保存しました。\r\n"_s
           u"このファイルを開くと、質問・選択肢・順位の設定を読み、今のサンプルで集計し直します。"_s
           u"形式の都合で限定条件は正しく戻りません。開いた後で全体の限定を設定し直してください。"_s;
}

}  // namespace quibra
