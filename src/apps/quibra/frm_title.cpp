#include "apps/quibra/frm_title.h"

#include <QApplication>
#include <QPushButton>

#include "core/help_topics.h"
#include "ui/form.h"
#include "ui_frm_title.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

void Enlarge(QLabel* label, double factor) {
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * factor);
    label->setFont(font);
}

}  // namespace

FrmTitle::FrmTitle(UserInterface& ui, TitleUse use, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::FrmTitle>()) {
    ui_->setupUi(this);
    Enlarge(ui_->lblName, 2.2);
    Enlarge(ui_->lblLatinName, 1.2);
    ui_->lblVersion->setText(u"バージョン %1"_s.arg(QCoreApplication::applicationVersion()));
    const int size = fontMetrics().height() * 4;
    const QPixmap icon = QApplication::windowIcon().pixmap(QSize(size, size), devicePixelRatio());
    ui_->imgIcon->setPixmap(icon);
    ui_->imgIcon->setVisible(!icon.isNull());
    if (use == TitleUse::StartUp) {
        setWindowFlags(Qt::SplashScreen);
        ui_->buttonBox->hide();
    }
    SetUpForm(this, ui, kHelpContents);
    connect(ui_->buttonBox, &QDialogButtonBox::accepted, this, &FrmTitle::accept);
}

FrmTitle::~FrmTitle() = default;

}  // namespace quibra
