#include "conditions/windows/edit_limit.h"

#include "conditions/windows/frm_limit.h"
#include "ui/desk.h"

namespace quibra {

bool EditLimit(SurveySession& session, Desk& desk, QWidget* parent, LimitList& list, qint16 mode) {
    desk.CloseSlotEditor();
    FrmLimit window(session, list, mode, parent);
    if (window.exec() != QDialog::Accepted) return false;
    list = window.Picked();
    return true;
}

}  // namespace quibra
