#include "core/survey_format.h"

using namespace Qt::StringLiterals;

namespace quibra {

QString MagicOf(int kind) {
    switch (kind) {
        case kSurvey1001:
            return u"Velmor Quibra Version 95.x Datafile"_s;
        case kSurvey1002:
            return u"Velmor Quibra Datafile Since 95.6"_s;
        case kSurvey1003:
            return u"Velmor Quibra Datafile Since 95.9"_s;
        case kPageFile:
            return u"Velmor Quibra PageData Since 95.10"_s;
        default:
            return QString();
    }
}

}  // namespace quibra
