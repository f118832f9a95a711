// Picks one question, or several, from the list of all.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class FrmQBox;
}

namespace quibra {

class UserInterface;

class FrmQBox : public QDialog {
  public:
    enum class Pick { One, Several };

    // `questions` are the lines of the list as they stand.
    FrmQBox(UserInterface& ui, Pick pick, const QString& info, const QStringList& questions, QWidget* parent);
    ~FrmQBox() override;

    // The line picked, or -1.
    int Row() const;
    // One element a line.
    QList<bool> Selected() const;

  private:
    std::unique_ptr<Ui::FrmQBox> controls_;
};

}  // namespace quibra
