// The status boxes of a choice, which pull each other along, and the texts that a coded choice's answers hold.
#include <QFileInfo>
#include <QScopeGuard>
#include <algorithm>

#include "companion/limit_terms.h"
#include "conditions/block_condition.h"
#include "core/answer_store.h"
#include "core/binary_file.h"
#include "core/code_page.h"
#include "core/labels.h"
#include "core/numbers.h"
#include "core/plane_masks.h"
#include "design/definition_editor.h"
#include "entry/code_table.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QString WholeText(const QString& path) {
    BinaryFile file = BinaryFile::OpenToRead(path);
    QByteArray bytes(file.Size(), Qt::Uninitialized);
    auto* to = reinterpret_cast<unsigned char*>(bytes.data());
    bytes.resize(static_cast<qsizetype>(file.Read(to, static_cast<size_t>(bytes.size()))));
    return DecodeCodePage(bytes);
}

// The first line that no code table has; a null text when there is none.
QString FaultyLine(QString text) {
    text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    for (const QString& line : text.split(u'\n'))
        if (!line.startsWith(u'\'') && line.count(u',') > 1) return line;
    return QString();
}

// The texts of one sample's answers `c`; without a table a text becomes its name. True when one is another now.
bool ReassignCodes(Survey& survey, qint32 dno, int q, int c, const CodeTable* table, bool byCode) {
    std::array<qint16, kMaxAnswers> answers;
    std::array<QString, kMaxAnswers> texts;
    qint16 count = 0;
    GetAnswersEssay(survey, dno, q, count, answers.data(), texts.data());
    bool changed = false;
    for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
        if (answers[i] != c) continue;
        QString code;
        QString name;
        SplitCodeEssay(texts[i], code, name);
        if (table) {
            (byCode ? name : code) = u"?"_s;
            table->Complete(code, name);
            name.prepend(code + u':');
        }
        changed |= texts[i] != name;
        texts[i] = name;
    }
    if (changed) SetAnswersEssay(survey, dno, q, count, answers.data(), texts.data());
    return changed;
}

}  // namespace

bool DefinitionEditor::Status(int index) const {
    return HasQuestion() && choice_ < survey_.Questions[question_].ChoiceCount &&
           GetChoiceStatus(survey_, question_, choice_, index) != 0;
}

bool DefinitionEditor::SetStatus(int index, bool on) {
    if (!HasChoice() || index < kEssay || index > kMultiple) return false;
    if (Status(index) == on) return true;
    if (index == kEssay || index == kExclusive) {
        if (!ConfirmRewrite()) return false;
        changed_ = true;
    }
    ToggleChoiceStatus(survey_, question_, choice_, index);
    ChoiceRec& choice = survey_.Choices(choice_, question_);
    if (index == kEssay && !on) {
        SetStatus(kNumber, false);
        SetStatus(kCode, false);
    } else if ((index == kNumber || index == kCode) && on) {
        SetStatus(kEssay, true);
        SetStatus(index == kNumber ? kCode : kNumber, false);
    }
    if (index == kNumber && on) AskRange(choice);
    // A click on any other box of a coded choice, too: it stays coded, without a file.
    if (index != kCode || !on) choice.CodeText.clear();
    if (index == kCode) on ? ChooseCodeTable() : RemoveCode();
    if (index == kOther && on) ReplaceOther();
    return true;
}

void DefinitionEditor::AskRange(ChoiceRec& choice) {
    QString text = NumberText(choice.Low);
    if (ui_.InputBox(u"数量の条件"_s, u"最小値は"_s, QString(), QString(), text)) choice.Low = LeadingNumber(text);
    text = NumberText(choice.High);
    if (ui_.InputBox(u"数量の条件"_s, u"最大値は"_s, NumberText(choice.Low) + u"～"_s, QString(), text))
        choice.High = LeadingNumber(text);
    if (choice.High < choice.Low) std::swap(choice.Low, choice.High);
}

void DefinitionEditor::ChooseCodeTable() {
    ChoiceRec& choice = survey_.Choices(choice_, question_);
    const QFileInfo survey(survey_.FileName);
    const QString path = ui_.FileBox(survey.path() + u'/', u"全てのﾌｧｲﾙ|*.*|"_s, false);
    if (path.isEmpty()) {
        choice.CodeText.clear();
        return;
    }
    QString name = path;
    if (QFileInfo(path).canonicalPath() == survey.canonicalPath() &&
        ui_.Message(u"コード表ﾌｧｲﾙは常にアンケートファイルと同じディレクトリに在るとしますか？"_s, kYesNo) ==
            Answer::Yes)
        name = QFileInfo(path).fileName();
    QString fault;
    try {
        fault = FaultyLine(WholeText(path));
    } catch (const RuntimeError& error) {
        ui_.Message(error.Text() + u" : \r\n"_s + path, kOkOnly);
        return;
    }
    if (!fault.isNull()) {
        ui_.Message(u"コード表として使えるファイルになっていません : "_s + fault, kOkOnly);
        return;
    }
    choice.CodeText = name;
    if (survey_.SampleCount() == 0) return;
    if (changed_) {
        ui_.Message(u"既にある記述回答に対する割り付けは要回答チェックが表示されていない時だけ出来ます。"_s, kOkOnly);
        return;
    }
    const int way = ui_.AskBox(
        u"既にある記述回答に対して割り付けしますか？　コードを見て割り付けするか単語を見て割り付けするか選べます。ｷｬﾝｾﾙを選ぶと割り付けをしません。"_s,
        u"この操作は後でキャンセル出来ません。"_s, u"コードを見て割り付け"_s, u"単語を見て割り付け"_s);
    if (way != 0) ReassignCode(question_, choice_, way == 1 ? CodeMode::ByCode : CodeMode::ByWord);
}

void DefinitionEditor::RemoveCode() {
    if (changed_)
        ui_.Message(u"コードを消すのは要回答チェックが表示されていない時だけ出来ます。"_s, kOkOnly);
    else if (ui_.Message(u"コ－ドを消しますか？"_s, kYesNo) == Answer::Yes)
        ReassignCode(question_, choice_, CodeMode::NameAlone);
}

// A question has one その他 as a rule: offers to take it from the choice that had it.
void DefinitionEditor::ReplaceOther() {
    for (int c = 1; c < survey_.Questions[question_].ChoiceCount; ++c) {
        if (c == choice_ || !survey_.Choices(c, question_).Has(kOther)) continue;
        const QString text = u"その他選択肢は通常１つの質問につき１つです。今まで"_s +
                             ChoiceLabel(survey_, question_, c, true, true) + u"がその他選択肢でしたが、交替しますか"_s;
        if (ui_.Message(text, kYesNo) == Answer::Yes) ToggleChoiceStatus(survey_, question_, c, kOther);
        return;
    }
}

void DefinitionEditor::ApplyMultipleToAll() {
    if (!HasChoice()) return;
    const bool on = Status(kMultiple);
    for (int c = 1; c < survey_.Questions[question_].ChoiceCount; ++c)
        if (survey_.Choices(c, question_).Has(kMultiple) != on) ToggleChoiceStatus(survey_, question_, c, kMultiple);
}

// Every answer that the choice has been given, with or without a text. A table that can't be used is told once.
void DefinitionEditor::ReassignCode(int q, int c, CodeMode mode) {
    if (changed_) return;  // the samples are still stored by the old definition
    work_ = Work::Reassigning;
    stopped_ = false;
    const auto done = qScopeGuard([this] {
        work_ = Work::None;
        windows_.ShowProgress(u"終了"_s);
    });
    CodeTables tables;
    const CodeTable* table = nullptr;
    const QString path = CodeTablePath(survey_, q, c);
    const auto attempt = [&](const std::function<void()>& step) {
        try {
            step();
            return true;
        } catch (const RuntimeError& error) {
            ui_.Message(error.Text() + u" : \r\n"_s + path, kOkOnly);
            return false;
        }
    };
    if (mode != CodeMode::NameAlone && !attempt([&] { table = &tables.At(path); })) return;

    LimitList list;
    list[1] = {kLimitAnd, PackPosition(q, c)};
    const BlockCondition chosen(survey_, list);
    SamplePlanes planes(survey_, chosen.FieldCount());
    SampleChange change(session_.changes, ChangeCause::Rewrite);
    const qint32 samples = survey_.SampleCount();
    for (qint32 first = 0; first < samples; first += kBlockSamples) {
        planes.Load(first, std::min(samples - first, kBlockSamples));
        BlockMask mask = planes.Valid();
        chosen.Restrict(planes, mask);
        const bool whole = attempt([&] {
            ForEachSample(mask, [&](int s) {
                change.Open(first + s);
                if (ReassignCodes(survey_, first + s, q, c, table, mode == CodeMode::ByCode)) session_.ChangedOn();
            });
        });
        if (!whole || !ShowProgress(first + planes.Count(), samples)) return;
    }
}

}  // namespace quibra
