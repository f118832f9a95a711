// What programs that were killed have left: journals that no running program holds. Each can be offered, read on top of
// its survey, or thrown away.
#pragma once

#include <QString>
#include <vector>

#include "session/journal_format.h"
#include "session/survey_session.h"

namespace quibra {

struct LeftJournal {
    QString Path;  // of the journal itself
    JournalContents Contents;

    // How many records it holds, and when the last one was made.
    int Records() const;
    QDateTime LastTime() const;
    // True while the survey file is the one on which all was done.
    bool FitsItsFile() const;
};

// The journals in the folder that hold something, oldest first. Those that hold nothing are deleted, unreadable ones
// left alone.
std::vector<LeftJournal> LeftJournals(const QString& folder);

enum class JournalDecision { Later, Restore, Discard };
// Asks the user what to do with it.
JournalDecision OfferJournal(UserInterface& ui, const LeftJournal& journal);

// Does everything in the journal again, on the survey in memory, which its file has just been loaded into. The
// session's change log hears all of it. False when it didn't fit; the user has been told, and what came before stays
// done.
bool RestoreJournal(SurveySession& session, const LeftJournal& journal);

// Deletes the journal. Call it when what it holds is in another one, or not wanted.
void DiscardJournal(const LeftJournal& journal);

}  // namespace quibra
