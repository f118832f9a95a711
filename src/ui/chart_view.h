// A chart in a window, in the window's colours and font. Before there is a chart it says how to get one.
#pragma once

#include <QWidget>

#include "ui/chart/chart_painter.h"

namespace quibra {

class ChartView : public QWidget {
    Q_OBJECT
  public:
    explicit ChartView(QWidget* parent = nullptr);

    void SetTable(const ChartTable& table);
    void SetStyle(ChartStyle style);
    // What stands in place of a chart that is not there yet.
    void SetHint(const QString& hint);
    const ChartTable& Table() const { return table_; }
    ChartStyle Style() const { return style_; }
    bool IsEmpty() const { return table_.Labels.isEmpty(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    ChartTable table_;
    ChartStyle style_;
    QString hint_;
};

}  // namespace quibra
