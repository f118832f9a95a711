#include "ui/theme.h"
namespace quibra {
void SetUpApplication(QApplication&) {}
}  // namespace quibra
