// frmWord: the words that a search in an essay list looks for, up to kMaxSearchWords.
#pragma once

#include <QDialog>
#include <QStringList>
#include <memory>

namespace Ui {
class frmWord;
}

namespace quibra {

class UserInterface;

class FrmWord : public QDialog {
    Q_OBJECT
  public:
    // Starts with the words of the last search. `ui` must outlive the window.
    FrmWord(UserInterface& ui, const QStringList& words, QWidget* parent = nullptr);
    ~FrmWord() override;

    // The words that are not empty.
    QStringList Words() const;

  private:
    void lstWord_Click();
    void txtWord_Change(const QString& text);
    void cmdAdd_Click();
    void cmdDel_Click();
    void cmdAllDel_Click();

    void AddEmpty();
    void Refresh();

    std::unique_ptr<Ui::frmWord> ui_;
};

}  // namespace quibra
