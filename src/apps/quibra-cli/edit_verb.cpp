// edit: the question editor, driven by commands from standard input.
#include <QFileInfo>
#include <map>

#include "apps/quibra-cli/json_lines.h"
#include "apps/quibra-cli/opened_survey.h"
#include "apps/quibra-cli/recorded_interface.h"
#include "apps/quibra-cli/verbs.h"
#include "conditions/condition_notation.h"
#include "core/numbers.h"
#include "design/definition_editor.h"
#include "session/survey_file.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// The user of a command: what the command itself says to a box comes first, the other boxes take its "answers".
class CommandUser : public RecordedInterface {
  public:
    std::deque<Json> inputs;
    std::deque<Json> questions;
    std::deque<Json> files;

    // Forgets what the last command has left over.
    void Begin(const Json& command) {
        inputs.clear();
        questions.clear();
        files.clear();
        rest_.clear();
        if (command.contains("answers")) {
            SetAnswers(command["answers"]);
            rest_.assign(command["answers"].begin(), command["answers"].end());
        }
    }

    Answer Message(const QString& text, int style, const QString& title) override {
        Feed(nullptr);
        return RecordedInterface::Message(text, style, title);
    }
    int AskBox(const QString& info1, const QString& info2, const QString& func1, const QString& func2) override {
        Feed(nullptr);
        return RecordedInterface::AskBox(info1, info2, func1, func2);
    }
    bool InputBox(const QString& title, const QString& name, const QString& range, const QString& caution,
                  QString& text) override {
        Feed(&inputs);
        return RecordedInterface::InputBox(title, name, range, caution, text);
    }
    int QuestionBox(const QString& info, const QStringList& list, int first) override {
        Feed(&questions);
        return RecordedInterface::QuestionBox(info, list, first);
    }
    QString FileBox(const QString& path, const QString& filter, bool save) override {
        Feed(&files);
        return RecordedInterface::FileBox(path, filter, save);
    }
    Json CollectBox(std::deque<Json>& own) {
        Feed(&own);
        return Record({{"Box", "Collect"}});
    }

  private:
    // Lays the answer to the next box ready.
    void Feed(std::deque<Json>* own) {
        std::deque<Json>& source = own && !own->empty() ? *own : rest_;
        Json next = Json::array();
        if (!source.empty()) {
            next.push_back(source.front());
            source.pop_front();
        }
        SetAnswers(next);
    }

    std::deque<Json> rest_;
};

class CommandWindows : public DefinitionWindows {
  public:
    CommandWindows(CommandUser& user, Survey& survey) : user_(user), survey_(survey) {}

    std::optional<LimitList> limit;
    std::deque<Json> flags;

    bool ChooseCorrection() override {
        constexpr int kPolicy = 15;  // the bits that the window has options for
        const Json answer = user_.CollectBox(flags);
        if (!answer.is_number_integer()) return false;
        survey_.CorrectFlags =
            static_cast<qint16>((answer.get<qint64>() & kPolicy) | (survey_.CorrectFlags & ~kPolicy));
        return true;
    }
    LimitList EditLimit(const LimitList& list) override { return limit.value_or(list); }
    void ShowProgress(const QString&) override {}

  private:
    CommandUser& user_;
    Survey& survey_;
};

const Json& Field(const Json& command, const char* name) {
    return JsonFields(command, QString()).Need(name);
}

QString PlaceOf(const char* name) {
    return QString::fromUtf8(name);
}

int NumberField(const Json& command, const char* name) {
    constexpr int kMost = 1'000'000;
    return static_cast<int>(JsonInteger(Field(command, name), PlaceOf(name), -kMost, kMost));
}

// A box takes a number as its text.
QString TextOf(const Json& value, const char* name) {
    return value.is_number() ? NumberText(value.get<double>()) : JsonText(value, PlaceOf(name));
}

QString TextField(const Json& command, const char* name) {
    return TextOf(Field(command, name), name);
}

// What the command says to a box, as the answer that the box takes.
void LayReady(const Json& command, const char* name, std::deque<Json>& answers) {
    const auto field = command.find(name);
    if (field == command.end()) return;
    answers.push_back(field->is_null() ? *field : Json(TextOf(*field, name).toStdString()));
}

constexpr size_t kMaxPasted = 1'000'000;

class EditRun {
  public:
    explicit EditRun(SurveySession& session, CommandUser& user)
        : survey_(session.survey), user_(user), windows_(user, session.survey), editor_(session, windows_) {}

    EditorOutcome Do(const Json& command);
    Json State() const;
    bool IsFinished() const { return finished_; }

  private:
    void Run(const Json& command);
    bool Select(const Json& command);
    bool SelectChoice(const Json& command, const char* name, int behindLast);
    void InsertQuestion(const Json& command);
    void InsertChoice(const Json& command);
    void AddChoices(const Json& command);
    void SetTexts(const Json& command);
    void SetAnum(const Json& command);
    void SetStatus(const Json& command);
    void ReadCondition(const Json& command);

    Survey& survey_;
    CommandUser& user_;
    CommandWindows windows_;
    DefinitionEditor editor_;
    EditorOutcome outcome_ = EditorOutcome::Open;
    bool finished_ = false;
};

EditorOutcome EditRun::Do(const Json& command) {
    user_.Begin(command);
    windows_.limit.reset();
    windows_.flags.clear();
    Run(command);
    return outcome_;
}

// A question or choice that isn't there can't be selected, so nothing is done with it.
bool EditRun::Select(const Json& command) {
    const int q = NumberField(command, "question") - 1;
    if (q < 0 || q >= survey_.QuestionCount) return false;
    if (q != editor_.Question()) editor_.SelectQuestion(q);
    return true;
}

bool EditRun::SelectChoice(const Json& command, const char* name, int behindLast) {
    if (!Select(command)) return false;
    const int c = NumberField(command, name);
    if (c < 0 || c >= survey_.Questions[editor_.Question()].ChoiceCount + behindLast) return false;
    editor_.SelectChoice(c);
    return true;
}

void EditRun::Run(const Json& command) {
    using Action = std::function<void()>;
    const std::map<QString, Action> actions{
        {u"insert-question"_s, [&] { InsertQuestion(command); }},
        {u"delete-question"_s,
         [&] {
             if (Select(command)) editor_.DeleteQuestion();
         }},
        {u"insert-choice"_s, [&] { InsertChoice(command); }},
        {u"delete-choice"_s,
         [&] {
             if (SelectChoice(command, "choice", 0)) editor_.DeleteChoice();
         }},
        {u"choices"_s, [&] { AddChoices(command); }},
        {u"text"_s, [&] { SetTexts(command); }},
        {u"choice-text"_s,
         [&] {
             if (SelectChoice(command, "choice", 0)) editor_.SetChoiceText(TextField(command, "text"));
         }},
        {u"anum"_s, [&] { SetAnum(command); }},
        {u"symbols"_s,
         [&] {
             if (Select(command)) editor_.SetLabelKind(NumberField(command, "kind"));
         }},
        {u"status"_s, [&] { SetStatus(command); }},
        {u"all-multi"_s,
         [&] {
             if (SelectChoice(command, "choice", 0)) editor_.ApplyMultipleToAll();
         }},
        {u"up"_s,
         [&] {
             if (Select(command)) editor_.MoveUp();
         }},
        {u"down"_s,
         [&] {
             ReadCondition(command);
             if (Select(command)) editor_.MoveDown();
         }},
        {u"limit"_s,
         [&] {
             ReadCondition(command);
             if (Select(command)) editor_.EditLimit();
         }},
        {u"reassign"_s,
         [&] {
             const auto mode =
                 static_cast<DefinitionEditor::CodeMode>(JsonInteger(Field(command, "mode"), u"mode"_s, 1, 3));
             if (SelectChoice(command, "choice", 0) && editor_.HasChoice())
                 editor_.ReassignCode(editor_.Question(), editor_.Choice(), mode);
         }},
        {u"finish"_s,
         [&] {
             if (command.contains("flags")) windows_.flags.push_back(command["flags"]);
             outcome_ = editor_.Finish();
             finished_ = outcome_ == EditorOutcome::Done;
         }},
        {u"cancel"_s, [&] { outcome_ = editor_.Cancel(); }},
    };
    const auto action = actions.find(TextField(command, "do"));
    if (action == actions.end()) RefuseJson(kErrorSubscript, u"do"_s, u"知らないコマンドです"_s);
    action->second();
}

void EditRun::InsertQuestion(const Json& command) {
    const int at = NumberField(command, "at") - 1;
    if (at < 0 || at > survey_.QuestionCount) return;
    editor_.SelectQuestion(at);
    if (command.contains("copy")) {
        user_.inputs.push_back("");
        user_.questions.push_back(NumberField(command, "copy") - 1);
    } else {
        LayReady(command, "choices", user_.inputs);
    }
    editor_.InsertQuestion();
}

void EditRun::InsertChoice(const Json& command) {
    if (!SelectChoice(command, "at", 1)) return;
    const int before = survey_.Questions[editor_.Question()].ChoiceCount;
    editor_.InsertChoice();
    const bool inserted = survey_.Questions[editor_.Question()].ChoiceCount != before;
    if (inserted && command.contains("text")) editor_.SetChoiceText(TextField(command, "text"));
}

void EditRun::AddChoices(const Json& command) {
    QString lines;
    for (const Json& text : JsonList(Field(command, "texts"), u"texts"_s, 0, kMaxPasted))
        lines += TextOf(text, "texts") + u"\r\n"_s;
    if (SelectChoice(command, "at", 1) && editor_.CanInsertChoice() && editor_.ConfirmRewrite())
        editor_.AddChoices(lines, [] { return true; });
}

void EditRun::SetTexts(const Json& command) {
    if (!Select(command)) return;
    const char* const parts[] = {"name", "body", "limit-text"};
    for (int part = 0; part < 3; ++part)
        if (command.contains(parts[part])) editor_.SetQuesText(part, TextField(command, parts[part]));
}

void EditRun::SetAnum(const Json& command) {
    const int anum = NumberField(command, "anum");
    if (Select(command) && anum >= 1 && anum <= editor_.MostAnswers() && editor_.ConfirmRewrite())
        editor_.SetAnum(anum);
}

void EditRun::SetStatus(const Json& command) {
    const int index = NumberField(command, "index");
    const bool on = JsonBoolean(Field(command, "on"), u"on"_s);
    LayReady(command, "low", user_.inputs);
    LayReady(command, "high", user_.inputs);
    LayReady(command, "file", user_.files);
    if (SelectChoice(command, "choice", 0)) editor_.SetStatus(index, on);
}

// What the condition editor would hand back, if it is opened.
void EditRun::ReadCondition(const Json& command) {
    if (!command.contains("condition")) return;
    const QString text = TextField(command, "condition");
    LimitList list;
    NotationError error;
    if (!text.trimmed().isEmpty() && !ParseCondition(survey_, text, list, error))
        throw RuntimeError(kErrorTypeMismatch, NotationErrorText(text, error));
    windows_.limit = list;
}

Json Rows(const QStringList& rows) {
    Json list = Json::array();
    for (const QString& row : rows)
        list.push_back(row.toStdString());
    return list;
}

Json EditRun::State() const {
    return {{"Boxes", user_.TakeBoxes()},
            {"Changed", editor_.IsChanged()},
            {"QCChanged", editor_.IsQCChanged()},
            {"Questions", Rows(editor_.QuestionRows())},
            {"Choices", Rows(editor_.ChoiceRows())}};
}

int RunEdit(const VerbLine& line, StandardOutput& out) {
    const bool inPlace = line.Arguments().size() < 2;
    OpenedSurvey opened(line, line.Argument(0), inPlace ? Access::Write : Access::Change);
    CommandUser user;
    SurveySession session(user, ProgramDirectory());
    session.survey = std::move(opened.Data());
    session.Unlock();
    session.ChangedOff();
    bool finished = false;
    {
        EditRun run(session, user);
        CommandLines lines;
        EditorOutcome outcome = EditorOutcome::Open;
        while (outcome == EditorOutcome::Open) {
            const std::optional<QByteArray> text = lines.Next();
            if (!text) break;
            Json state;
            try {
                outcome = run.Do(ParseJson(*text));
            } catch (const RuntimeError& error) {
                ErrorLine(u"%1行目: "_s.arg(lines.Number()) + error.Text());
                state["Error"] = error.Number();
            }
            state.update(run.State());
            PrintJson(out, state);
        }
        finished = run.IsFinished();
    }
    if (!finished) return kRefused;
    opened.Data() = std::move(session.survey);
    return SurveySave(opened.Session(), QFileInfo(line.Arguments().last()).absoluteFilePath()) ? kDone : kRefused;
}

}  // namespace

Verb EditVerb() {
    return {.name = u"edit"_s,
            .summary = u"質問と選択肢を編集する"_s,
            .arguments = u"FILE [OUT]"_s,
            .text =
                u"標準入力の1行ごとに JSON のコマンドを読み、1行ごとに編集の状態を JSON で書きます。"_s
                u"finish で回答を新しい質問に合わせて書き直し、OUT、略すと FILE に保存します。"_s
                u"finish のないまま入力が終わると、何も保存しません。"_s,
            .english =
                u"Edits questions and choices: reads one command as JSON from each line of standard input, and writes "
                u"the state behind it as a line of JSON. finish rewrites the stored answers for the edited questions "
                u"and saves as OUT, or in place. Nothing is saved when the input ends without it."_s,
            .options = SurveyOptions(),
            .run = RunEdit};
}

}  // namespace quibra
