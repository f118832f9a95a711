#include "apps/quibra/window_table.h"

#include "apps/quibra/program_desk.h"

using namespace Qt::StringLiterals;

namespace quibra {

std::span<const WindowRow> WindowTable() {
    static const WindowRow kRows[] = {
        {u"mnuNewfile"_s, &ProgramDesk::ShowNewSurvey},
        {u"mnuMergeQB"_s, nullptr},
        {u"mnuMergeTXT"_s, nullptr},
        {u"mnuMergeCSV"_s, nullptr},
        {u"mnuMergeHTML"_s, nullptr},
        {u"mnuSaveSelect"_s, nullptr},
        {u"mnuHTMLOut"_s, nullptr},
        {u"mnuSetQuestion"_s, &ProgramDesk::ShowQuestions},
        {u"mnuQuestions"_s, &ProgramDesk::ShowTable},
        {u"mnuAbout"_s, &ProgramDesk::ShowAbout},
        {u"mnuInput"_s, &ProgramDesk::ShowEntry},
        {u"mnuSetParagraph"_s, &ProgramDesk::ShowLines},
        {u"mnuSetQuota"_s, &ProgramDesk::ShowQuota},
        {u"mnuSetCollection"_s, &ProgramDesk::ShowCollect},
        {u"mnuSetLimit"_s, &ProgramDesk::ShowSlotEditor},
        {u"mnuStatis"_s, &ProgramDesk::ShowTotal},
        {u"mnuKey"_s, &ProgramDesk::ShowLock},
        {u"mnuAboutQB"_s, &ProgramDesk::ShowTitle},
    };
    return kRows;
}

}  // namespace quibra
