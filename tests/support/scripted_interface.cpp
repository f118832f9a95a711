#include "support/scripted_interface.h"

#include <map>
#include <utility>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

template <typename T>
T TakeOr(std::deque<T>& queue, T safe) {
    if (queue.empty()) return safe;
    T answer = std::move(queue.front());
    queue.pop_front();
    return answer;
}

// Gives `value` the answer; false, and the value stays, when there is none or it is Cancel.
template <typename T>
bool Take(std::deque<std::optional<T>>& queue, T& value) {
    if (queue.empty()) return false;
    const bool answered = queue.front().has_value();
    if (answered) value = *queue.front();
    queue.pop_front();
    return answered;
}

QString OrCancel(const QString& text) {
    return text.isEmpty() ? u"cancel"_s : text;
}

}  // namespace

QString ScriptedInterface::NameOf(Answer answer) {
    static const std::map<Answer, QString> names{
        {Answer::Ok, u"Ok"_s}, {Answer::Cancel, u"Cancel"_s}, {Answer::Yes, u"Yes"_s}, {Answer::No, u"No"_s}};
    return names.at(answer);
}

QStringList ScriptedInterface::Lines(const QString& prefix) const {
    QStringList lines;
    for (const QString& line : transcript)
        if (line.startsWith(prefix)) lines += line;
    return lines;
}

QStringList ScriptedInterface::TakeTranscript() {
    return std::exchange(transcript, {});
}

void ScriptedInterface::Note(QString line) {
    transcript += line.replace(u'\r', u"\\r"_s).replace(u'\n', u"\\n"_s);
}

Answer ScriptedInterface::Message(const QString& text, int style, const QString& title) {
    const Answer answer = TakeOr(messageAnswers, SafeAnswer(style));
    Note(u"message %1 "_s.arg(style) + title + u": "_s + text + u" -> "_s + NameOf(answer));
    return answer;
}

int ScriptedInterface::AskBox(const QString& info1, const QString& info2, const QString& func1, const QString& func2) {
    const int answer = TakeOr(askAnswers, 0);
    Note(u"ask "_s + QStringList{info1, info2, func1, func2}.join(u" | "_s) + u" -> %1"_s.arg(answer));
    return answer;
}

bool ScriptedInterface::InputBox(const QString& title, const QString& name, const QString& range,
                                 const QString& caution, QString& text) {
    QString typed;
    const bool answered = Take(inputAnswers, typed);
    Note(u"input "_s + QStringList{title, name, range, caution, text}.join(u" | "_s) + u" -> "_s +
         (answered ? typed : u"cancel"_s));
    text = typed;
    return answered;
}

int ScriptedInterface::QuestionBox(const QString& info, const QStringList& questions, int first) {
    const int answer = TakeOr(questionAnswers, -1);
    Note(u"question "_s + info + u" from %1 of %2 -> %3"_s.arg(first).arg(questions.size()).arg(answer));
    return answer;
}

bool ScriptedInterface::QuestionsBox(const QString& info, const QStringList& questions, QList<bool>& selected) {
    const bool answered = Take(questionsAnswers, selected);
    QString marks;
    for (const bool on : selected)
        marks += on ? u'1' : u'0';
    Note(u"questions "_s + info + u" of %1 -> "_s.arg(questions.size()) + (answered ? marks : u"cancel"_s));
    return answered;
}

QString ScriptedInterface::DirBox() {
    const QString answer = TakeOr(folderAnswers, QString());
    Note(u"folder -> "_s + OrCancel(answer));
    return answer;
}

QString ScriptedInterface::FileBox(const QString& path, const QString& filter, bool save) {
    const QString answer = TakeOr(fileAnswers, QString());
    Note((save ? u"file save "_s : u"file open "_s) + path + u" | "_s + filter + u" -> "_s + OrCancel(answer));
    return answer;
}

void ScriptedInterface::ProgressOpen(const ProgressSpec& spec) {
    Note(u"progress open "_s + QStringList{spec.title, spec.info, spec.caption}.join(u" | "_s));
    spec_ = spec;
    progressCalls_ = 0;
    stopped_ = stopAtProgress == kStopAtOpen && ConfirmStop(spec_);
    ++openProgressWindows_;
}

bool ScriptedInterface::Progress(const QString& text, double fraction) {
    Note(u"progress "_s + text + u" %1"_s.arg(fraction));
    ++progressCalls_;
    if (!stopped_ && stopAtProgress > 0 && progressCalls_ >= stopAtProgress) stopped_ = ConfirmStop(spec_);
    return !stopped_;
}

void ScriptedInterface::ProgressClose() {
    Note(u"progress close"_s);
    --openProgressWindows_;
}

void ScriptedInterface::Beep() {
    Note(u"beep"_s);
}

void ScriptedInterface::Busy(bool on) {
    Note(on ? u"busy on"_s : u"busy off"_s);
    busy_ = on;
}

void ScriptedInterface::HelpContext(int topic) {
    Note(u"help %1"_s.arg(topic));
}

}  // namespace quibra
