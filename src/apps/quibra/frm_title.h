// The title window: what program this is. Stands on the screen while the program starts, and is the answer to
// "version".
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class FrmTitle;
}

namespace quibra {

class UserInterface;

enum class TitleUse { StartUp, About };

class FrmTitle : public QDialog {
    Q_OBJECT

  public:
    FrmTitle(UserInterface& ui, TitleUse use, QWidget* parent = nullptr);
    ~FrmTitle() override;

  private:
    std::unique_ptr<Ui::FrmTitle> ui_;
};

}  // namespace quibra
