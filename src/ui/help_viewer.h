// The help: its window is made when it is first asked for.
#pragma once

#include <QPointer>

namespace quibra {

class FrmHelp;
class UserInterface;

class HelpViewer {
  public:
    // `ui` must outlive it.
    explicit HelpViewer(UserInterface& ui) : ui_(ui) {}
    ~HelpViewer();

    void ShowTopic(int topic);
    void ShowIndex();
    void ShowSearch();

  private:
    FrmHelp& Window();

    UserInterface& ui_;
    QPointer<FrmHelp> window_;
};

}  // namespace quibra
