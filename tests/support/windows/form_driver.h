// How tests find the controls of a window and use them as a person does: what isn't in sight and enabled is a fault.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QTest>

namespace quibra {

template <typename Control>
Control* Usable(const QWidget* window, const QString& name) {
    auto* control = window->findChild<Control*>(name);
    EXPECT_TRUE(control && control->isVisible() && control->isEnabled()) << qPrintable(name);
    return control;
}

inline void Press(const QWidget* window, const QString& name) {
    QTest::mouseClick(Usable<QAbstractButton>(window, name), Qt::LeftButton);
}

// A radio button or check box: on its mark, since its text may end short of the middle.
inline void Mark(const QWidget* window, const QString& name) {
    auto* button = Usable<QAbstractButton>(window, name);
    QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
}

inline void Trigger(const QWidget* window, const QString& name) {
    if (auto* item = Usable<QAction>(window, name)) item->trigger();
}

}  // namespace quibra
