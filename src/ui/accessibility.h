// Names for screen readers, and for programs that drive the windows from outside.
#pragma once

#include <QApplication>
#include <QWidget>

namespace quibra {

// Gives each control of `window` that tells no name of its own an accessible name: its buddy's wherever that stands,
// its tool tip or its placeholder. What names itself (a button by its caption) is left alone, so that a new caption
// changes the name too.
void NameControls(QWidget* window);

// What a person can put the focus on: not the parts that Qt makes of one control, nor what hands its focus on.
QList<QWidget*> ControlsOf(const QWidget* window);
// The controls that a person can reach and that a screen reader cannot tell: without accessible name, or taken for a
// window. By class and objectName; a test fails on any.
QStringList UnnamedControls(const QWidget* window);

// Makes windows known as windows. With QUIBRA_A11Y_IDS=1 in the environment, too, each widget's accessible description
// becomes "#" and its objectName, so that a driving program finds it.
void InstallAccessibility(QApplication& application);

}  // namespace quibra
