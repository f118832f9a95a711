// 質問文と選択肢の一覧: the questionnaire to read, and its two text files. Shown beside other windows; follows the
// survey.
#pragma once

#include <QMainWindow>
#include <memory>

namespace Ui {
class FrmTable;
}

namespace quibra {

class SurveySession;

class FrmTable : public QMainWindow {
    Q_OBJECT
  public:
    explicit FrmTable(SurveySession& session, QWidget* parent = nullptr);
    ~FrmTable() override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void lstQno_Click(int row);
    void mnuListQuesCopy_Click();
    void RefreshQuestions();

    SurveySession& session_;
    std::unique_ptr<Ui::FrmTable> controls_;
};

}  // namespace quibra
