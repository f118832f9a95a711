#include "entry/windows/sheet_box.h"

#include <QApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QMimeData>
#include <QSyntaxHighlighter>
#include <QTextBlock>
#include <QTimer>
#include <algorithm>
#include <optional>

#include "entry/sheet_parser.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr QChar kBreak = QChar::ParagraphSeparator;  // a line end in the document's own text
constexpr int kColorProperty = QTextFormat::UserProperty;

// What a line looked like when it was last shown.
struct LineLook : QTextBlockUserData {
    QString text;
    std::vector<SheetRun> runs;  // from the line's start
};

bool IsSame(const LineLook* look, const LineLook& line) {
    const auto same = [](const SheetRun& x, const SheetRun& y) {
        return x.start == y.start && x.length == y.length && x.color == y.color;
    };
    return look && look->text == line.text && std::ranges::equal(look->runs, line.runs, same);
}

bool EndsLine(QChar character) {
    return character == u'\r' || character == u'\n' || character == QChar::LineSeparator || character == kBreak;
}

std::vector<LineLook> LinesOf(const SheetText& sheet) {
    std::vector<LineLook> lines;
    const std::vector<SheetRun> runs = SheetRuns(sheet);
    auto run = runs.begin();
    const QString& text = sheet.Text;
    for (qsizetype start = 0; start <= text.size();) {
        qsizetype end = start;
        while (end < text.size() && !EndsLine(text[end]))
            ++end;
        LineLook& line = lines.emplace_back();
        line.text = text.mid(start, end - start);
        for (; run != runs.end() && run->start < end; ++run) {
            const auto from = static_cast<qint32>(std::max<qsizetype>(run->start, start));
            const auto to = static_cast<qint32>(std::min<qsizetype>(run->start + run->length, end));
            if (to > from) line.runs.push_back({from - static_cast<qint32>(start), to - from, run->color});
            if (run->start + run->length > end) break;
        }
        start = end + (QStringView(text).mid(end, 2) == u"\r\n" ? 2 : 1);
    }
    return lines;
}

// How many characters two texts have in common at their fronts and, behind those, at their ends. A pair of surrogates
// is not parted.
struct Common {
    Common(QStringView x, QStringView y) {
        const qsizetype shorter = std::min(x.size(), y.size());
        front = std::mismatch(x.begin(), x.begin() + shorter, y.begin()).first - x.begin();
        if (front > 0 && x[front - 1].isHighSurrogate()) --front;
        while (back < shorter - front && x[x.size() - 1 - back] == y[y.size() - 1 - back])
            ++back;
        if (back > 0 && x[x.size() - back].isLowSurrogate()) --back;
    }
    qsizetype front = 0;
    qsizetype back = 0;
};

std::optional<SheetKey> KeyThatCommits(const QKeyEvent& event) {
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return std::nullopt;
    switch (event.key()) {
        case Qt::Key_Up:
            return SheetKey::Up;
        case Qt::Key_Down:
            return SheetKey::Down;
        case Qt::Key_Space:
            return SheetKey::Space;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return SheetKey::Enter;
        default:
            return std::nullopt;
    }
}

}  // namespace

// Colours a line as it was last shown; what was typed into it since has the colour of text.
class SheetBox::Colorist : public QSyntaxHighlighter {
  public:
    explicit Colorist(QTextDocument* document) : QSyntaxHighlighter(document) {}

    std::array<QColor, kSheetColors> colors;
    // In the document's own places; no length: nothing is marked.
    int markStart = 0;
    int markLength = 0;

  protected:
    void highlightBlock(const QString& text) override {
        if (const auto* look = static_cast<const LineLook*>(currentBlockUserData())) {
            const Common common(look->text, text);
            const auto front = static_cast<int>(common.front);
            const auto back = static_cast<int>(look->text.size() - common.back);
            const auto shift = static_cast<int>(text.size() - look->text.size());
            for (const SheetRun& run : look->runs) {
                const int end = run.start + run.length;
                Color(run.start, std::min(end, front), run.color);
                Color(std::max(run.start, back) + shift, end + shift, run.color);
            }
        }
        const int start = std::max(markStart - currentBlock().position(), 0);
        const int end = markStart + markLength - currentBlock().position();
        if (markLength == 0 || start >= end || start >= text.size()) return;
        QTextCharFormat format = FormatOf(SheetColor::Error);
        format.setFontWeight(QFont::Bold);
        setFormat(start, end - start, format);
    }

  private:
    QTextCharFormat FormatOf(SheetColor color) const {
        QTextCharFormat format;
        if (color != SheetColor::Text) format.setForeground(colors[static_cast<size_t>(color)]);
        format.setProperty(kColorProperty, static_cast<int>(color));
        return format;
    }
    void Color(int start, int end, SheetColor color) {
        if (end > start) setFormat(start, end - start, FormatOf(color));
    }
};

SheetBox::SheetBox(QWidget* parent) : QPlainTextEdit(parent), colorist_(std::make_unique<Colorist>(document())) {
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAnywhere);
    connect(this, &QPlainTextEdit::textChanged, this, &SheetBox::NoteEdit);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &SheetBox::AskForLetters);
    AskForLetters();
}

SheetBox::~SheetBox() = default;

void SheetBox::SetColors(const std::array<QColor, kSheetColors>& colors) {
    if (colors == colorist_->colors) return;
    colorist_->colors = colors;
    colorist_->rehighlight();
}

void SheetBox::ShowSheet(const SheetText& sheet) {
    EndComposition();
    std::vector<LineLook> lines = LinesOf(sheet);
    QString text;
    text.reserve(sheet.Text.size());
    for (const LineLook& line : lines)
        text += line.text + kBreak;
    text.chop(1);

    showing_ = true;
    const int marked = std::exchange(colorist_->markLength, 0);
    const QString old = document()->toRawText();
    if (text != old) {
        const Common common(old, text);
        QTextCursor cursor(document());
        cursor.setPosition(static_cast<int>(common.front));
        cursor.setPosition(static_cast<int>(old.size() - common.back), QTextCursor::KeepAnchor);
        cursor.insertText(text.mid(common.front, text.size() - common.front - common.back));
    }
    std::vector<QTextBlock> changed;
    QTextBlock block = document()->firstBlock();
    for (LineLook& line : lines) {
        if (!IsSame(static_cast<const LineLook*>(block.userData()), line)) {
            auto* look = new LineLook;
            look->text = std::move(line.text);
            look->runs = std::move(line.runs);
            block.setUserData(look);
            changed.push_back(block);
        }
        block = block.next();
    }
    if (marked > 0 || changed.size() > lines.size() / 2) {
        colorist_->rehighlight();
    } else {
        for (const QTextBlock& one : changed)
            colorist_->rehighlightBlock(one);
    }
    document()->clearUndoRedoStacks();
    knownText_ = text;
    showing_ = false;
    AskForLetters();
}

QString SheetBox::RawText() const {
    return document()->toRawText().replace(QChar::LineSeparator, kBreak);
}

QString SheetBox::Text() const {
    return RawText().replace(kBreak, u"\r\n"_s);
}

void SheetBox::SetText(const QString& text) {
    ShowSheet({text, {}, 0});
}

int SheetBox::Caret() const {
    const QTextCursor cursor = textCursor();
    return cursor.position() + cursor.blockNumber();
}

int SheetBox::RawPlace(int place) const {
    int raw = 0;
    for (QTextBlock block = document()->firstBlock(); block.isValid(); block = block.next()) {
        // Between CR and LF is behind both.
        if (place < block.length()) return raw + std::max(place, 0);
        place -= block.length() + 1;
        raw += block.length();
    }
    return raw - 1;
}

void SheetBox::SetCaret(int caret) {
    QTextCursor cursor = textCursor();
    cursor.setPosition(RawPlace(caret));
    setTextCursor(cursor);
}

void SheetBox::MarkError(int start, int length) {
    showing_ = true;
    colorist_->markStart = RawPlace(start);
    colorist_->markLength = RawPlace(start + length) - colorist_->markStart;
    colorist_->rehighlight();
    QTextCursor cursor = textCursor();
    cursor.setPosition(colorist_->markStart);
    cursor.setPosition(colorist_->markStart + colorist_->markLength, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    showing_ = false;
}

void SheetBox::EndComposition() {
    if (composing_) QGuiApplication::inputMethod()->commit();
    if (!composing_) return;
    // The platform has kept it: its text counts as it stands.
    QInputMethodEvent commit;
    commit.setCommitString(preedit_);
    QCoreApplication::sendEvent(this, &commit);
}

void SheetBox::keyPressEvent(QKeyEvent* event) {
    const std::optional<SheetKey> key = KeyThatCommits(*event);
    // What the input method lets through while it composes is not for the text either.
    if (key && (composing_ || (handler_ && handler_(*key)))) {
        event->accept();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void SheetBox::inputMethodEvent(QInputMethodEvent* event) {
    preedit_ = event->preeditString();
    composing_ = !preedit_.isEmpty();
    QPlainTextEdit::inputMethodEvent(event);
    AskForLetters();
}

// A menu gives the focus back, and a look at another program or a message is no reason to read the sheet.
void SheetBox::focusOutEvent(QFocusEvent* event) {
    QPlainTextEdit::focusOutEvent(event);
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::MenuBarFocusReason) return;
    if (event->reason() != Qt::ActiveWindowFocusReason) {
        Q_EMIT Left();
        return;
    }
    QTimer::singleShot(0, this, [this] {
        const QWidget* now = QApplication::focusWidget();
        if (now && now != this && !QApplication::activeModalWidget()) Q_EMIT Left();
    });
}

QMimeData* SheetBox::createMimeDataFromSelection() const {
    const QTextCursor cursor = textCursor();
    SheetText selected;
    const auto control = [&](SheetControl::Kind kind) {
        selected.Controls.push_back({static_cast<qint32>(selected.Text.size()), kind});
    };
    for (QTextBlock block = document()->findBlock(cursor.selectionStart());
         block.isValid() && block.position() < cursor.selectionEnd(); block = block.next()) {
        if (block.position() > cursor.selectionStart()) {
            control(SheetControl::kLineEnd);
            selected.Text += u"\r\n"_s;
        }
        const int start = std::max(cursor.selectionStart() - block.position(), 0);
        const int end = std::min(cursor.selectionEnd() - block.position(), block.length() - 1);
        int at = start;
        const auto addTo = [&](int place) {
            selected.Text += QStringView(block.text()).mid(at, std::max(place - at, 0));
            at = std::max(at, place);
        };
        for (const QTextLayout::FormatRange& range : block.layout()->formats()) {
            addTo(std::min(range.start, end));
            control(static_cast<SheetControl::Kind>(range.format.intProperty(kColorProperty)));
            addTo(std::min(range.start + range.length, end));
            control(SheetControl::kTextColor);
        }
        addTo(end);
    }
    auto* copied = new QMimeData;
    copied->setText(QString(selected.Text).replace(u"\r\n"_s, u"\n"_s));
    const QByteArray rtf = ClipboardRtf(selected, look_);
    copied->setData(u"text/rtf"_s, rtf);
    copied->setData(u"application/rtf"_s, rtf);
    return copied;
}

void SheetBox::NoteEdit() {
    if (showing_) return;
    QString text = RawText();
    if (text == knownText_) return;  // only the colours have changed
    knownText_ = std::move(text);
    AskForLetters();
    Q_EMIT Typed();
}

void SheetBox::AskForLetters() {
    if (showing_ || composing_) return;
    const QTextCursor cursor = textCursor();
    const Qt::InputMethodHints hints = IsInsideEssay(cursor.block().text(), cursor.positionInBlock())
                                           ? Qt::ImhMultiLine
                                           : Qt::ImhMultiLine | Qt::ImhLatinOnly | Qt::ImhPreferLatin |
                                                 Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase;
    if (hints != inputMethodHints()) setInputMethodHints(hints);
}

}  // namespace quibra
