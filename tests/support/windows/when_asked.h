// How tests answer a window that keeps its caller waiting.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <functional>

#include "ui/accessibility.h"

namespace quibra {

// Runs `act` on the next modal window of that class, once it is shown and takes keys.
inline void WhenAsked(std::function<void(QWidget&)> act, const char* className = "QWidget") {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, className, act = std::move(act)] {
        QWidget* window = QApplication::activeModalWidget();
        if (!window || !window->inherits(className) || !window->isVisible() || !window->isActiveWindow()) return;
        timer->deleteLater();
        timer->stop();
        // A window that stayed open would hang the test.
        const QPointer<QWidget> guard = window;
        EXPECT_EQ(UnnamedControls(window), QStringList()) << qPrintable(window->objectName());
        act(*window);
        // A button pressed by its letter goes down for a moment first.
        const bool left = QTest::qWaitFor([&guard] { return !guard || !guard->isVisible(); }, 300);
        if (!left && guard == QApplication::activeModalWidget()) {
            ADD_FAILURE() << qPrintable(guard->objectName()) << " stays open";
            guard->close();
        }
    });
    timer->start(1);
}

}  // namespace quibra
