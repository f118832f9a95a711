#include "ui/help_viewer.h"

namespace quibra {

void HelpViewer::ShowTopic(int) {}
void HelpViewer::ShowIndex() {}
void HelpViewer::ShowSearch() {}

}  // namespace quibra
