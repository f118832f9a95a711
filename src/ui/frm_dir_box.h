// Picks a folder: the mounted volumes, the folders of one, the files of the folder, each list following the one before.
#pragma once

#include <QDialog>
#include <memory>

class QFileSystemModel;

namespace Ui {
class FrmDirBox;
}

namespace quibra {

class UserInterface;

class FrmDirBox : public QDialog {
  public:
    // Starts in `folder`.
    FrmDirBox(UserInterface& ui, const QString& folder, QWidget* parent);
    ~FrmDirBox() override;

    QString Folder() const;

  private:
    void FillDrives();
    void SetFolder(const QString& folder);
    void ShowDrive(const QString& folder);
    void drvDir_Change(int index);
    void dirDir_Change();

    std::unique_ptr<Ui::FrmDirBox> controls_;
    QFileSystemModel* folders_;
};

}  // namespace quibra
