#include "design/definition_editor.h"

#include <algorithm>

#include "core/labels.h"
#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kTextParts = 3;
constexpr int kTextLines = 15;  // of a condition
const QString kBehindLast = u"以上↑"_s;

// A text box holds one line, and a line end inside a text would cut it in the survey file.
QString OneLine(QString text) {
    text.replace(u"\r\n"_s, u" "_s);
    return text.replace(u'\r', u' ').replace(u'\n', u' ');
}

// Name, body and limit text, each of which ends with a CR unless the field's end has cut it. A text without any CR is a
// body alone, as everywhere.
QStringList SplitText(const QuestionRec& question) {
    QStringList parts = question.Text.split(u'\r');
    if (parts.size() == 1) parts.prepend(QString());
    while (parts.size() < kTextParts)
        parts.append(QString());
    // What is behind the last CR is the field's padding.
    for (qsizetype last = question.Text.count(u'\r'); last < parts.size(); ++last)
        while (parts[last].endsWith(u' '))
            parts[last].chop(1);
    return parts.mid(0, kTextParts);
}

// Symbols of a kind; of kind 0 there are enough for any question.
int MostSymbols(int kind) {
    switch (kind) {
        case 1:
            return 36;
        case 2:
            return 46;
        case 3:
            return 26;
        default:
            return kMaxChoices;
    }
}

}  // namespace

DefinitionEditor::DefinitionEditor(SurveySession& session, DefinitionWindows& windows)
    : session_(session), survey_(session.survey), ui_(session.ui), windows_(windows), loaded_(session.survey) {
    RecalcQLimitDepth(survey_);
    session_.SetEdit(this);
}

DefinitionEditor::~DefinitionEditor() {
    if (closed_) return;
    loaded_.LoadInto(survey_);
    Close();
}

QStringList DefinitionEditor::QuestionRows() const {
    return RefreshQuestionList(survey_, 0) << kBehindLast;
}

QStringList DefinitionEditor::ChoiceRows() const {
    return HasQuestion() ? ChoiceList(survey_, question_) : QStringList();
}

void DefinitionEditor::SelectQuestion(int row) {
    question_ = std::clamp<int>(row, 0, survey_.QuestionCount);
    choice_ = 1;
}

void DefinitionEditor::SelectChoice(int row) {
    choice_ = HasQuestion() ? std::clamp<int>(row, 0, survey_.Questions[question_].ChoiceCount) : 0;
}

bool DefinitionEditor::HasChoice() const {
    return HasQuestion() && choice_ >= 1 && choice_ < survey_.Questions[question_].ChoiceCount;
}

bool DefinitionEditor::ConfirmRewrite() {
    if (!WillAsk()) return true;
    return ui_.Message(
               u"この操作をするとサンプルデータを修正しなくてはいけません。修正には時間がかかります。操作を続けますか？"_s,
               kOkCancel) == Answer::Ok;
}

QString DefinitionEditor::QuesText(int part) const {
    return HasQuestion() ? SplitText(survey_.Questions[question_]).value(part) : QString();
}

void DefinitionEditor::SetQuesText(int part, const QString& text) {
    if (!HasQuestion() || part < 0 || part >= kTextParts) return;
    QuestionRec& question = survey_.Questions[question_];
    QStringList parts = SplitText(question);
    parts[part] = OneLine(text);
    question.SetText(parts.join(u'\r') + u'\r');
}

QString DefinitionEditor::ChoiceText() const {
    return HasChoice() ? survey_.Choices(choice_, question_).Text : QString();
}

void DefinitionEditor::SetChoiceText(const QString& text) {
    if (HasChoice()) survey_.Choices(choice_, question_).Text = OneLine(text);
}

void DefinitionEditor::InsertQuestion() {
    if (survey_.QuestionCount == kMaxQuestions) {
        ui_.Message(u"これ以上質問は作れません"_s, kWarning);
        return;
    }
    if (!ConfirmRewrite()) return;
    QString number;
    if (!ui_.InputBox(u"挿入する質問の選択肢数"_s, u"選択肢数="_s, u"1～127,｢無回答｣を数えない"_s,
                      u"すでにある質問をコピーする時は何も入力せずにOKを押してください"_s, number))
        return;
    if (number.isEmpty()) {
        const int source = ui_.QuestionBox(u"どの質問をコピーしますか"_s, PlainQuestionList(survey_), 0);
        if (source < 0) return;
        CopyQuestion(source);
    } else {
        const int choices = RoundToInt16(LeadingNumber(number)) + 1;
        if (choices < 2 || choices > kMaxChoices) return;
        InsertEmptyQuestion(choices);
    }
    changed_ = structureChanged_ = true;
    SelectQuestion(question_);
    if (survey_.SampleCount() > 0)
        ui_.Message(u"\r\n　既に入力してあるサンプルの新しい質問での回答は全員『(0)無回答』になります。"_s,
                    kInformation);
}

void DefinitionEditor::InsertEmptyQuestion(int choices) {
    ApplyStructureEdit(survey_, maps_, question_, kWholeQuestion, 1);
    QuestionRec& question = survey_.Questions[question_];
    question.SetText(u"質問%1\r\r\r"_s.arg(question_ + 1));
    question.Anum = 1;
    question.LabelKind = 0;
    question.ChoiceCount = static_cast<qint16>(choices);
    ChoiceRec& none = survey_.Choices(0, question_);
    none.Text = u"無回答"_s;
    none.Status = 1 << kExclusive;
}

void DefinitionEditor::CopyQuestion(int source) {
    ApplyStructureEdit(survey_, maps_, question_, kWholeQuestion, 1);
    const int moved = source >= question_ ? source + 1 : source;
    survey_.Questions[question_] = survey_.Questions[moved];
    std::ranges::copy(survey_.Choices.Column(moved), survey_.Choices.Column(question_).begin());
    std::ranges::copy(survey_.QLimit.Column(moved), survey_.QLimit.Column(question_).begin());
}

void DefinitionEditor::DeleteQuestion() {
    if (!CanDeleteQuestion()) return;
    if (ui_.Message(u"本当に削除して構いませんか？"_s, kOkCancel + kWarning) != Answer::Ok || !ConfirmRewrite()) return;
    ApplyStructureEdit(survey_, maps_, question_, kWholeQuestion, -1);
    changed_ = structureChanged_ = true;
    SelectQuestion(question_);
}

bool DefinitionEditor::CanInsertChoice() const {
    return HasQuestion() && choice_ > 0 && survey_.Questions[question_].ChoiceCount != kMaxChoices;
}

bool DefinitionEditor::CanDeleteChoice() const {
    return HasChoice() && survey_.Questions[question_].ChoiceCount != 2;
}

void DefinitionEditor::InsertChoice() {
    if (CanInsertChoice() && ConfirmRewrite()) InsertEmptyChoice();
}

void DefinitionEditor::InsertEmptyChoice() {
    ApplyStructureEdit(survey_, maps_, question_, choice_, 1);
    changed_ = structureChanged_ = true;
}

void DefinitionEditor::DeleteChoice() {
    if (!CanDeleteChoice()) return;
    if (ui_.Message(u"本当に削除して構いませんか？"_s, kOkCancel + kWarning) != Answer::Ok || !ConfirmRewrite()) return;
    ApplyStructureEdit(survey_, maps_, question_, choice_, -1);
    changed_ = structureChanged_ = true;
    SelectChoice(choice_);
}

void DefinitionEditor::AddChoices(const QString& text, const std::function<bool()>& goOn) {
    QString lines = text;
    lines.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    // A line end closes its line: behind the last one there is none.
    for (qsizetype start = 0; start < lines.size();) {
        qsizetype end = lines.indexOf(u'\n', start);
        if (end < 0) end = lines.size();
        if (CanInsertChoice()) {
            InsertEmptyChoice();
            SetChoiceText(lines.mid(start, end - start));
            ++choice_;
        }
        start = end + 1;
        if (!goOn()) break;
    }
    ui_.Message(u"終了しました"_s, kOkOnly);
}

void DefinitionEditor::PasteChoices(const QString& text, const std::function<bool()>& goOn) {
    QString lines = text;
    lines.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    if (lines.endsWith(u'\n')) lines.chop(1);
    QStringList cells = lines.split(u'\n');
    for (; !cells.isEmpty() && HasChoice() && ChoiceText().isEmpty(); ++choice_)
        SetChoiceText(cells.takeFirst());
    if (!cells.isEmpty() && CanInsertChoice() && ConfirmRewrite()) AddChoices(cells.join(u'\n'), goOn);
}

int DefinitionEditor::Anum() const {
    return HasQuestion() ? survey_.Questions[question_].Anum : 0;
}

int DefinitionEditor::MostAnswers() const {
    return HasQuestion() ? survey_.Questions[question_].ChoiceCount - 1 : 0;
}

void DefinitionEditor::SetAnum(int anum) {
    if (!HasQuestion() || anum == Anum() || anum < 1 || anum > MostAnswers()) return;
    survey_.Questions[question_].Anum = static_cast<qint16>(anum);
    changed_ = true;
}

int DefinitionEditor::LabelKind() const {
    return HasQuestion() ? survey_.Questions[question_].LabelKind : 0;
}

void DefinitionEditor::SetLabelKind(int kind) {
    if (!HasQuestion() || kind < 0 || kind > 3) return;
    QuestionRec& question = survey_.Questions[question_];
    question.LabelKind = static_cast<qint16>(question.ChoiceCount > MostSymbols(kind) ? 0 : kind);
}

// An edit of conditions that would make a question depend on itself is taken back, and told as the error that it is.
void DefinitionEditor::EditConditions(const std::function<void()>& edit) {
    const auto before = survey_.QLimit;
    try {
        edit();
        RecalcQLimitDepth(survey_);
    } catch (const RuntimeError&) {
        survey_.QLimit = before;
        throw;
    }
    changed_ = true;
}

// The question then stands beside the one that its condition names.
void DefinitionEditor::MoveUp() {
    if (!CanMoveUp() || !ConfirmRewrite()) return;
    int parent = 0;
    int choice = 0;
    UnpackPosition(survey_.QLimit(1, question_).b, parent, choice);
    EditConditions([&] { CopyQuestionLimit(survey_, parent, question_); });
}

void DefinitionEditor::MoveDown() {
    if (!CanMoveDown() || !ConfirmRewrite()) return;
    const auto depth = [&](int q) { return survey_.QLimit(0, q).a; };
    const int next = question_ + 1;
    if (depth(question_ - 1) - depth(question_) == 1)
        EditConditions([&] { CopyQuestionLimit(survey_, question_ - 1, question_); });
    else if (next < survey_.QuestionCount && depth(next) - depth(question_) == 1)
        EditConditions([&] { CopyQuestionLimit(survey_, next, question_); });
    else
        PickLimit(false);
}

void DefinitionEditor::EditLimit() {
    if (HasQuestion() && ConfirmRewrite()) PickLimit(true);
}

// Opens the condition editor on the question; the old condition stays when an empty one isn't wanted here.
void DefinitionEditor::PickLimit(bool mayBeEmpty) {
    const LimitList old(survey_.QLimit.Column(question_));
    const LimitList picked = windows_.EditLimit(old);
    if (picked[1].a == 0 && !mayBeEmpty) return;
    if (std::equal(old.Data() + 1, old.Data() + kTextLines + 1, picked.Data() + 1)) return;
    EditConditions([&] {
        std::copy(picked.Data() + 1, picked.Data() + kTextLines + 1, survey_.QLimit.Column(question_).begin() + 1);
    });
}

QString DefinitionEditor::LimitInWords() const {
    return HasQuestion() ? LimitText(survey_, LimitList(survey_.QLimit.Column(question_)), true) : QString();
}

}  // namespace quibra
