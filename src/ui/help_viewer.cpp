#include "ui/help_viewer.h"

#include <QApplication>

#include "core/help_topics.h"
#include "ui/frm_help.h"

namespace quibra {

HelpViewer::~HelpViewer() {
    delete window_;
}

void HelpViewer::ShowTopic(int topic) {
    Window().ShowTopic(topic);
}

void HelpViewer::ShowIndex() {
    Window().ShowTopic(kHelpContents);
}

void HelpViewer::ShowSearch() {
    Window().ShowSearch();
}

// A dialog lets only its own children take part: help for a dialog lies in a window that belongs to it.
FrmHelp& HelpViewer::Window() {
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == window_) dialog = nullptr;
    if (window_ && window_->parentWidget() != dialog) delete window_;
    if (!window_) window_ = new FrmHelp(ui_, dialog);
    window_->show();
    window_->raise();
    window_->activateWindow();
    return *window_;
}

}  // namespace quibra
