// The bar of the progress window. Each call paints a stretch of it in a colour of its own, so it remembers every
// percent's colour instead of one length.
#pragma once

#include <QWidget>
#include <array>

namespace quibra {

class PercentPicture : public QWidget {
  public:
    explicit PercentPicture(QWidget* parent = nullptr);

    // Empties the bar.
    void Reset();
    // Colours up to `percent` (0 to 100), or wipes back to it.
    void Progress(int percent);

    int Percent() const { return last_; }
    // Of the stretch from `percent` to the next, 0 to 99.
    QRgb ColorAt(int percent) const { return colors_.at(percent); }

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::array<QRgb, 100> colors_;
    int last_ = 0;
};

}  // namespace quibra
