#include "conditions/windows/edit_limit.h"

#include "conditions/windows/frm_limit.h"
#include "ui/form.h"

using namespace Qt::StringLiterals;

namespace quibra {

bool EditLimit(SurveySession& session, QWidget* parent, LimitList& list, qint16 mode) {
    for (QWidget* form : OpenForms())
        if (form->objectName() == u"frmLimit"_s) form->close();
    FrmLimit window(session, list, mode, parent);
    if (window.exec() != QDialog::Accepted) return false;
    list = window.Picked();
    return true;
}

}  // namespace quibra
