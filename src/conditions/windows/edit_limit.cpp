#include "conditions/windows/edit_limit.h"

#include "conditions/windows/frm_limit.h"
#include "ui/form.h"

using namespace Qt::StringLiterals;

namespace quibra {

bool EditLimit(SurveySession& session, QWidget* parent, LimitList& list, qint16 mode) {
    CloseSlotEditor();
    FrmLimit window(session, list, mode, parent);
    if (window.exec() != QDialog::Accepted) return false;
    list = window.Picked();
    return true;
}

void CloseSlotEditor() {
    for (QWidget* form : OpenForms())
        if (auto* editor = dynamic_cast<FrmLimit*>(form)) editor->GiveWay();
}

}  // namespace quibra
