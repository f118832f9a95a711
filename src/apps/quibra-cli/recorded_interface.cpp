#include "apps/quibra-cli/recorded_interface.h"

#include <map>
#include <string>
#include <utility>

#include "core/runtime_error.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

// The button that an answer names, where a box of this style has it; otherwise the safe one.
Answer ButtonOf(const Json& answer, int style) {
    static const std::map<std::string, Answer> kButtons{
        {"ok", Answer::Ok}, {"cancel", Answer::Cancel}, {"yes", Answer::Yes}, {"no", Answer::No}};
    const auto found = answer.is_string() ? kButtons.find(answer.get<std::string>()) : kButtons.end();
    const Answer button = found != kButtons.end() ? found->second : Answer::Cancel;
    const int buttons = style & 7;
    const bool offered = button == Answer::Cancel ? buttons == kOkCancel || buttons == kYesNoCancel
                         : button == Answer::Ok   ? buttons == kOkOnly || buttons == kOkCancel
                                                  : buttons == kYesNo || buttons == kYesNoCancel;
    const bool given = found != kButtons.end() || answer.is_null();
    return offered && given ? button : SafeAnswer(style);
}

QString TextOf(const Json& answer) {
    return answer.is_string() ? QString::fromStdString(answer.get<std::string>()) : QString();
}

// A number from `low` up to `high`, or `otherwise`.
int NumberOf(const Json& answer, int low, qint64 high, int otherwise) {
    if (!answer.is_number_integer() || answer < low || answer > high) return otherwise;
    return answer.get<int>();
}

}  // namespace

void RecordedInterface::SetAnswers(const Json& answers) {
    if (!answers.is_array()) throw RuntimeError(kErrorTypeMismatch, u"answers：配列ではありません"_s);
    answers_.assign(answers.begin(), answers.end());
}

Json RecordedInterface::TakeBoxes() {
    return std::exchange(boxes_, Json::array());
}

Json RecordedInterface::Record(Json box) {
    boxes_.push_back(std::move(box));
    if (answers_.empty()) return nullptr;
    Json answer = std::move(answers_.front());
    answers_.pop_front();
    return answer;
}

Answer RecordedInterface::Message(const QString& text, int style, const QString& /*title*/) {
    const bool answered = !answers_.empty();
    const Json answer = Record({{"Box", "Message"}, {"Style", style}, {"Text", text.toStdString()}});
    return answered ? ButtonOf(answer, style) : SafeAnswer(style);
}

int RecordedInterface::AskBox(const QString& info1, const QString& info2, const QString& func1, const QString& func2) {
    return NumberOf(Record({{"Box", "Ask"},
                            {"Text", info1.toStdString()},
                            {"Info", info2.toStdString()},
                            {"Buttons", {func1.toStdString(), func2.toStdString()}}}),
                    1, 2, 0);
}

bool RecordedInterface::InputBox(const QString& title, const QString& name, const QString& range,
                                 const QString& caution, QString& text) {
    const Json answer = Record({{"Box", "Input"},
                                {"Title", title.toStdString()},
                                {"Text", name.toStdString()},
                                {"Range", range.toStdString()},
                                {"Caution", caution.toStdString()},
                                {"Default", text.toStdString()}});
    text = TextOf(answer);
    return answer.is_string();
}

int RecordedInterface::QuestionBox(const QString& info, const QStringList& questions, int first) {
    const Json answer = Record({{"Box", "Question"}, {"Text", info.toStdString()}, {"First", first}});
    return NumberOf(answer, first, questions.size() - 1, -1);
}

bool RecordedInterface::QuestionsBox(const QString& info, const QStringList& questions, QList<bool>& selected) {
    const Json answer = Record({{"Box", "Questions"}, {"Text", info.toStdString()}});
    if (!answer.is_array()) return false;
    QList<bool> chosen(questions.size());
    for (const Json& element : answer) {
        const int q = NumberOf(element, 0, questions.size() - 1, -1);
        if (q < 0) return false;
        chosen[q] = true;
    }
    selected = chosen;
    return true;
}

QString RecordedInterface::DirBox() {
    return TextOf(Record({{"Box", "Dir"}}));
}

QString RecordedInterface::FileBox(const QString& path, const QString& filter, bool save) {
    return TextOf(
        Record({{"Box", "File"}, {"Path", path.toStdString()}, {"Filter", filter.toStdString()}, {"Save", save}}));
}

}  // namespace quibra
