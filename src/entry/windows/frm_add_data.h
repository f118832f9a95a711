// frmAddData, 回答入力: samples are typed, paged through, mended and deleted, by keyboard above all. Thin over
// EntrySession.
#pragma once

#include <QMainWindow>
#include <memory>

#include "entry/entry_session.h"

namespace Ui {
class FrmAddData;
}

namespace quibra {

class Desk;
enum class SheetKey;

class FrmAddData : public QMainWindow, private EntryView, private SampleChangeListener {
    Q_OBJECT
  public:
    // All must outlive the window.
    FrmAddData(SurveySession& session, ExternCaller& caller, Desk& desk, QWidget* parent = nullptr);
    ~FrmAddData() override;

    // For the windows that drive this one.
    EntrySession& Entry() { return entry_; }

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    // The sample in words, in the program's one viewer.
    class Viewer : public SampleViewer {
      public:
        explicit Viewer(Desk& desk) : desk_(desk) {}
        bool IsVisible() const override;
        void ShowSample(qint32 dno, int endQ) override;

      private:
        Desk& desk_;
    };

    bool txtReply_Key(SheetKey key);
    void txtReply_Change();
    void txtReply_LostFocus();
    void txtDno_LostFocus();
    void txtIDno_LostFocus();
    void mnuFontChange_Click();
    void mnuColor_Click(int index);

    // EntryView
    void ShowSheet(const SheetText& sheet) override;
    void ShowText(const QString& text) override;
    void MarkError(int start, int length) override;
    void Refresh() override;
    void SetFocus(EntryControl control) override;
    void RaiseDriver() override;

    // SampleChangeListener: another survey is in memory, and nothing of the window's belongs to it.
    void OnSampleChange(const SampleChangeRecord&) override {}
    void OnRestart() override { outlived_ = true; }

    void Run(const std::function<void()>& step);
    void ApplyLook();
    void RefreshEnabled();
    void FillChoices(const QStringList& choices);

    std::unique_ptr<Ui::FrmAddData> controls_;
    SurveySession& session_;
    Desk& desk_;
    Viewer viewer_;
    EntrySession entry_;
    bool refreshing_ = false;
    bool outlived_ = false;  // the survey that the window shows is gone
};

}  // namespace quibra
