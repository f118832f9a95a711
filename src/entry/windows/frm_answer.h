// One sample in words (サンプルの内容), a reading aid beside the entry window. It shows what it is told to and changes
// nothing. The session must outlive the window.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class FrmAnswer;
}

namespace quibra {

class SurveySession;

class FrmAnswer : public QDialog {
    Q_OBJECT

  public:
    explicit FrmAnswer(SurveySession& session, QWidget* parent = nullptr);
    ~FrmAnswer() override;

    // Sample `dno`, of the questions before `endQ`. A place that holds no sample empties the window.
    void ShowSample(qint32 dno, int endQ);

  protected:
    void hideEvent(QHideEvent* event) override;

  private:
    void cmdChangeFromQ_Click();
    void Refresh();

    SurveySession& session_;
    std::unique_ptr<Ui::FrmAnswer> ui_;
    qint32 dno_ = -1;
    int fromQ_ = 0;
    int endQ_ = 0;
};

}  // namespace quibra
