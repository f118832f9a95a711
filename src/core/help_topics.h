// The help's topics by number, as windows ask for them (UserInterface::HelpContext). data/help/index.json names the
// page of each; a test holds the two against each other. 92 and 93 are kept for the windows of the imports.
#pragma once

namespace quibra {

enum HelpTopic {
    kHelpContents = 0,
    kHelpFirstSteps = 10,
    kHelpMain = 100,
    kHelpFiles = 110,
    kHelpLoadFailure = 120,
    kHelpLock = 130,
    kHelpSettings = 140,
    kHelpDialogs = 150,  // the boxes that ask for a choice, a text, questions or a folder
    kHelpProgress = 160,
    kHelpQuestion = 200,
    kHelpNew = 210,
    kHelpAbout = 220,  // with the IDs of this computer
    kHelpTable = 230,
    kHelpEntry = 300,
    kHelpCollect = 310,
    kHelpLines = 320,
    kHelpAnswer = 330,
    kHelpLimit = 400,
    kHelpTotal = 500,
    kHelpResult = 510,
    kHelpEssay = 520,
    kHelpOutput = 530,
    kHelpGraph = 540,
    kHelpCommandLine = 600,
    kHelpKeys = 700,
    kHelpGlossary = 710,
};

}  // namespace quibra
