// The window of the help: contents and search on the left, the page on the right.
#pragma once

#include <QWidget>
#include <memory>

#include "ui/help_book.h"

namespace Ui {
class FrmHelp;
}

namespace quibra {

class UserInterface;

class FrmHelp : public QWidget {
  public:
    FrmHelp(UserInterface& ui, QWidget* parent);
    ~FrmHelp() override;

    void ShowTopic(int topic);
    void ShowSearch();

  private:
    void ShowPage(const HelpPage& page);
    void txtSearch_Change();
    void lstPages_Click();
    void GoBack(int steps);
    void ShowFirstHit();
    void RefreshList();
    void RefreshButtons();

    std::unique_ptr<Ui::FrmHelp> controls_;
    HelpBook book_;
    std::vector<const HelpPage*> visited_;
    size_t place_ = 0;  // in visited_
};

}  // namespace quibra
