#include "ui/print_preview.h"

#include <QGraphicsView>
#include <QLineEdit>
#include <QPrintPreviewDialog>
#include <QPrinter>

#include "core/attempt.h"
#include "core/help_topics.h"
#include "ui/chart/pdf_text.h"
#include "ui/form.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr double kMarginMillimetres = 15;

}  // namespace

bool PreviewPrint(UserInterface& ui, QWidget* parent, const QString& document, QPageLayout::Orientation orientation,
                  const std::function<void(QPrinter&)>& paint) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(document);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(orientation);
    const double margin = kMarginMillimetres;
    printer.setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Millimeter);
    QPrintPreviewDialog preview(&printer, parent);
    preview.setObjectName(u"printPreview"_s);
    preview.setWindowTitle(u"印刷 - "_s + document.trimmed());
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [&paint](QPrinter* target) { paint(*target); });
    for (QLineEdit* page : preview.findChildren<QLineEdit*>())
        page->setAccessibleName(u"ページ"_s);
    for (QGraphicsView* view : preview.findChildren<QGraphicsView*>())
        view->setAccessibleName(u"仕上がり"_s);
    SetUpForm(&preview, ui, kHelpOutput);
    const QFontMetrics metrics = preview.fontMetrics();
    preview.resize(150 * metrics.averageCharWidth(), 44 * metrics.lineSpacing());
    if (preview.exec() != QDialog::Accepted) return false;
    if (printer.outputFormat() == QPrinter::PdfFormat)
        Attempt(ui, [&printer] { RestoreCharacters(printer.outputFileName()); });
    return true;
}

}  // namespace quibra
