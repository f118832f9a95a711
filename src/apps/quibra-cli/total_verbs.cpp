// total, essays and page: results of a survey.
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/result_text.h"
#include "apps/quibra-cli/total_line.h"
#include "apps/quibra-cli/verbs.h"
#include "core/binary_file.h"
#include "core/survey_reader.h"
#include "core/whole_file.h"
#include "tabulation/essay_search.h"
#include "tabulation/html_result.h"
#include "tabulation/page_file.h"
#include "tabulation/text_result.h"
#include "tabulation/total_json.h"
#include "tabulation/total_sheet.h"
#include "tabulation/word_count.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QList<VerbOption> ResultOptions() {
    return QList<VerbOption>{
               {.name = u"format"_s,
                .value = u"FORMAT"_s,
                .text = u"text（タブ区切り。指定しないときと同じ）、json、csv、html（コードページ932）"_s,
                .english = u"text (cells parted by tabs, as without this option), json, csv or html. All are in "
                           u"UTF-8, but html in code page 932."_s,
                .choices = {u"text"_s, u"json"_s, u"csv"_s, u"html"_s}},
               {.name = u"bom"_s,
                .value = {},
                .text = u"csv の先頭に UTF-8 の印を付ける（表計算ソフトのため）"_s,
                .english = u"Begins csv with the mark of UTF-8, for spreadsheets."_s}} +
           SurveyOptions();
}

void SetEssayCondition(const VerbLine& line, TotalOption& option) {
    line.AllowOneOf({u"none"_s, u"empty"_s, u"filled"_s, u"text"_s, u"number"_s, u"code"_s});
    option.CrossMode = kEssayAny;
    if (line.Has(u"none"_s)) option.CrossMode = kEssayNoCondition;
    if (line.Has(u"empty"_s)) option.CrossMode = kEssayEmpty;
    if (line.Has(u"filled"_s)) option.CrossMode = kEssayFilled;
    if (line.Has(u"text"_s)) {
        option.CrossMode = kEssayHolds;
        option.EssayText = line.Value(u"text"_s);
    }
    if (line.Has(u"number"_s)) {
        const auto [first, second] = line.Pair(u"number"_s);
        option.CrossMode = kEssayNumber;
        std::tie(option.NumLow, option.NumHigh) = std::minmax({NumberArgument(first), NumberArgument(second)});
    }
    if (line.Has(u"code"_s)) {
        option.CrossMode = kEssayCode;
        const auto [first, second] = line.Pair(u"code"_s);
        std::tie(option.CodeLow, option.CodeHigh) = std::minmax({first, second});
    }
}

// A file of options may name the references beside them.
TotalOption EssayOptionOfFile(const QString& path, const Survey& survey, std::vector<int>& refs) {
    QByteArray json = OptionFileBytes(path);
    QJsonObject object = QJsonDocument::fromJson(json).object();
    if (object.contains(u"RefQno")) {
        const QJsonValue given = object.take(u"RefQno"_s);
        if (!given.isArray()) throw Refusal{u"%1：RefQno: 配列ではありません。"_s.arg(path)};
        for (const QJsonValue& q : given.toArray()) {
            const int number = q.toInt(-1);
            if (number < 0 || number >= survey.QuestionCount || number != q.toDouble())
                throw Refusal{
                    u"%1：RefQno: 0 から %2 までの整数ではありません。"_s.arg(path).arg(survey.QuestionCount - 1)};
            refs.push_back(number);
        }
        json = QJsonDocument(object).toJson();
    }
    const TotalOption option = OptionOfJson(json, path, survey);
    if (option.TotalKind != kEssayList) RefuseUsage(u"--option の TotalKind が記述の一覧（2）ではありません"_s);
    return option;
}

TotalOption EssayOption(const VerbLine& line, const Survey& survey, std::vector<int>& refs) {
    if (line.Has(u"option"_s)) return EssayOptionOfFile(line.Value(u"option"_s), survey, refs);
    for (const QString& ref : line.Values(u"ref"_s))
        refs.push_back(QuestionArgument(survey, ref));
    TotalOption option;
    option.TotalKind = kEssayList;
    option.FromQno = option.ToQno = static_cast<qint16>(QuestionArgument(survey, line.Arguments()[1]));
    const qint16 choiceCount = survey.Questions[option.FromQno].ChoiceCount;
    option.CrossQno = static_cast<qint16>(line.Number(u"choice"_s, 0, choiceCount - 1, choiceCount));
    option.Rank = static_cast<qint16>(line.Number(u"rank"_s, 0, kMaxAnswers, 0));
    if (line.Has(u"where"_s)) SetCondition(survey, line.Value(u"where"_s), option, 0);
    SetEssayCondition(line, option);
    return option;
}

// The list as JSON with the cells of the three columns that a tool has added, row by row from the first one on.
QByteArray ToolJson(const TotalSheet& sheet) {
    const ResultGrid& grid = sheet.grid;
    QJsonArray rows;
    for (int row = ResultGrid::kFixedRows; row < grid.Rows(); ++row) {
        QJsonArray cells;
        for (int column = grid.Columns() - 3; column < grid.Columns(); ++column)
            cells.append(grid.Text(column, row));
        rows.append(cells);
    }
    QJsonObject object = QJsonDocument::fromJson(WriteEssayJson(sheet.result)).object();
    object.insert(u"Tool"_s, rows);
    return QJsonDocument(object).toJson();
}

void CheckBom(const VerbLine& line) {
    if (line.Has(u"bom"_s) && line.Value(u"format"_s) != u"csv") RefuseUsage(u"--bom は --format csv と使います"_s);
}

void PrintResult(const Survey& survey, const TotalSheet& sheet, const VerbLine& line, bool hasTool,
                 StandardOutput& out) {
    const QString format = line.Value(u"format"_s);
    if (format == u"html")
        out.Print(WriteHtml(survey, sheet.result, sheet.view, sheet.grid));
    else if (format == u"csv")
        out.Print((line.Has(u"bom"_s) ? QByteArray("\xEF\xBB\xBF") : QByteArray()) +
                  GridAsCsv(sheet.grid, sheet.result.option.TotalKind == kEssayList));
    else if (format == u"text")
        out.Print(GridAsText(sheet.grid));
    else if (hasTool)
        out.Print(ToolJson(sheet));
    else if (sheet.result.option.TotalKind == kEssayList)
        out.Print(WriteEssayJson(sheet.result));
    else
        out.Print(WriteTotalJson(survey, sheet.result));
}

// What a result window would be called.
const QString kCaption = u"集計結果"_s;

// The files that are asked for. A survey that is named by mistake is not written over.
void SaveResult(const VerbLine& line, const Survey& survey, TotalSheet& sheet) {
    if (line.Argument(0) == u"-" && line.Has(u"save-page"_s))
        RefuseUsage(u"標準入力のアンケートの集計は、ページとして保存できません"_s);
    const QFileInfo own(line.Argument(0));
    for (const QString& option : {u"save-text"_s, u"save-html"_s, u"save-page"_s})
        if (line.Has(option) && QFileInfo(line.Value(option)) == own)
            RefuseUsage(u"%1 にアンケートファイル自身は指定できません"_s.arg(Dashed(option)));
    if (line.Has(u"save-text"_s)) {
        // The blank columns between limits are not written.
        const bool space = std::exchange(sheet.view.space, false);
        const bool isTable = sheet.result.option.TotalKind == kTable;
        if (isTable && space) sheet.RunTotal();
        WriteWholeFile(line.Value(u"save-text"_s), WriteText(kCaption, sheet.grid));
        sheet.view.space = space;
        if (isTable && space) sheet.RunTotal();
    }
    if (line.Has(u"save-html"_s))
        WriteWholeFile(line.Value(u"save-html"_s), WriteHtml(survey, sheet.result, sheet.view, sheet.grid));
    if (line.Has(u"save-page"_s)) {
        WriteWholeFile(line.Value(u"save-page"_s), WritePage(survey, sheet, line.Argument(0), kCaption));
        if (sheet.result.option.TotalKind == kEssayList) ErrorLine(EssayPageWarning());
    }
}

void CheckEssayLine(const VerbLine& line) {
    line.AllowOneOf({u"count"_s, u"search"_s, u"between"_s});
    for (const QString& other : {u"choice"_s, u"rank"_s, u"where"_s, u"ref"_s, u"none"_s, u"empty"_s, u"filled"_s,
                                 u"text"_s, u"number"_s, u"code"_s})
        line.AllowOneOf({u"option"_s, other});
    if (line.Has(u"option"_s) && line.Arguments().size() > 1) RefuseUsage(u"--option と Q は一緒には使えません"_s);
    if (!line.Has(u"option"_s) && line.Arguments().size() < 2)
        RefuseUsage(u"Q がありません。"_s + FindVerb(u"essays"_s)->Usage());
    const QStringList words = line.Values(u"search"_s);
    if (words.size() > kMaxSearchWords) RefuseUsage(u"--search は%1個までです"_s.arg(kMaxSearchWords));
    if (words.contains(QString())) RefuseUsage(u"--search の語が空です"_s);
}

// The tool that is asked for; false when none is.
bool RunTool(const VerbLine& line, TotalSheet& sheet) {
    if (line.Has(u"count"_s)) {
        ShowWordCount(sheet.grid, sheet.FontScale);
    } else if (line.Has(u"search"_s)) {
        SearchWords(sheet.grid, line.Values(u"search"_s), sheet.FontScale);
    } else if (line.Has(u"between"_s)) {
        const QStringList ends = line.Value(u"between"_s).split(u',');
        if (ends.size() != 2) RefuseUsage(u"--between A,B のように二つの数を書いてください"_s);
        SearchNumbers(sheet.grid, NumberArgument(ends[0]), NumberArgument(ends[1]), sheet.FontScale);
    } else {
        return false;
    }
    return true;
}

int RunTotal(const VerbLine& line, StandardOutput& out) {
    CheckTableOptions(line, line.Values(u"column"_s));
    CheckBom(line);
    const TotalView view = TableView(line);

    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    ConsoleMonitor monitor(opened.Console());
    ColumnWidths widths = kDefaultColumnWidths;
    TotalSheet sheet(opened.Data(), opened.Console(), monitor, widths);
    sheet.view = view;
    sheet.DoTotal(TableOption(line, opened.Data(), line.Values(u"column"_s)));
    SaveResult(line, opened.Data(), sheet);
    PrintResult(opened.Data(), sheet, line, false, out);
    return kDone;
}

int RunEssays(const VerbLine& line, StandardOutput& out) {
    CheckBom(line);
    CheckEssayLine(line);

    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    const Survey& survey = opened.Data();
    ConsoleMonitor monitor(opened.Console());
    ColumnWidths widths = kDefaultColumnWidths;
    TotalSheet sheet(survey, opened.Console(), monitor, widths);
    sheet.result.FromDno = line.Number(u"from-dno"_s, 0, std::numeric_limits<qint32>::max(), 0);
    const TotalOption option = EssayOption(line, survey, sheet.result.RefQno);
    sheet.DoTotal(option);
    const bool hasTool = RunTool(line, sheet);
    SaveResult(line, survey, sheet);
    PrintResult(survey, sheet, line, hasTool, out);
    if (sheet.result.HasNext) ErrorLine(u"続きは --from-dno %1 で表示します。"_s.arg(sheet.result.FromDno));
    return kDone;
}

int RunPage(const VerbLine& line, StandardOutput& out) {
    CheckBom(line);
    BinaryFile file = BinaryFile::OpenToRead(line.Argument(0));
    ByteReader in(file);
    if (line.Has(u"dump"_s)) {
        if (line.Arguments().size() > 1) RefuseUsage(u"--dump と SURVEY は一緒には使えません"_s);
        out.Print(DumpPage(in));
        return kDone;
    }
    if (line.Arguments().size() < 2) RefuseUsage(u"SURVEY がありません。"_s + FindVerb(u"page"_s)->Usage());
    if (ReadMagic(in) != kPageFile) throw Refusal{u"集計結果ファイルではありません。"_s};
    ReadDoubleLen(in);  // the survey it was made of; the one named counts

    OpenedSurvey opened(line, line.Argument(1), Access::Show);
    ConsoleMonitor monitor(opened.Console());
    ColumnWidths widths = kDefaultColumnWidths;
    TotalSheet sheet(opened.Data(), opened.Console(), monitor, widths);
    TotalOption option;
    ReadPage(in, opened.Data(), option, sheet.view);
    sheet.result.chkSorted = sheet.view.sort;
    sheet.DoTotal(option);
    PrintResult(opened.Data(), sheet, line, false, out);
    return kDone;
}

QList<VerbOption> SaveOptions() {
    return {{.name = u"save-text"_s,
             .value = u"OUT"_s,
             .text = u"結果をテキストファイルにも書く（コードページ932）"_s,
             .english = u"Also writes the result as a text file, in code page 932."_s},
            {.name = u"save-html"_s,
             .value = u"OUT"_s,
             .text = u"結果を HTML ファイルにも書く（コードページ932）"_s,
             .english = u"Also writes the result as an HTML file, in code page 932."_s},
            {.name = u"save-page"_s,
             .value = u"OUT"_s,
             .text = u"結果を集計結果ファイルにも書く"_s,
             .english = u"Also writes the result as a page file."_s}};
}

}  // namespace

Verb TotalVerb() {
    return {.name = u"total"_s,
            .summary = u"集計する（単純集計・クロス集計）"_s,
            .arguments = u"FILE"_s,
            .text =
                u"集計します。何も指定しなければ全質問の単純集計です。\n\n"_s
                u"COND は条件で、語を空白で区切って並べます: Q3=2（必須） |Q3=4（又は） -Q5=1（除く）\n"_s
                u"Q5=3..7（3から7） Q5@2=3（2位で3） P4（既成限定条件4）"_s,
            .english = u"Makes a table. Without options these are simple totals of all questions."_s,
            .options = TableOptions() + TableViewOptions() + SaveOptions() + ResultOptions(),
            .run = RunTotal};
}

Verb EssaysVerb() {
    return {.name = u"essays"_s,
            .summary = u"記述文を一覧にする"_s,
            .arguments = u"FILE [Q]"_s,
            .text =
                u"質問 Q の記述文・数量・コードを、回答1つを1行として一覧にします。"_s
                u"COND の書き方は total --help にあります。"_s,
            .english =
                u"Lists the texts, numbers or codes that were written beside the choices of a question, "
                u"one answer a line."_s,
            .options =
                QList<VerbOption>{
                    {.name = u"count"_s,
                     .value = {},
                     .text = u"同じ記述文を数え、多い順に並べた列を加える"_s,
                     .english = u"Counts identical texts and adds columns of them, the most frequent first."_s},
                    {.name = u"search"_s,
                     .value = u"WORD"_s,
                     .text = u"WORD を含む記述文に印を付け、並べた列を加える。16個まで書ける"_s,
                     .english = u"Marks the texts that hold a word and adds columns of them; up to 16 times."_s,
                     .repeats = true},
                    {.name = u"between"_s,
                     .value = u"A,B"_s,
                     .text = u"A から B までの数量に印を付け、並べた列を加える"_s,
                     .english = u"Marks the numbers from A to B and adds columns of them."_s},
                    {.name = u"option"_s,
                     .value = u"FILE.json"_s,
                     .text = u"一覧の設定を JSON から読む。RefQno に参照質問を書ける。Q は書かない"_s,
                     .english = u"Reads what to list from a file, which may name reference questions as RefQno; goes "
                                u"without Q."_s},
                    {.name = u"choice"_s,
                     .value = u"C"_s,
                     .text = u"この選択肢の回答だけ。なければ無回答以外の全て"_s,
                     .english = u"Only answers with this choice; otherwise all but \"no answer\"."_s},
                    {.name = u"rank"_s,
                     .value = u"N"_s,
                     .text = u"N 番目の回答だけ"_s,
                     .english = u"Only the answer in place N."_s},
                    {.name = u"none"_s,
                     .value = {},
                     .text = u"回答を見ずに、条件に合うサンプルを1行ずつ"_s,
                     .english = u"One line for each sample that meets the condition, whatever was answered."_s},
                    {.name = u"empty"_s,
                     .value = {},
                     .text = u"記述の無い回答"_s,
                     .english = u"Only answers with nothing written."_s},
                    {.name = u"filled"_s,
                     .value = {},
                     .text = u"記述のある回答"_s,
                     .english = u"Only answers with something written."_s},
                    {.name = u"text"_s,
                     .value = u"T"_s,
                     .text = u"T を含む回答"_s,
                     .english = u"Only answers that hold this text."_s},
                    {.name = u"number"_s,
                     .value = u"LOW HIGH"_s,
                     .text = u"数量が LOW から HIGH までの回答"_s,
                     .english = u"Only answers with a number in this range."_s},
                    {.name = u"code"_s,
                     .value = u"LOW HIGH"_s,
                     .text = u"コードが LOW から HIGH までの回答"_s,
                     .english = u"Only answers with a code in this range."_s},
                    {.name = u"where"_s,
                     .value = u"COND"_s,
                     .text = u"全体の限定"_s,
                     .english = u"Only samples that meet this condition."_s},
                    {.name = u"ref"_s,
                     .value = u"Q"_s,
                     .text = u"この質問の回答を並べて示す。何度でも書ける"_s,
                     .english = u"Shows the answers to this question beside; may be given many times."_s,
                     .repeats = true},
                    {.name = u"from-dno"_s,
                     .value = u"N"_s,
                     .text = u"ローカル番号 N から始める"_s,
                     .english = u"Goes on at sample number N, as a long list tells at its end."_s}} +
                SaveOptions() + ResultOptions(),
            .run = RunEssays};
}

Verb PageVerb() {
    return {.name = u"page"_s,
            .summary = u"集計結果ファイルを開く"_s,
            .arguments = u"PAGE [SURVEY]"_s,
            .text =
                u"集計結果ファイル PAGE に書かれた集計を、アンケート SURVEY のサンプルでし直します。\n"_s
                u"--dump なら SURVEY は要らず、ファイルの項目を書かれたままの JSON で表示します。"_s,
            .english =
                u"Counts again what a page file asks for, in the samples of a survey; or shows the fields of the "
                u"file as they were written."_s,
            .options = QList<VerbOption>{{.name = u"dump"_s,
                                          .value = {},
                                          .text = u"ファイルの項目を JSON で表示する"_s,
                                          .english = u"Prints the fields of the page file as JSON."_s}} +
                       ResultOptions(),
            .run = RunPage};
}

}  // namespace quibra
