// quibra_screens NAME [FILE] [--dark]: shows one of the shared dialogs by itself, filled with what it holds in use,
// until it is closed; FILE is the survey whose loading "progress" shows. Without a name it lists them.
// scripts/screens.py takes the pictures of the manual with it.
#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QThread>
#include <cstdio>
#include <functional>
#include <map>

#include "session/survey_file.h"
#include "session/survey_session.h"
#include "ui/accessibility.h"
#include "ui/font_dialog.h"
#include "ui/qt_user_interface.h"
#include "ui/theme.h"

using namespace Qt::StringLiterals;
using namespace quibra;

namespace {

QStringList Questions() {
    QStringList questions;
    for (int q = 1; q <= 40; ++q)
        questions += u"Q%1. "_s.arg(q) + (q % 3 ? u"お住まいの町にどのくらい満足していますか"_s
                                                : u"この一年間に利用した公共施設をすべて選んでください"_s);
    return questions;
}

// Long work stands still at two thirds, until it is stopped.
class HeldInterface : public QtUserInterface {
  public:
    bool Progress(const QString& text, double fraction) override {
        while (QtUserInterface::Progress(text, fraction)) {
            if (fraction < 0.66) return true;
            QThread::msleep(10);
        }
        return false;
    }
};

void LoadHalfway(QtUserInterface&) {
    HeldInterface ui;
    SurveySession session(ui, QDir::currentPath());
    QString path = QDir::current().filePath(QApplication::arguments().value(2));
    SurveyLoad(session, path, kExpectSurvey);
}

const std::map<QString, std::function<void(QtUserInterface&)>> kScreens = {
    {u"message"_s,
     [](QtUserInterface& ui) {
         ui.Message(u"ファイルが見つかりません\r\n/home/user/調査/residents.qb はクイブラで扱えません。"_s,
                    kYesNoCancel + kWarning + kSecondDefault);
     }},
    {u"ask"_s,
     [](QtUserInterface& ui) {
         ui.AskBox(u"書き出すファイルの形式はどうしますか。"_s,
                   u"クイブラ形式・・・クイブラで直接扱えます\r\nｺﾝﾏ区切り・・・表計算ソフトなどで扱えます"_s,
                   u"クイブラ形式(&Q)"_s, u"ｺﾝﾏ区切り(&C)"_s);
     }},
    {u"input"_s,
     [](QtUserInterface& ui) {
         QString text = u"30"_s;
         ui.InputBox(u"保存の間隔"_s, u"保存する時間の間隔を入力してください"_s, u"間隔"_s, u"単位：分"_s, text);
     }},
    {u"question"_s, [](QtUserInterface& ui) { ui.QuestionBox(u"質問を選んでください"_s, Questions(), 2); }},
    {u"questions"_s,
     [](QtUserInterface& ui) {
         QList<bool> selected;
         ui.QuestionsBox(u"書き出す質問を選んでください"_s, Questions(), selected);
     }},
    {u"folder"_s, [](QtUserInterface& ui) { ui.DirBox(); }},
    {u"file"_s,
     [](QtUserInterface& ui) {
         ui.FileBox(u"residents.qb"_s, u"クイブラデータ(*.qb)|*.qb|全てのファイル(*.*)|*.*|"_s, true);
     }},
    {u"font"_s,
     [](QtUserInterface& ui) {
         QFont font = QApplication::font();
         QColor color = Qt::black;
         PickFont(ui, nullptr, font, color);
     }},
    {u"progress"_s, LoadHalfway},
};

// The colours of a desktop that is set to dark, for pictures where none is.
QPalette DarkPalette() {
    QPalette palette(QColor(0x35, 0x37, 0x3a), QColor(0x2b, 0x2d, 0x30));
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1f, 0x22));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x27, 0x2a));
    palette.setColor(QPalette::Highlight, QColor(0x2a, 0x76, 0xc6));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        for (const auto& [name, show] : kScreens)
            std::puts(qUtf8Printable(name));
        return 0;
    }
    QApplication application(argc, argv);
    SetUpApplication(application);
    InstallAccessibility(application);
    const QStringList arguments = QApplication::arguments();
    if (arguments.contains(u"--dark"_s)) QApplication::setPalette(DarkPalette());
    const auto screen = kScreens.find(arguments[1]);
    if (screen == kScreens.end()) return 2;
    QtUserInterface ui;
    screen->second(ui);
    return 0;
}
