#include "ui/frm_dir_box.h"

#include <QDir>
#include <QFileSystemModel>
#include <QScrollBar>
#include <QStorageInfo>

#include "core/help_topics.h"
#include "ui/form.h"
#include "ui_frm_dir_box.h"

using namespace Qt::StringLiterals;

namespace quibra {

FrmDirBox::FrmDirBox(UserInterface& ui, const QString& folder, QWidget* parent)
    : QDialog(parent), controls_(std::make_unique<Ui::FrmDirBox>()), folders_(new QFileSystemModel(this)) {
    controls_->setupUi(this);
    folders_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    folders_->setRootPath(QDir::rootPath());
    controls_->dirDir->setModel(folders_);
    for (int column = 1; column < folders_->columnCount(); ++column)
        controls_->dirDir->hideColumn(column);
    SetUpForm(this, ui, kHelpDialogs);
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().lineSpacing() * 26);
    FillDrives();
    connect(controls_->drvDir, &QComboBox::activated, this, &FrmDirBox::drvDir_Change);
    connect(controls_->dirDir->selectionModel(), &QItemSelectionModel::currentChanged, this, &FrmDirBox::dirDir_Change);
    // The model reads and sorts folders in the background; until the person moves the list, the chosen one stays in it.
    connect(folders_, &QFileSystemModel::directoryLoaded, this, &FrmDirBox::KeepInSight);
    connect(folders_, &QFileSystemModel::layoutChanged, this, &FrmDirBox::KeepInSight, Qt::QueuedConnection);
    connect(controls_->dirDir, &QTreeView::expanded, this, [this] { keepInSight_ = false; });
    connect(controls_->dirDir, &QTreeView::collapsed, this, [this] { keepInSight_ = false; });
    connect(controls_->dirDir->verticalScrollBar(), &QScrollBar::actionTriggered, this,
            [this] { keepInSight_ = false; });
    connect(controls_->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(controls_->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    SetFolder(!folder.isEmpty() && QDir(folder).exists() ? folder : QDir::homePath());
    controls_->dirDir->setFocus();
}

FrmDirBox::~FrmDirBox() = default;

QString FrmDirBox::Folder() const {
    return folders_->filePath(controls_->dirDir->currentIndex());
}

void FrmDirBox::FillDrives() {
    const QIcon icon = style()->standardIcon(QStyle::SP_DriveHDIcon);
    const auto add = [&](const QString& name, const QString& path) {
        if (controls_->drvDir->findData(path) < 0)
            controls_->drvDir->addItem(icon, name.isEmpty() ? path : name + u"  "_s + path, path);
    };
    add(u"ホーム"_s, QDir::homePath());
    add(u"コンピューター"_s, QDir::rootPath());
    // The kernel's own file systems hold no one's files.
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes())
        if (volume.isValid() && volume.isReady() && QFileInfo(volume.rootPath()).isDir() &&
            (volume.device().startsWith("/dev/") || volume.device().contains(':')))
            add(volume.name(), volume.rootPath());
}

void FrmDirBox::SetFolder(const QString& folder) {
    const QModelIndex index = folders_->index(folder);
    controls_->dirDir->setCurrentIndex(index);
    controls_->dirDir->expand(index);
    keepInSight_ = true;
    KeepInSight();
}

void FrmDirBox::KeepInSight() {
    if (!keepInSight_) return;
    controls_->dirDir->scrollTo(controls_->dirDir->currentIndex(), QAbstractItemView::PositionAtCenter);
    // That opens the folders above, which is not the person's doing.
    keepInSight_ = true;
}

void FrmDirBox::drvDir_Change(int index) {
    const QString path = controls_->drvDir->itemData(index).toString();
    // A volume that was taken out meanwhile leaves the lists as they are.
    if (QDir(path).exists()) SetFolder(path);
}

void FrmDirBox::dirDir_Change() {
    const QString folder = Folder();
    controls_->fleDir->clear();
    controls_->fleDir->addItems(QDir(folder).entryList(QDir::Files, QDir::Name | QDir::IgnoreCase | QDir::LocaleAware));
    controls_->lblPath->setText(QDir::toNativeSeparators(folder));
    controls_->cmdOK->setEnabled(!folder.isEmpty());
    ShowDrive(folder);
}

void FrmDirBox::ShowDrive(const QString& folder) {
    // Of the places that hold the folder, the nearest.
    int nearest = -1;
    qsizetype length = 0;
    for (int i = 0; i < controls_->drvDir->count(); ++i) {
        const QString path = controls_->drvDir->itemData(i).toString();
        const bool holds = folder == path || folder.startsWith(path.endsWith(u'/') ? path : path + u'/');
        if (!holds || path.size() <= length) continue;
        nearest = i;
        length = path.size();
    }
    controls_->drvDir->setCurrentIndex(nearest);
}

}  // namespace quibra
