// Printing with a look at the pages first. The preview's own dialog prints them or keeps them as a PDF.
#pragma once

#include <QPageLayout>
#include <QString>
#include <functional>

class QPrinter;
class QWidget;

namespace quibra {

class UserInterface;

// `paint` draws all pages and is called as often as the preview needs it. `document` names the print job and the PDF.
// True once something has been printed.
bool PreviewPrint(UserInterface& ui, QWidget* parent, const QString& document, QPageLayout::Orientation orientation,
                  const std::function<void(QPrinter&)>& paint);

}  // namespace quibra
