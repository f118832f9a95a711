// A label whose value can be changed by pressing it: with the mouse, with Enter or Space, or by a screen reader, to
// which it is a button of its text. Looks like a field; a text too long for it is shortened, and whole in the tool tip.
#pragma once

#include <QLabel>

namespace quibra {

class ClickLabel : public QLabel {
    Q_OBJECT
  public:
    explicit ClickLabel(QWidget* parent = nullptr);

    // Sets text and tool tip.
    void Show(const QString& text);
    // While its value is being changed elsewhere the label stands without a ground.
    void SetEditing(bool editing);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void clicked();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    bool editing_ = false;
};

}  // namespace quibra
