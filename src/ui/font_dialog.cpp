#include "ui/font_dialog.h"

#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QListView>
#include <QPushButton>

#include "core/help_topics.h"
#include "ui/form.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

void ShowColor(QPushButton* button, const QColor& color) {
    QPixmap swatch(button->iconSize());
    swatch.fill(color);
    button->setIcon(swatch);
}

}  // namespace

// Qt's own dialog has no colour, so a button for it joins the buttons at its foot.
bool PickFont(UserInterface& ui, QWidget* parent, QFont& font, QColor& color) {
    QFontDialog dialog(font, parent);
    dialog.setOption(QFontDialog::DontUseNativeDialog);
    QColor chosen = color;
    auto* button = new QPushButton(u"文字の色(&C)..."_s, &dialog);
    button->setObjectName(u"cmdColor"_s);
    button->setAutoDefault(false);
    ShowColor(button, chosen);
    QObject::connect(button, &QPushButton::clicked, &dialog, [&] {
        const QColor picked = QColorDialog::getColor(chosen, &dialog, {}, QColorDialog::DontUseNativeDialog);
        if (!picked.isValid()) return;
        chosen = picked;
        ShowColor(button, chosen);
    });
    // The labels name what they stand for; the last list belongs to the field of the size.
    SetUpForm(&dialog, ui, kHelpDialogs);
    if (const auto lists = dialog.findChildren<QListView*>(); !lists.isEmpty())
        lists.constLast()->setAccessibleName(u"サイズ"_s);
    if (auto* buttons = dialog.findChild<QDialogButtonBox*>()) buttons->addButton(button, QDialogButtonBox::ResetRole);
    if (dialog.exec() != QDialog::Accepted) return false;
    font = dialog.selectedFont();
    color = chosen;
    return true;
}

}  // namespace quibra
