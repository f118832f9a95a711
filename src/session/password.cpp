#include "session/password.h"

using namespace Qt::StringLiterals;

namespace quibra {

std::optional<QChar> PasswordLetter(QChar typed) {
    if (typed >= u'A' && typed <= u'Z') return typed.toLower();
    if (typed >= u'a' && typed <= u'z') return typed;
    return std::nullopt;
}

QString PasswordLetters(const QString& text) {
    QString letters;
    for (const QChar typed : text)
        if (const auto letter = PasswordLetter(typed)) letters += *letter;
    return letters;
}

bool UnlockWith(SurveySession& session, const QString& word) {
    if (word == session.survey.Password) {
        session.Unlock();
        return true;
    }
    session.ui.Message(u"パスワードが間違っています"_s, kOkOnly);
    return false;
}

void ChangePassword(SurveySession& session, const QString& word, const std::function<std::optional<QString>()>& again) {
    if (word.size() > kMaxPasswordLength) {
        session.ui.Message(u"パスワードの字数が多すぎます（半角英文字32字以内でなければいけません）"_s, kOkOnly);
        return;
    }
    session.ui.Message(u"もう一度新しいパスワードを入力してください"_s, kOkOnly);
    if (again() != word) {
        session.ui.Message(u"間違っています。パスワードを元に戻します。"_s, kOkOnly);
        return;
    }
    session.survey.Password = word;
    session.ui.Message(u"合っています。パスワードを変更しました。"_s, kOkOnly);
    session.ChangedOn();
}

void SetLockLevel(SurveySession& session, int level) {
    session.survey.LockLevel = static_cast<qint16>(level);
    session.ChangedOn();
    session.Refresh(SurveySession::Change::Lock);
}

}  // namespace quibra
