#include "apps/quibra-cli/console_interface.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "apps/quibra-cli/console.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QString ButtonText(Answer answer) {
    switch (answer) {
        case Answer::Yes:
            return u"はい"_s;
        case Answer::No:
            return u"いいえ"_s;
        case Answer::Cancel:
            return u"キャンセル"_s;
        default:
            return u"OK"_s;
    }
}

}  // namespace

ConsoleInterface::ConsoleInterface(bool assumeYes) : assumeYes_(assumeYes), terminal_(isatty(STDERR_FILENO) == 1) {}

ConsoleInterface::~ConsoleInterface() {
    ClearLine();
}

void ConsoleInterface::CallFile(const QString& path, const QString& name) {
    path_ = path;
    name_ = name;
}

Answer ConsoleInterface::Message(const QString& text, int style, const QString& /*title*/) {
    ClearLine();
    ErrorLine(path_.isEmpty() ? text : QString(text).replace(path_, name_));
    const int buttons = style & 7;
    if (buttons == kOkOnly) return Answer::Ok;
    const Answer agreement = buttons == kOkCancel ? Answer::Ok : Answer::Yes;
    const Answer answer = assumeYes_ ? agreement : SafeAnswer(style);
    ErrorLine(assumeYes_ ? u"→ %1"_s.arg(ButtonText(answer))
                         : u"→ %1（--yes なら「%2」）"_s.arg(ButtonText(answer), ButtonText(agreement)));
    return answer;
}

int ConsoleInterface::AskBox(const QString& info1, const QString& info2, const QString& func1, const QString& func2) {
    ClearLine();
    ErrorLine(u"%1\n%2\n（%3／%4）→ キャンセル"_s.arg(info1, info2, func1, func2));
    return 0;
}

bool ConsoleInterface::InputBox(const QString& title, const QString& name, const QString& range,
                                const QString& /*caution*/, QString& text) {
    ClearLine();
    ErrorLine(u"%1: %2 %3 → キャンセル"_s.arg(title, name, range));
    text.clear();
    return false;
}

int ConsoleInterface::QuestionBox(const QString& info, const QStringList& /*questions*/, int /*first*/) {
    ClearLine();
    ErrorLine(info + u" → キャンセル"_s);
    return -1;
}

bool ConsoleInterface::QuestionsBox(const QString& info, const QStringList& /*questions*/, QList<bool>& /*selected*/) {
    ClearLine();
    ErrorLine(info + u" → キャンセル"_s);
    return false;
}

void ConsoleInterface::ProgressOpen(const ProgressSpec& spec) {
    progressTitle_ = spec.title;
    Progress(spec.caption, 0);
}

bool ConsoleInterface::Progress(const QString& text, double fraction) {
    if (IsProgressDue()) {
        const int percent = static_cast<int>(std::min(fraction, 1.0) * 100);
        const QByteArray line = u"\r%1: %2 (%3%)\x1b[K"_s.arg(progressTitle_, text).arg(percent).toUtf8();
        std::fputs(line.constData(), stderr);
        lineShown_ = true;
        sinceLine_.start();
    }
    return true;
}

bool ConsoleInterface::IsProgressDue() const {
    constexpr qint64 kMillisecondsBetweenLines = 100;
    return terminal_ && (!sinceLine_.isValid() || sinceLine_.elapsed() >= kMillisecondsBetweenLines);
}

void ConsoleInterface::ProgressClose() {
    ClearLine();
}

void ConsoleInterface::ClearLine() {
    if (lineShown_) std::fputs("\r\x1b[K", stderr);
    lineShown_ = false;
}

}  // namespace quibra
