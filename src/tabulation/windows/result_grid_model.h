// A TotalSheet's cells as a model for FlexGrid. The sheet changes its cells without telling; Sync tells the views what
// has become of them. Between two Syncs cells that are gone read as empty. Survey and sheet must
// outlive the model.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "tabulation/total_sheet.h"
#include "ui/flex_grid.h"

namespace quibra {

class ResultGridModel : public QAbstractTableModel {
    Q_OBJECT
  public:
    ResultGridModel(const Survey& survey, TotalSheet& sheet, QObject* parent);

    // The sheet as it now stands. Rows that were only added keep the selection.
    void Sync();
    // The same when it has a new result: everything is told anew.
    void SyncAll();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value, int role) override;

  private:
    void TakeShape();
    bool Holds(int row, int column) const;
    bool IsFigure(int row, int column) const;
    QStringList FixedWords(int column) const;
    int LabelColumn(int column) const;
    QString Spoken(int row, int column) const;

    const Survey& survey_;
    TotalSheet& sheet_;
    int columns_ = 1;
    std::vector<GridRowKind> kinds_;   // one a row
    std::vector<bool> figureColumns_;  // one a column
    int captionRow_ = 0;               // the row that heads the columns; 0 for none
};

}  // namespace quibra
