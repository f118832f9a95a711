// The main window: what is open, and the commands. Its menus pop up from three buttons. The session must outlive it.
#pragma once

#include <QWidget>
#include <array>
#include <memory>
#include <vector>

#include "apps/quibra/program_desk.h"
#include "session/lock.h"

class QAction;
class QMenu;
class QToolButton;

namespace Ui {
class FrmMain;
}

namespace quibra {

class SurveySession;
struct OpenOutcome;

class FrmMain : public QWidget {
    Q_OBJECT

  public:
    explicit FrmMain(SurveySession& session, QWidget* parent = nullptr);
    ~FrmMain() override;

    // Opens a file and shows what came of it; `mode` is a FileMode.
    void SurveyOpen(const QString& path, int mode);
    // A command from another program: "Load Page" is the menu item for result files, all else is nothing. Also nothing
    // while the window waits for something else.
    void Command(const QString& command);

  Q_SIGNALS:
    // The user has left the program: nothing is left to ask or to write.
    void Closed();
    void HelpIndexAsked();
    void HelpSearchAsked();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    struct GovernedAction {
        QAction* action;
        bool MenuState::*state;
    };

    void cmdFile_Click();
    void cmdQuestion_Click();
    void cmdOthers_Click();
    void cmdOpen_Click();
    void cmdSave_Click();
    void mnuFileOpen_Click();
    void mnuFileSave_Click();
    void mnuFileSaveAs_Click();
    void mnuLoadResult_Click();
    void mnuFileMRU_Click(size_t index);
    void mnuSetSaveInterval_Click();
    void mnuInfoFormReset_Click();

    void Show(const OpenOutcome& outcome);
    void PopUp(QMenu* menu, QToolButton* button);
    bool IsWaiting() const;
    void Connect();
    void SetIcons();
    void RefreshAll();
    void RefreshRecentFiles();
    void RefreshFileName();

    SurveySession& session_;
    std::unique_ptr<Ui::FrmMain> ui_;
    ProgramDesk desk_;
    std::vector<GovernedAction> governed_;
    std::array<QAction*, 4> recent_{};
};

}  // namespace quibra
