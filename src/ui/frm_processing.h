// What long work shows: what is done, how far it is, and a way to stop. There is one, made with the program's user
// interface. All keys of it reach the Stop button, and its close box is a Stop too.
#pragma once

#include <QDialog>
#include <QTimer>
#include <functional>
#include <memory>

#include "core/user_interface.h"

namespace Ui {
class FrmProcessing;
}

namespace quibra {

class FrmProcessing : public QDialog {
  public:
    // `confirmStop` asks the person who pressed Stop whether that was meant.
    FrmProcessing(UserInterface& ui, std::function<bool()> confirmStop);
    ~FrmProcessing() override;

    // Fills the window for a new job and, unless it is to stay unseen, shows it as soon as the job takes a while: what
    // is over in a blink needs no window that flashes up.
    void Open(const ProgressSpec& spec);
    void Close();
    // The bar; 0 to 100.
    void Progress(int percent);
    // The line that tells the figures.
    void SetText(const QString& text);

    // Stop was pressed and confirmed. Never so while the window is hidden.
    bool IsStopped() const;

    void reject() override;

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void cmdStop_Click();

    std::unique_ptr<Ui::FrmProcessing> controls_;
    std::function<bool()> confirmStop_;
    QTimer appears_;
    bool asking_ = false;
    bool stopped_ = false;
};

}  // namespace quibra
