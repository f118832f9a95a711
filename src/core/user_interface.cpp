#include "core/user_interface.h"

using namespace Qt::StringLiterals;

namespace quibra {

Answer SafeAnswer(int style) {
    switch (style & 7) {
        case kOkCancel:
        case kYesNoCancel:
            return Answer::Cancel;
        case kYesNo:
            return Answer::No;
        default:
            return Answer::Ok;
    }
}

QString UserInterface::DefaultTitle() {
    return u"クイブラ"_s;
}

bool UserInterface::ConfirmStop(const ProgressSpec& spec) {
    const int style = kOkCancel + kWarning + kSecondDefault;
    if (!spec.fatal) return Message(u"中止しますか？"_s, style) == Answer::Ok;
    if (spec.save) {
        if (Message(u"中止すると保存先のファイルが中途半端で読み込めなくなります。"_s, style) != Answer::Ok)
            return false;
        Message(u"保存先のファイルが読み込めなくなりました。クイブラ終了前に必ず改めて保存し直してください。"_s,
                kOkOnly);
        return true;
    }
    if (Message(u"中止するとクイブラ内部のアンケートデータが壊れて保存出来なくなります。"_s, style) != Answer::Ok)
        return false;
    if (spec.onFatalStop) spec.onFatalStop();
    return true;
}

}  // namespace quibra
