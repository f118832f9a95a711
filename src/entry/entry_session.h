// The entry window without its widgets: one sample at a time as an answer sheet that is read, stored and built anew at
// every key that commits. The window, imports, replies and quibra-cli all drive this class.
//
// How a window uses it:
//  - It reads State() whenever Refresh is called, and shows it. The box of the sheet gets its contents by ShowSheet and
//    ShowText alone, with State().Caret for the caret.
//  - It reports what the person does, each by one call below: TypeReply at every change of the box, MoveCaret at every
//    move of its caret, SetDno, SetIDno and SetInputID for the other boxes, and the keys, buttons and lost focuses.
//  - It calls Open once it can show things, and Close before it goes; it stays where Close is false.
//  - What is typed and not yet read is the session's draft at every moment, for its journal. Open takes one up that a
//    recovery has left.
//
// A run-time error leaves a call as RuntimeError. What was typed still stands in the box then, and what is stored is
// whole: the window shows the error's text and goes on (core/attempt.h), an import ends its run.
#pragma once

#include <QString>
#include <QStringList>

#include "entry/code_table.h"
#include "entry/extern_call.h"
#include "entry/reply_box.h"
#include "entry/sheet_parser.h"
#include "entry/sheet_text.h"
#include "session/survey_session.h"

namespace quibra {

// Controls that the logic gives the focus to.
enum class EntryControl { None, txtReply, cmdNextInput };

struct EntryState {
    QString Text;           // txtReply; lines end in CR LF
    int Caret = 0;          // and its caret, from 0
    bool Changed = false;   // chkChanged: the box differs from what is stored
    bool New = false;       // chkNew: the next ShowSample empties the box
    QString Dno;            // txtDno
    QString Now;            // lblNowDno
    QString IDno;           // txtIDno
    QString Max;            // lblMax
    bool InputID = false;   // chkInputID
    QStringList Choices;    // lstChoices
    QString Status;         // stbInput's last remark; 変更あり stands beside it while Changed
    bool Enabled = false;   // txtDno, txtIDno, cmdDelete, txtReply, scrDno
    qint32 ScrollMax = -1;  // scrDno, from 0
    qint32 ScrollValue = 0;
};

// What the logic asks of the window. Each does nothing by itself, so that a driver without a window needs none.
class EntryView {
  public:
    virtual ~EntryView() = default;
    // The box takes this sheet, with its colours.
    virtual void ShowSheet(const SheetText&) {}
    // The box takes this plain text.
    virtual void ShowText(const QString&) {}
    // Selects and marks a part of the box, until the next ShowSheet or ShowText.
    virtual void MarkError(int /*start*/, int /*length*/) {}
    // State() has changed.
    virtual void Refresh() {}
    virtual void SetFocus(EntryControl) {}
    // The window that drives this one is to come to the front.
    virtual void RaiseDriver() {}
};

// The sample viewer beside the window.
class SampleViewer {
  public:
    virtual ~SampleViewer() = default;
    virtual bool IsVisible() const = 0;
    // Shows sample `dno` up to, not including, question `endQ`; an empty window for -1.
    virtual void ShowSample(qint32 dno, int endQ) = 0;
};

class EntrySession : private ReplyBox {
  public:
    // All must outlive it.
    EntrySession(SurveySession& session, ExternCaller& caller, EntryView& view);

    const EntryState& State() const { return state_; }
    // How the sheet looks, from the settings.
    SheetLook Look() const { return SheetLookOf(session_.settings); }

    // The viewer that is kept up to date while it is visible; null for none.
    void SetViewer(SampleViewer* viewer) { viewer_ = viewer; }
    // While an import drives, no message of the checks is shown, the focus stays where it is, and the window can't be
    // closed. `caption` names its window; empty: nothing drives.
    void SetDriver(const QString& caption) { driver_ = caption; }

    // ----- The window opens and closes
    void Open();
    // False when it must stay open.
    bool Close();

    // ----- The box of the sheet
    // The person has changed it.
    void TypeReply(const QString& text, int caret);
    void MoveCaret(int caret) { SetCaret(caret); }
    // The caret stands in a text between slashes: a Space is a character, and what is typed is Japanese.
    bool InEssay() const;
    void KeyEnter();
    // True when the key has done its work; false when it is an ordinary character of a text, which goes into the box.
    bool KeySpace();
    // True when it may go on to move the caret.
    bool KeyUpOrDown();
    void ReplyLostFocus();
    // The heart of entry: splices `insert` in at the caret, reads, stores, shows. True when nothing was pending or all
    // went well; on a sheet error the user has been told and the box keeps what was typed.
    bool ApplyReply(const QString& insert);

    // ----- Paging and search
    void SetDno(const QString& text) { state_.Dno = text; }
    void SetIDno(const QString& text) { state_.IDno = text; }
    // Moves to the sample in txtDno; also what txtDno does when it loses the focus.
    void ShowSample();
    void IDnoLostFocus();
    // The arrow keys in the ID box: up is 1, down is -1.
    void StepDno(int by);
    void Scroll(qint32 value);

    // ----- The buttons
    void NextInput();
    void Delete();
    void ChangeID();
    void Execute();
    void SetInputID(bool on);

    // ----- The menus
    bool ShowsNames() const { return HasFlag(kShowNames); }
    bool ShowsMarks() const { return HasFlag(kShowMarks); }
    void SetNames(bool on) { SetFlag(kShowNames, on); }
    void SetMarks(bool on) { SetFlag(kShowMarks, on); }
    // Font or colours in the settings have changed.
    void Restyle() { ShowSample(); }
    // The viewer has been opened.
    void FillViewer();

    // ----- For the windows that drive this one
    // What setting lblDno does: "ID", "NEW", "AUTONEW", "INPUT", or a Dno as text.
    void Command(const QString& caption);
    // Puts a text into the box as if it had been typed, with the caret in front of it.
    void SetReply(const QString& text);
    // Samples have been added or removed by others.
    void RefreshControls();

  private:
    // ReplyBox, for the parser and the checks.
    class Update;

    QString Text() const override { return state_.Text; }
    void SetText(const QString& text) override;
    void MarkError(int start, int length) override;

    void KeepDraft();

    Survey& Data() { return session_.survey; }
    bool HasFlag(int flag) const;
    void SetFlag(int flag, bool on);
    void SetCaret(qint64 caret);
    void ShowBuilt(const SheetText& sheet);
    void FillChoices(int q);
    void UpdateViewer(int endQ);
    void TellSheetError(const QString& message, int caret);
    void TellLosses(const QString& typed);
    QString LossesOfSample();
    QString ReadSheet(SheetReading& reading);
    qint32 WantedDno() const;
    void RemindToSave();
    void AddNewSample(qint32 id);
    void RemoveSample(qint32 dno);
    void DropEmptySample(qint32 dno);

    SurveySession& session_;
    ExternCaller& caller_;
    EntryView& view_;
    SampleViewer* viewer_ = nullptr;
    QString driver_;
    CodeTables tables_;
    EntryState state_;
    // The sample that the box belongs to, -1 for none. lblNowDno has it as text, but keeps the number of a sample that
    // was deleted or moved until the next one is shown.
    qint32 shownDno_ = -1;
    bool unread_ = false;  // the box has what is stored nowhere: the session keeps it as its draft
    QString toldLosses_;   // what the status line said of them last
    int viewerEnd_ = 0;    // the question in front of which the viewer stops
    int updates_ = 0;      // calls under way, of which the outermost refreshes the window
};

// The next ID of the survey's quota that no sample has, -1 when there is none. Moves QuotaUsed behind it.
qint32 IssueNextID(Survey& survey);

}  // namespace quibra
