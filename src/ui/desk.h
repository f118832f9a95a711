// The program, as its windows see it: what one of them may ask of others that it doesn't know, because they belong to a
// folder above its own, or because only the program knows whether they are open. The program alone knows all windows
// and implements this; it outlives them. Where the window asked for doesn't exist yet, the user is told so.
#pragma once

#include <QtGlobal>
#include <vector>

class QWidget;

namespace quibra {

class Desk {
  public:
    virtual ~Desk() = default;

    // Searching for samples, in front.
    virtual void ShowSearch() = 0;
    // Keying in, made where it isn't open, in front.
    virtual void ShowEntry() = 0;
    // The import under way, in front; nothing where there is none.
    virtual void ShowImport() = 0;

    // The sample at `dno` in words, of the questions before `endQno`, in the one viewer, made where it isn't open; none
    // for -1. Whoever asks keeps the keyboard.
    virtual void ShowSample(qint32 dno, int endQno) = 0;
    // Whether that viewer is open: keying in keeps it up to date, but doesn't bring it up.
    virtual bool IsSampleShown() const = 0;

    // Totals the current options (ResultWindows::option) in a new result window, with the set-up window beside it.
    virtual void TotalAnew() = 0;
    // The chart of the result in front.
    virtual void ShowChart() = 0;
    // Adding answers to the samples at these places; writing these samples to a file.
    virtual void ShowBatchAdd(std::vector<qint32> places) = 0;
    virtual void ShowExport(std::vector<qint32> places) = 0;

    // Closes the editor of predefined conditions as its own button does, so that nothing uses conditions that samples
    // remember as they were before it.
    virtual void CloseSlotEditor() = 0;
    // Closes what shows questions, choices or conditions, before `editor` changes them. False when the user keeps one
    // of these windows: then nothing is closed.
    virtual bool CloseShowingDefinition(const QWidget* editor) = 0;
};

}  // namespace quibra
