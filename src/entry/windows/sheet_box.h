// The rich text box of an answer sheet. It shows a sheet in the colours of its parts, lets it be typed into, and hands
// the keys that commit to its window before the text sees them.
//
// Text goes in and out with CR LF at line ends, places count both characters, as the sheet's logic counts them. A sheet
// that is shown again changes only what differs, so that a rebuild at every key costs little, and what was typed before
// it can no more be undone.
//
// An input method's composition is no text yet: while there is one, no key is handed out and nothing is shown anew.
// Outside of texts between slashes the box asks the input method for Latin letters.
#pragma once

#include <QPlainTextEdit>
#include <functional>
#include <memory>

#include "entry/sheet_text.h"

namespace quibra {

enum class SheetKey { Up, Down, Space, Enter };

class SheetBox : public QPlainTextEdit {
    Q_OBJECT
  public:
    explicit SheetBox(QWidget* parent = nullptr);
    ~SheetBox() override;

    // Gets each key that commits and says whether it is used up; otherwise the box acts on it as on any key.
    void SetKeyHandler(std::function<bool(SheetKey)> handler) { handler_ = std::move(handler); }
    // By SheetColor; the first one is the palette's.
    void SetColors(const std::array<QColor, kSheetColors>& colors);

    // Font and colours, for the clipboard's rich text.
    void SetLook(const SheetLook& look) { look_ = look; }

    void ShowSheet(const SheetText& sheet);
    QString Text() const;
    // Without colours.
    void SetText(const QString& text);
    int Caret() const;
    // A place behind the end is the end.
    void SetCaret(int caret);
    // Selects the stretch and shows it bold in the colour of errors, until the next text is shown.
    void MarkError(int start, int length);

    // Takes a composition for text, as leaving the box does.
    void EndComposition();
    bool IsComposing() const { return composing_; }

  Q_SIGNALS:
    // Somebody has changed the text by hand.
    void Typed();
    // The focus has gone to another control or window of the program.
    void Left();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;

  private:
    class Colorist;

    void NoteEdit();
    void AskForLetters();
    QString RawText() const;
    int RawPlace(int place) const;

    std::function<bool(SheetKey)> handler_;
    std::unique_ptr<Colorist> colorist_;
    SheetLook look_;
    QString knownText_;  // what it was when the last edit was told
    QString preedit_;
    bool composing_ = false;
    bool showing_ = false;
};

}  // namespace quibra
