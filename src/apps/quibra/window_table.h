// The table of the program's windows: which item of the main window's menus opens which. A new window is a row here (or
// gets its function, where the item stands already); items without one tell that there is no such window yet. Tests
// walk the table and look at every window in it.
#pragma once

#include <QString>
#include <span>

namespace quibra {

class ProgramDesk;

struct WindowRow {
    QString command;              // objectName of the menu item
    void (ProgramDesk::*open)();  // null: not there yet
};

std::span<const WindowRow> WindowTable();

}  // namespace quibra
