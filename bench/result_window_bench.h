// What a large total and a large grid cost in the result window.
#pragma once

namespace quibra {

// Prints a line a figure. Needs the QApplication.
void MeasureResultWindow();

}  // namespace quibra
