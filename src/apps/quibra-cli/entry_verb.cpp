// entry: keying in, a command a line and a line of state for each.
#include <map>
#include <memory>

#include "apps/quibra-cli/json_lines.h"
#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/recorded_interface.h"
#include "apps/quibra-cli/verbs.h"
#include "core/runtime_error.h"
#include "entry/entry_session.h"
#include "entry/plugin_caller.h"
#include "session/journal.h"
#include "session/journal_recovery.h"
#include "session/main_commands.h"
#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// What a command line says that is none. The number of the line is put in front.
[[noreturn]] void RefuseCommand(const QString& reason) {
    throw Refusal{reason, kWrongUsage};
}

// A whole number will do: the boxes of the window take IDs as texts.
QString TextAt(const Json& command, const char* key) {
    const auto found = command.find(key);
    if (found != command.end() && found->is_number_integer()) return QString::number(found->get<qint64>());
    if (found == command.end() || !found->is_string()) RefuseCommand(u"%1 は文字列です"_s.arg(QLatin1StringView(key)));
    return QString::fromStdString(found->get<std::string>());
}

int NumberAt(const Json& command, const char* key) {
    const auto found = command.find(key);
    if (found == command.end() || !found->is_number_integer() || *found < std::numeric_limits<int>::min() ||
        *found > std::numeric_limits<int>::max())
        RefuseCommand(u"%1 は整数です"_s.arg(QLatin1StringView(key)));
    return found->get<int>();
}

bool FlagAt(const Json& command, const char* key) {
    const auto found = command.find(key);
    if (found == command.end() || !found->is_boolean())
        RefuseCommand(u"%1 は true か false です"_s.arg(QLatin1StringView(key)));
    return found->get<bool>();
}

// The window, of which only the focus can be told.
class Window : public EntryView {
  public:
    void SetFocus(EntryControl control) override {
        focus_ = control == EntryControl::txtReply ? u"txtReply"_s : u"cmdNextInput"_s;
    }
    QString TakeFocus() { return std::exchange(focus_, {}); }

  private:
    QString focus_;
};

class EntryCommands {
  public:
    EntryCommands(SurveySession& session, RecordedInterface& boxes)
        : session_(session), boxes_(boxes), caller_(boxes, ExternConsentPath()) {}

    // Does one command and gives the state behind it.
    Json Do(const Json& command) {
        static const std::map<QString, void (EntryCommands::*)(const Json&)> kCommands = {
            {u"type"_s, &EntryCommands::Type},        {u"insert"_s, &EntryCommands::Insert},
            {u"key"_s, &EntryCommands::Key},          {u"blur"_s, &EntryCommands::Blur},
            {u"add"_s, &EntryCommands::Add},          {u"delete"_s, &EntryCommands::Delete},
            {u"change-id"_s, &EntryCommands::Change}, {u"goto"_s, &EntryCommands::GoTo},
            {u"find"_s, &EntryCommands::Find},        {u"step"_s, &EntryCommands::Step},
            {u"command"_s, &EntryCommands::Command},  {u"execute"_s, &EntryCommands::Execute},
            {u"names"_s, &EntryCommands::Names},      {u"marks"_s, &EntryCommands::Marks},
            {u"save"_s, &EntryCommands::Save},        {u"close"_s, &EntryCommands::Close},
        };
        if (!command.is_object()) RefuseCommand(u"コマンドは JSON のオブジェクトです"_s);
        const QString name = TextAt(command, "do");
        const auto found = kCommands.find(name);
        if (found == kCommands.end()) RefuseCommand(u"「%1」というコマンドはありません"_s.arg(name));
        boxes_.SetAnswers(command.value("answers", Json::array()));
        Json state = Json::object();
        try {
            OpenWindow();
            (this->*found->second)(command);
        } catch (const RuntimeError& error) {
            state["Error"] = error.Number();
        }
        AddState(state);
        return state;
    }

    // As the end of the program closes the window. False when it stays open.
    bool CloseWindow() { return !entry_ || entry_->Close(); }

  private:
    void OpenWindow() {
        if (entry_) return;
        entry_ = std::make_unique<EntrySession>(session_, caller_, window_);
        entry_->Open();
    }

    // A box that is disabled takes nothing that is typed.
    bool TakesKeys() const { return entry_->State().Enabled; }

    void InsertText(const QString& text) {
        const EntryState& state = entry_->State();
        QString changed = state.Text;
        changed.insert(state.Caret, text);
        entry_->TypeReply(changed, state.Caret + static_cast<int>(text.size()));
    }

    void Type(const Json& command) {
        const QString text = TextAt(command, "text");
        const int caret = command.contains("caret") ? NumberAt(command, "caret") : static_cast<int>(text.size());
        if (TakesKeys()) entry_->TypeReply(text, caret);
    }
    void Insert(const Json& command) {
        const QString text = TextAt(command, "text");
        if (TakesKeys()) InsertText(text);
    }
    void Key(const Json& command) {
        const QString key = TextAt(command, "key");
        if (!QStringList{u"Enter"_s, u"Space"_s, u"Up"_s, u"Down"_s}.contains(key))
            RefuseCommand(u"「%1」というキーはありません"_s.arg(key));
        if (!TakesKeys()) return;
        if (key == u"Enter") {
            entry_->KeyEnter();
        } else if (key == u"Space") {
            if (!entry_->KeySpace()) InsertText(u" "_s);
        } else if (entry_->KeyUpOrDown()) {
            MoveByLine(key == u"Up" ? -1 : 1);
        }
    }
    // To the same column of the line above or below, or its end.
    void MoveByLine(int by) {
        const EntryState& state = entry_->State();
        const QStringList lines = state.Text.split(u"\r\n"_s);
        const QStringList before = state.Text.left(state.Caret).split(u"\r\n"_s);
        const qsizetype line = before.size() - 1 + by;
        if (line < 0 || line >= lines.size()) return;
        qsizetype caret = std::min(before.last().size(), lines[line].size());
        for (qsizetype i = 0; i < line; ++i)
            caret += lines[i].size() + 2;
        entry_->MoveCaret(static_cast<int>(caret));
    }
    void Blur(const Json&) { entry_->ReplyLostFocus(); }
    void Add(const Json&) { entry_->NextInput(); }
    void Delete(const Json&) {
        if (TakesKeys()) entry_->Delete();
    }
    // The box that asks for the ID gets it as its answer.
    void Change(const Json& command) {
        Json answers = Json::array({TextAt(command, "to").toStdString()});
        for (const Json& answer : command.value("answers", Json::array()))
            answers.push_back(answer);
        boxes_.SetAnswers(answers);
        if (TakesKeys()) entry_->ChangeID();
    }
    void GoTo(const Json& command) {
        entry_->SetDno(QString::number(NumberAt(command, "dno")));
        entry_->ShowSample();
    }
    void Find(const Json& command) {
        const Json& id = command.value("id", Json());
        entry_->SetIDno(id.is_number_integer() ? QString::fromStdString(id.dump()) : TextAt(command, "id"));
        entry_->IDnoLostFocus();
    }
    void Step(const Json& command) { entry_->StepDno(NumberAt(command, "by")); }
    void Command(const Json& command) {
        const QString text = TextAt(command, "text");
        if (command.contains("id")) entry_->SetIDno(TextAt(command, "id"));
        if (command.contains("reply")) entry_->SetReply(TextAt(command, "reply"));
        entry_->Command(text);
    }
    void Execute(const Json&) { entry_->Execute(); }
    void Names(const Json& command) { entry_->SetNames(FlagAt(command, "on")); }
    void Marks(const Json& command) { entry_->SetMarks(FlagAt(command, "on")); }
    // The button lies in another window: the box loses the focus first.
    void Save(const Json&) {
        entry_->ReplyLostFocus();
        SaveSurvey(session_);
    }
    // The state is that of its last moment; the next command opens the window anew.
    void Close(const Json&) { closes_ = entry_->Close(); }

    void AddState(Json& state) {
        const auto utf8 = [](const QString& text) { return text.toStdString(); };
        const EntryState& shown = entry_->State();
        state["Text"] = utf8(shown.Text);
        state["Caret"] = shown.Caret;
        state["Changed"] = shown.Changed;
        state["New"] = shown.New;
        state["Dno"] = utf8(shown.Dno);
        state["Now"] = utf8(shown.Now);
        state["IDno"] = utf8(shown.IDno);
        state["Max"] = utf8(shown.Max);
        state["Choices"] = Json::array();
        for (const QString& choice : shown.Choices)
            state["Choices"].push_back(utf8(choice));
        state["Status"] = utf8(shown.Status);
        state["Focus"] = utf8(window_.TakeFocus());
        state["SampleCount"] = session_.survey.SampleCount();
        state["QuotaUsed"] = session_.survey.QuotaUsed;
        state["Boxes"] = boxes_.TakeBoxes();
        if (std::exchange(closes_, false)) entry_.reset();
    }

    SurveySession& session_;
    RecordedInterface& boxes_;
    PluginCaller caller_;
    Window window_;
    std::unique_ptr<EntrySession> entry_;
    bool closes_ = false;
};

std::pair<int, int> QuotaArgument(const VerbLine& line) {
    const QStringList parts = line.Value(u"quota"_s).split(u',');
    if (parts.size() != 2) RefuseUsage(u"--quota A,B のように二つの数を書いてください"_s);
    using Limits = std::numeric_limits<qint32>;
    return {IntegerArgument(parts[0], u"割り当てID"_s, Limits::min(), Limits::max()),
            IntegerArgument(parts[1], u"割り当てID"_s, Limits::min(), Limits::max())};
}

// What a run with the same journal folder has left of this survey, when it was killed.
void RestoreLeft(SurveySession& session, Journal& journal, const QString& folder) {
    for (const LeftJournal& left : LeftJournals(folder)) {
        if (left.Contents.Header.Path != session.survey.FileName) continue;
        if (!left.FitsItsFile())
            throw Refusal{u"アンケートのファイルは、残っている入力の後に変わっています: %1"_s.arg(left.Path)};
        if (!RestoreJournal(session, left)) continue;
        journal.Flush();
        if (journal.Failure().isEmpty()) DiscardJournal(left);
        ErrorLine(u"保存されていなかった入力を元に戻しました（記録 %1件）"_s.arg(left.Records()));
    }
}

// What came up while the survey was loaded goes to standard error, as with every verb.
std::unique_ptr<OpenedSurvey> Open(const VerbLine& line, RecordedInterface& boxes) {
    const auto tell = [&boxes] {
        for (const Json& box : boxes.TakeBoxes())
            ErrorLine(QString::fromStdString(box.value("Text", std::string())));
    };
    try {
        auto opened = std::make_unique<OpenedSurvey>(line, line.Argument(0), Access::Write, &boxes);
        tell();
        return opened;
    } catch (const Refusal&) {
        tell();
        throw;
    }
}

int RunEntry(const VerbLine& line, StandardOutput& out) {
    RecordedInterface boxes;
    const auto opened = Open(line, boxes);
    SurveySession& session = opened->Session();
    qint32& flags = session.settings.ColorSet[kSheetFlagsEntry];
    flags = (line.Value(u"names"_s) == u"on" ? kShowNames : 0) | (line.Value(u"marks"_s) == u"on" ? kShowMarks : 0);
    if (line.Has(u"quota"_s)) {
        std::tie(session.survey.QuotaFirst, session.survey.QuotaLast) = QuotaArgument(line);
        RecalcQuotaUsed(session.survey);
    }
    std::unique_ptr<Journal> journal;
    if (line.Has(u"journal"_s)) {
        const QString folder = line.Value(u"journal"_s) + u'/';
        journal = std::make_unique<Journal>(session, folder);
        session.InStepWith(session.survey.FileName);
        RestoreLeft(session, *journal, folder);
    }
    EntryCommands commands(session, boxes);
    CommandLines lines;
    while (const std::optional<QByteArray> text = lines.Next()) {
        const Json command = Json::parse(text->begin(), text->end(), nullptr, false);
        try {
            if (command.is_discarded()) RefuseCommand(u"JSON ではありません"_s);
            PrintJson(out, commands.Do(command));
        } catch (const Refusal& refusal) {
            throw Refusal{u"%1行目: %2"_s.arg(lines.Number()).arg(refusal.reason), refusal.status};
        }
    }
    const bool closed = commands.CloseWindow();
    if (line.Has(u"save"_s) && session.IsChanged())
        return SurveySave(session, opened->Path()) && closed ? kDone : kRefused;
    // The end of the commands without a save is its refusal.
    session.DeclineChanges();
    return closed ? kDone : kRefused;
}

}  // namespace

Verb EntryVerb() {
    return {
        .name = u"entry"_s,
        .summary = u"回答入力ウィンドウの操作を JSON で受けて行う"_s,
        .arguments = u"FILE"_s,
        .text =
            u"回答入力ウィンドウをウィンドウなしで動かします。標準入力に1行に1つ {\"do\":...} を書くと、"_s
            u"1行に1つ、その後の状態を表示します。type, insert, key, blur, add, delete, change-id, goto, find, step, "_s
            u"command, execute, names, marks, save, close があり、\"answers\" はメッセージなどへの答えです。"_s,
        .english =
            u"Runs the entry window without its window: reads one command {\"do\":...} a line and prints one line of "
            u"state for each. There are type, insert, key, blur, add, delete, change-id, goto, find, step, command, "
            u"execute, names, marks, save and close; \"answers\" answers the boxes that come up."_s,
        .options = SurveyOptions() +
                   QList<VerbOption>{
                       {.name = u"save"_s,
                        .value = {},
                        .text = u"コマンドの終わりで保存する"_s,
                        .english = u"Saves the survey behind the last command."_s},
                       {.name = u"quota"_s,
                        .value = u"A,B"_s,
                        .text = u"出してよいIDの範囲。なければ 0,100000"_s,
                        .english = u"The range of IDs to issue; 0,100000 without it."_s},
                       {.name = u"names"_s,
                        .value = u"WHEN"_s,
                        .text = u"質問名を表示するか"_s,
                        .english = u"Whether the names of questions are shown."_s,
                        .choices = {u"on"_s, u"off"_s}},
                       {.name = u"marks"_s,
                        .value = u"WHEN"_s,
                        .text = u"改行記号を表示するか"_s,
                        .english = u"Whether line ends are marked."_s,
                        .choices = {u"off"_s, u"on"_s}},
                       {.name = u"journal"_s,
                        .value = u"FOLDER"_s,
                        .text = u"入力の控えをこのフォルダに置き、前に残ったものがあれば元に戻す"_s,
                        .english = u"Keeps a journal in this folder, and restores what a killed run has left there."_s},
                   },
        .run = RunEntry};
}

}  // namespace quibra
