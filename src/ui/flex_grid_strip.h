// The strip of a FlexGrid's fixed row: the columns' edges, and the captions the model gives them, which flow like
// cells.
#pragma once

#include <QHeaderView>

namespace quibra {

class FlexGridStrip : public QHeaderView {
  public:
    explicit FlexGridStrip(int leastColumnWidth, QWidget* parent);

    QSize sizeHint() const override;

    // Section 0 stands over column 0, which stays in sight.
    bool firstFloats = false;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    QString Caption(int section) const;
    int FlowWidth(int section) const;
    int Lines() const;
};

}  // namespace quibra
