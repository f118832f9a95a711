// What the measures of windows share. Each prints a line a figure and needs the QApplication.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QWidget>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>
#include <vector>

#include "ui/qt_user_interface.h"

namespace quibra {

// What loading and saving a large survey costs in the main window.
void MeasureFiles();
// What a key costs in the window of entry, and what it costs to come and go among many samples.
void MeasureEntryWindow();
// What a large total and a large grid cost in the result window.
void MeasureResultWindow();
// What drawing the largest chart costs.
void MeasureChart();

inline double Milliseconds(const std::function<void()>& work) {
    QElapsedTimer clock;
    clock.start();
    work();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

inline void Print(const char* what, std::vector<double> figures, const char* unit) {
    if (figures.empty()) return;
    std::ranges::sort(figures);
    std::printf("%-48s median %8.1f  max %8.1f %s\n", what, figures[figures.size() / 2], figures.back(), unit);
}

// Agrees to be stopped, and notes when it was asked.
class Asked : public QtUserInterface {
  public:
    Asked() { clock_.start(); }

    Answer Message(const QString&, int, const QString&) override {
        if (posted_ >= 0 && wait_ < 0) wait_ = clock_.nsecsElapsed() - posted_;
        return Answer::Ok;
    }

    // Runs `work`, in which `button` is shown, while a hand clicks on it after `delay`. The time from the click to the
    // question in milliseconds; below 0 when the click came too late.
    double WaitForQuestion(QWidget* button, std::chrono::milliseconds delay, const std::function<void()>& work) {
        posted_ = wait_ = -1;
        // The hand is a thread: it must not ask the widget for anything.
        const QPointF place = button->rect().center();
        const QPointF global = button->mapToGlobal(place);
        std::thread hand([&] {
            std::this_thread::sleep_for(delay);
            posted_ = clock_.nsecsElapsed();
            for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
                QCoreApplication::postEvent(
                    button, new QMouseEvent(type, place, global, Qt::LeftButton,
                                            type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, {}));
        });
        work();
        hand.join();
        const qint64 wait = wait_;
        QCoreApplication::sendPostedEvents();  // a click that came too late is not left to the next run
        return static_cast<double>(wait) / 1e6;
    }

  private:
    QElapsedTimer clock_;
    std::atomic<qint64> posted_ = -1;
    qint64 wait_ = -1;
};

}  // namespace quibra
