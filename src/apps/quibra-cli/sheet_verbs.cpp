// sheet, parse and check: the answer sheet without its window, and the checks of answers over all samples.
#include <cstdio>

#include "apps/quibra-cli/json_lines.h"
#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/recorded_interface.h"
#include "apps/quibra-cli/verbs.h"
#include "core/answer_store.h"
#include "core/sample_change.h"
#include "core/survey_losses.h"
#include "entry/answer_scan.h"
#include "entry/sheet_parser.h"
#include "entry/sheet_text.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// "3.2", both from 1, as a place on the sheet.
std::pair<int, int> StopArgument(const Survey& survey, const QString& text) {
    const QStringList parts = text.split(u'.');
    if (parts.size() > 2) RefuseUsage(u"「%1」は「質問番号.回答の順番」ではありません"_s.arg(text));
    const int q = IntegerArgument(parts[0], u"質問番号"_s, 1, survey.QuestionCount + 1);
    const int a = parts.size() < 2 ? 1 : IntegerArgument(parts[1], u"回答の順番"_s, 1, kMaxAnswers);
    return {q - 1, a - 1};
}

SheetLook LookArgument(const VerbLine& line) {
    SheetLook look = SheetLookOf(SettingsDefault());
    look.names = line.Value(u"names"_s) == u"on";
    look.marks = line.Value(u"marks"_s) == u"on";
    if (line.Has(u"font"_s)) {
        const QString font = line.Value(u"font"_s);
        const qsizetype comma = font.lastIndexOf(u',');
        if (comma < 1) RefuseUsage(u"「%1」は「フォント名,大きさ」ではありません"_s.arg(font));
        look.font.FontName = font.left(comma);
        look.font.FontSize = static_cast<float>(NumberArgument(font.mid(comma + 1)));
    }
    return look;
}

int RunSheet(const VerbLine& line, StandardOutput& out) {
    OpenedSurvey opened(line, line.Argument(0), Access::Show);
    const Survey& survey = opened.Data();
    const qint32 dno = SampleArgument(survey, line.Argument(1));
    const auto [stopQ, stopA] = line.Has(u"stop"_s) ? StopArgument(survey, line.Value(u"stop"_s))
                                                    : std::pair<int, int>(survey.QuestionCount, 0);
    const int caretQ = line.Number(u"caret-question"_s, 1, survey.QuestionCount + 1, 0) - 1;
    const SheetLook look = LookArgument(line);
    const SheetText sheet = BuildAnswerSheet(survey, dno, stopQ, stopA, look, caretQ, line.Value(u"tail"_s));
    const QString format = line.Value(u"format"_s);
    if (format == u"json")
        PrintJson(out,
                  {{"Text", Utf8(sheet.Text)}, {"Rtf", Utf8(SheetRtf(sheet, look))}, {"CaretOut", sheet.CaretOut}});
    else
        out.Print(format == u"rtf" ? SheetRtf(sheet, look) : sheet.Text);
    return kDone;
}

// A lone LF is a line end too.
QString StandardInputText() {
    QString text = QString::fromUtf8(OpenInput(u"-"_s)->readAll());
    return text.replace(u"\r\n"_s, u"\n"_s).replace(u"\n"_s, u"\r\n"_s);
}

int RunParse(const VerbLine& line, StandardOutput& out) {
    const bool save = line.Has(u"save"_s);
    OpenedSurvey opened(line, line.Argument(0), save ? Access::Write : Access::Show);
    SurveySession& session = opened.Session();
    const qint32 dno = SampleArgument(session.survey, line.Argument(1));
    SheetReading reading;
    reading.Text = StandardInputText();
    if (save && !AgreesToLosses(session.ui, {{u"回答票"_s, CodePageLosses(reading.Text)}})) return kRefused;
    reading.Caret = line.Number(u"caret"_s, 0, std::numeric_limits<int>::max(), 0);
    RecordedInterface boxes;
    CodeTables tables;
    PlainReply box(reading.Text);
    ShowCorrectionBox notice(box, boxes);
    Json result = Json::object();
    int status = kDone;
    try {
        SampleChange change(session.changes, ChangeCause::Command);
        change.Open(dno);
        const QString message = ParseAnswerSheet(session.survey, dno, reading, save, {boxes, tables, &box, &notice});
        result["Message"] = Utf8(message);
        if (!message.isEmpty() && message != kExecuteDll) status = kRefused;
    } catch (const RuntimeError& error) {
        result["Message"] = Utf8(error.Text());
        result["Error"] = error.Number();
        status = kRefused;
    }
    result["Text"] = Utf8(reading.Text);
    result["StopQ"] = reading.StopQ;
    result["StopA"] = reading.StopA;
    result["Caret"] = reading.Caret;
    result["CaretQ"] = reading.CaretQ;
    result["Boxes"] = boxes.TakeBoxes();
    PrintJson(out, result);
    if (!save || status != kDone) return status;
    session.ChangedOn();
    return opened.Save(out);
}

class MessageList : public CorrectionNotice {
  public:
    void ShowCorrection(const QString& head, const QString& tail, int, int) override {
        messages_.push_back(Utf8(head + u"()"_s + tail));
    }
    Json Take() { return std::exchange(messages_, Json::array()); }

  private:
    Json messages_ = Json::array();
};

// Runs the checks on each sample that they may have something to say of, and prints what that is.
bool CheckSamples(SurveySession& session, bool fix, StandardOutput& out) {
    Survey& survey = session.survey;
    AnswerScan scan(survey, true);
    WorkingSample working(survey);
    MessageList messages;
    SampleChange change(session.changes, ChangeCause::Check);
    bool changed = false;
    scan.ForEachSuspect([&](qint32 dno) {
        change.Open(dno);
        changed |= CheckSample(survey, dno, working, true, &messages);
        Json said = messages.Take();
        if (!said.empty()) PrintJson(out, {{"IDno", survey.Samples.IDno(dno)}, {"Messages", std::move(said)}});
    });
    return changed && fix;
}

int RunCheck(const VerbLine& line, StandardOutput& out) {
    const bool fix = line.Changes({u"fix"_s});
    OpenedSurvey opened(line, line.Argument(0), fix ? Access::Write : Access::Show);
    SurveySession& session = opened.Session();
    const qint16 own = session.survey.CorrectFlags;
    session.survey.CorrectFlags = static_cast<qint16>(line.Number(u"flags"_s, 0, 31, own));
    const bool changed = CheckSamples(session, fix, out);
    session.survey.CorrectFlags = own;
    if (!changed) return kDone;
    session.ChangedOn();
    return opened.Save(out);
}

}  // namespace

Verb SheetVerb() {
    return {
        .name = u"sheet"_s,
        .summary = u"サンプルの回答票を表示する"_s,
        .arguments = u"FILE ID"_s,
        .text = u"サンプル ID の回答を、回答入力の画面と同じ書き方で表示します。行の終わりは CR LF です。"_s,
        .english = u"Prints a sample's answers as the sheet on which they are keyed in. Lines end in CR LF."_s,
        .options = QList<VerbOption>{{.name = u"stop"_s,
                                      .value = u"Q.A"_s,
                                      .text = u"質問 Q の A 番目の回答の前で止める"_s,
                                      .english = u"Stops in front of the A-th answer of question Q."_s},
                                     {.name = u"caret-question"_s,
                                      .value = u"Q"_s,
                                      .text = u"カーソルを質問 Q の後ろに置く（json の CaretOut）"_s,
                                      .english = u"Puts the caret behind question Q (CaretOut of the JSON form)."_s},
                                     {.name = u"tail"_s,
                                      .value = u"TEXT"_s,
                                      .text = u"最後の回答の後ろに TEXT を続ける"_s,
                                      .english = u"Appends a text to the last answer."_s},
                                     {.name = u"names"_s,
                                      .value = u"WHICH"_s,
                                      .text = u"質問名を表示する"_s,
                                      .english = u"Whether names of questions are shown."_s,
                                      .choices = {u"on"_s, u"off"_s}},
                                     {.name = u"marks"_s,
                                      .value = u"WHICH"_s,
                                      .text = u"改行記号を表示する"_s,
                                      .english = u"Whether line ends are marked."_s,
                                      .choices = {u"off"_s, u"on"_s}},
                                     {.name = u"font"_s,
                                      .value = u"NAME,SIZE"_s,
                                      .text = u"rtf に書くフォント"_s,
                                      .english = u"The font that the RTF form names."_s},
                                     {.name = u"format"_s,
                                      .value = u"FORMAT"_s,
                                      .text = u"表示の形"_s,
                                      .english = u"The form of the output."_s,
                                      .choices = {u"text"_s, u"rtf"_s, u"json"_s}}} +
                   SurveyOptions(),
        .run = RunSheet};
}

Verb ParseVerb() {
    return {.name = u"parse"_s,
            .summary = u"回答票を読み取る"_s,
            .arguments = u"FILE ID"_s,
            .text =
                u"標準入力の文をサンプル ID の回答票として読み取り、結果を JSON で表示します。"_s
                u"StopQ、StopA、CaretQ は0から数えます。"_s,
            .english =
                u"Reads standard input as the sheet of a sample and prints what comes of it as JSON. StopQ, StopA and "
                u"CaretQ count from 0."_s,
            .options = QList<VerbOption>{{.name = u"caret"_s,
                                          .value = u"N"_s,
                                          .text = u"カーソルの位置（0から）"_s,
                                          .english = u"Where the caret stands, from 0."_s},
                                         {.name = u"save"_s,
                                          .value = {},
                                          .text = u"回答を補正して保存する。元のファイルは拡張子 qb~ で残る"_s,
                                          .english = u"Checks and stores the answers and saves the survey."_s}} +
                       SurveyOptions(),
            .run = RunParse};
}

Verb CheckVerb() {
    return {
        .name = u"check"_s,
        .summary = u"回答が質問の決まりに合うか調べる"_s,
        .arguments = u"FILE"_s,
        .text = u"全てのサンプルの回答を調べ、決まりに合わないものを1行に1サンプルの JSON で表示します。"_s,
        .english =
            u"Checks the answers of all samples against the rules of their questions. Prints one JSON object a "
            u"line for each sample that the checks would change or speak of."_s,
        .options =
            QList<VerbOption>{
                {.name = u"flags"_s,
                 .value = u"N"_s,
                 .text = u"補正の方針（0から15）。なければアンケートのもの"_s,
                 .english = u"What is done with answers that break a rule, 0 to 15; otherwise as the survey has it."_s},
                {.name = u"fix"_s,
                 .value = {},
                 .text = u"補正した回答を保存する。元のファイルは拡張子 qb~ で残る"_s,
                 .english = u"Saves the survey with the answers repaired."_s}} +
            SurveyOptions(),
        .run = RunCheck};
}

}  // namespace quibra
