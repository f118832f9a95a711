// Names for screen readers, and for programs that drive the windows from outside.
#pragma once

#include <QApplication>
#include <QWidget>

namespace quibra {

// Gives each control of `window` that has none an accessible name: its caption without the ampersand, its buddy's, or
// its tool tip.
void NameControls(QWidget* window);

// The controls that a person can reach and that have no accessible name. A test fails on any.
QStringList UnnamedControls(const QWidget* window);

// With QUIBRA_A11Y_IDS=1 in the environment each widget's accessible description becomes "#" and its objectName, so
// that a driving program finds it. Without the variable this does nothing.
void InstallAccessibleIds(QApplication& application);

}  // namespace quibra
