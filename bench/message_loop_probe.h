// How long a window does not answer: the longest time between two turns of the message loop, as a timer of 5 ms sees
// them, from the making of the probe to the call of LongestGap. What runs in one turn, drawing included, is one gap.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

namespace quibra {

class MessageLoopProbe {
  public:
    MessageLoopProbe() {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Turn(); });
        timer_.start(5);
        since_.start();
    }

    double LongestGapMilliseconds() {
        Turn();
        return static_cast<double>(longest_) / 1e6;
    }

  private:
    void Turn() {
        longest_ = std::max(longest_, since_.nsecsElapsed());
        since_.start();
    }

    QTimer timer_;
    QElapsedTimer since_;
    qint64 longest_ = 0;
};

}  // namespace quibra
