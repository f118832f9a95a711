// The dialogs as a person meets them: each is opened through the program's user interface and answered by keys.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <functional>

#include "support/qt_printers.h"
#include "support/windows/when_asked.h"
#include "ui/form.h"
#include "ui/percent_picture.h"
#include "ui/qt_user_interface.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

template <typename Control>
Control& Find(QWidget& window, const QString& name) {
    auto* control = window.findChild<Control*>(name);
    EXPECT_TRUE(control) << qPrintable(name);
    return *control;
}

void Key(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* focus = window.focusWidget();
    QTest::keyClick(focus ? focus : &window, key, modifiers);
}

QString Focused(QWidget& window) {
    return window.focusWidget() ? window.focusWidget()->objectName() : QString();
}

// The order in which Tab goes round, from the control that has the focus.
QStringList TabOrder(QWidget& window) {
    QStringList order{Focused(window)};
    for (int i = 0; i < 20; ++i) {
        Key(window, Qt::Key_Tab);
        if (Focused(window) == order.constFirst()) break;
        order += Focused(window);
    }
    return order;
}

// The window that work shows when it takes a while.
QWidget* OpenProgress(QtUserInterface& ui, const ProgressSpec& spec) {
    ui.ProgressOpen(spec);
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activeModalWidget(); }));
    return QApplication::activeModalWidget();
}

const QStringList kQuestions{u"Q1. 性別"_s, u"Q2. 年齢"_s, u"Q3. 職業"_s, u"Q4. 趣味"_s};

}  // namespace

TEST(Message, ShowsTheToldButtonsIconAndDefault) {
    struct Case {
        int style;
        QMessageBox::Icon icon;
        QStringList buttons;
        QString defaultButton;
        Answer onEnter;
        Answer onEscape;
    };
    const Case cases[] = {
        {kOkOnly, QMessageBox::NoIcon, {u"OK"_s}, u"OK"_s, Answer::Ok, Answer::Ok},
        {kOkCancel + kWarning, QMessageBox::Warning, {u"OK"_s, u"キャンセル"_s}, u"OK"_s, Answer::Ok, Answer::Cancel},
        {kOkCancel + kWarning + kSecondDefault,
         QMessageBox::Warning,
         {u"OK"_s, u"キャンセル"_s},
         u"キャンセル"_s,
         Answer::Cancel,
         Answer::Cancel},
        {kYesNo + kQuestion,
         QMessageBox::Question,
         {u"はい(&Y)"_s, u"いいえ(&N)"_s},
         u"はい(&Y)"_s,
         Answer::Yes,
         Answer::No},
        {kYesNoCancel + kCritical + kSecondDefault,
         QMessageBox::Critical,
         {u"はい(&Y)"_s, u"いいえ(&N)"_s, u"キャンセル"_s},
         u"いいえ(&N)"_s,
         Answer::No,
         Answer::Cancel},
        {kOkOnly + kInformation, QMessageBox::Information, {u"OK"_s}, u"OK"_s, Answer::Ok, Answer::Ok},
    };
    QtUserInterface ui;
    for (const Case& expected : cases) {
        SCOPED_TRACE(expected.style);
        WhenAsked([&](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            QStringList captions;
            for (const auto* button : box.buttons())
                captions += button->text();
            captions.sort();
            QStringList told = expected.buttons;
            told.sort();
            EXPECT_EQ(captions, told);
            EXPECT_EQ(box.windowTitle(), u"クイブラ"_s);
            EXPECT_EQ(box.text(), u"<b>一行目\n二行目"_s);
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            EXPECT_EQ(box.icon(), expected.icon);
            EXPECT_EQ(box.defaultButton()->text(), expected.defaultButton);
            EXPECT_EQ(box.focusWidget(), box.defaultButton());
            Key(box, Qt::Key_Return);
        });
        EXPECT_EQ(ui.Message(u"<b>一行目\r\n二行目"_s, expected.style), expected.onEnter);
        WhenAsked([](QWidget& window) { Key(window, Qt::Key_Escape); });
        EXPECT_EQ(ui.Message(u"二度目"_s, expected.style), expected.onEscape);
    }
    WhenAsked([](QWidget& window) { Key(window, Qt::Key_N, Qt::AltModifier); });
    EXPECT_EQ(ui.Message(u"キー"_s, kYesNoCancel, u"題"_s), Answer::No);
    // A question that comes up while the help is in front outlives the help's moving to it.
    ui.HelpIndex();
    ASSERT_TRUE(QTest::qWaitForWindowActive(OpenForms().constLast()));
    WhenAsked([](QWidget& window) {
        Key(window, Qt::Key_F1);
        const QList<QWidget*> forms = OpenForms();
        EXPECT_EQ(forms.constLast()->objectName(), u"frmHelp"_s);
        forms.constLast()->close();
        Key(window, Qt::Key_Return);
    });
    EXPECT_EQ(ui.Message(u"ヘルプ"_s, kOkOnly), Answer::Ok);
}

TEST(MessageBox, OfWorkThatFailsAtOnceStaysInFrontOfItsProgress) {
    QtUserInterface ui;
    ui.ProgressOpen({.title = u"読み込み中"_s, .info = {}, .caption = {}, .onFatalStop = {}});
    WhenAsked([](QWidget& window) {
        QTest::qWait(800);
        EXPECT_EQ(QApplication::activeModalWidget(), &window);
        for (const QWidget* form : OpenForms())
            EXPECT_NE(form->objectName(), u"frmProcessing"_s);
        Key(window, Qt::Key_Return);
    });
    EXPECT_EQ(ui.Message(u"ファイルが見つかりません。"_s, kWarning), Answer::Ok);
    ui.ProgressClose();
}

TEST(AskBox, AnswersByKeyAndCancels) {
    QtUserInterface ui;
    const auto ask = [&ui](std::function<void(QWidget&)> act) {
        WhenAsked(std::move(act));
        return ui.AskBox(u"形式はどうしますか。"_s, u"クイブラ形式\r\n区切り"_s, u"全て(&A)"_s, u"一部(&P)"_s);
    };
    EXPECT_EQ(ask([](QWidget& window) {
                  EXPECT_EQ(window.objectName(), u"frmAsk"_s);
                  EXPECT_EQ(window.windowTitle(), u"クイブラ"_s);
                  EXPECT_EQ(Find<QLabel>(window, u"lblInfo1"_s).text(), u"形式はどうしますか。"_s);
                  EXPECT_EQ(Find<QLabel>(window, u"lblInfo2"_s).text(), u"クイブラ形式\r\n区切り"_s);
                  EXPECT_EQ(Find<QPushButton>(window, u"cmdCancel"_s).text(), u"キャンセル"_s);
                  EXPECT_EQ(TabOrder(window), (QStringList{u"cmdFunc1"_s, u"cmdFunc2"_s, u"cmdCancel"_s}));
                  Key(window, Qt::Key_Return);
              }),
              1);
    EXPECT_EQ(ask([](QWidget& window) { Key(window, Qt::Key_P, Qt::AltModifier); }), 2);
    EXPECT_EQ(
        ask([](QWidget& window) { QTest::mouseClick(&Find<QPushButton>(window, u"cmdCancel"_s), Qt::LeftButton); }), 0);
    EXPECT_EQ(ask([](QWidget& window) { Key(window, Qt::Key_Escape); }), 0);
    EXPECT_EQ(ask([](QWidget& window) { window.close(); }), 0);
}

TEST(InputBox, SelectsItsTextAndGivesWhatWasTyped) {
    QtUserInterface ui;
    QString text = u"30"_s;
    WhenAsked([](QWidget& window) {
        EXPECT_EQ(window.objectName(), u"frmInput"_s);
        EXPECT_EQ(window.windowTitle(), u"保存の間隔"_s);
        EXPECT_EQ(Find<QLabel>(window, u"lblName"_s).text(), u"時間の間隔を入力してください"_s);
        EXPECT_EQ(Find<QLabel>(window, u"lblRange"_s).text(), u"間隔"_s);
        EXPECT_TRUE(Find<QLabel>(window, u"lblCaution"_s).isVisible());
        auto& input = Find<QLineEdit>(window, u"txtInput"_s);
        EXPECT_EQ(input.selectedText(), u"30"_s);
        EXPECT_EQ(TabOrder(window), (QStringList{u"txtInput"_s, u"cmdOK"_s, u"cmdCancel"_s}));
        EXPECT_EQ(input.selectedText(), u"30"_s) << "each time that the focus comes";
        QTest::keyClicks(&input, u"45"_s);
        Key(window, Qt::Key_Return);
    });
    EXPECT_TRUE(ui.InputBox(u"保存の間隔"_s, u"時間の間隔を入力してください"_s, u"間隔"_s, u"単位：分"_s, text));
    EXPECT_EQ(text, u"45"_s);

    WhenAsked([](QWidget& window) {
        EXPECT_EQ(window.windowTitle(), u"入力"_s);
        EXPECT_FALSE(Find<QLabel>(window, u"lblCaution"_s).isVisible());
        Key(window, Qt::Key_Escape);
    });
    EXPECT_FALSE(ui.InputBox({}, u"最小値は"_s, {}, {}, text));
    EXPECT_EQ(text, QString());
}

TEST(QuestionBox, CountsFromTheFirstQuestionThatItShows) {
    QtUserInterface ui;
    WhenAsked([](QWidget& window) {
        EXPECT_EQ(window.objectName(), u"frmQBox"_s);
        EXPECT_EQ(Find<QLabel>(window, u"lblInfo"_s).text(), u"質問を選んでください"_s);
        EXPECT_FALSE(Find<QListWidget>(window, u"lstQno_1"_s).isVisible());
        auto& list = Find<QListWidget>(window, u"lstQno_0"_s);
        ASSERT_EQ(list.count(), 2);
        EXPECT_EQ(list.item(0)->text(), kQuestions[2]);
        EXPECT_TRUE(list.item(0)->isSelected());
        EXPECT_EQ(TabOrder(window), (QStringList{u"lstQno_0"_s, u"cmdOK"_s, u"cmdCancel"_s}));
        Key(window, Qt::Key_Down);
        Key(window, Qt::Key_Return);
    });
    EXPECT_EQ(ui.QuestionBox(u"質問を選んでください"_s, kQuestions, 2), 3);

    WhenAsked([](QWidget& window) {
        auto& list = Find<QListWidget>(window, u"lstQno_0"_s);
        const QPoint second = list.visualItemRect(list.item(1)).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, second);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, second);
    });
    EXPECT_EQ(ui.QuestionBox({}, kQuestions, 0), 1);
    WhenAsked([](QWidget& window) { Key(window, Qt::Key_Escape); });
    EXPECT_EQ(ui.QuestionBox({}, kQuestions, 0), -1);
    WhenAsked([](QWidget& window) {
        Key(window, Qt::Key_Return);  // nothing to choose
        EXPECT_TRUE(window.isVisible());
        Key(window, Qt::Key_Escape);
    });
    EXPECT_EQ(ui.QuestionBox({}, kQuestions, 4), -1);
}

TEST(QuestionsBox, GivesAnElementForEachQuestionOrLeavesThemAlone) {
    QtUserInterface ui;
    QList<bool> selected{true};
    WhenAsked([](QWidget& window) {
        EXPECT_FALSE(Find<QListWidget>(window, u"lstQno_0"_s).isVisible());
        EXPECT_EQ(Focused(window), u"lstQno_1"_s);
        EXPECT_TRUE(Find<QListWidget>(window, u"lstQno_1"_s).selectedItems().isEmpty());
        Key(window, Qt::Key_Down);
        Key(window, Qt::Key_Space);
        Key(window, Qt::Key_End);
        Key(window, Qt::Key_Space);
        Key(window, Qt::Key_Return);
    });
    EXPECT_TRUE(ui.QuestionsBox(u"書き出す質問"_s, kQuestions, selected));
    EXPECT_EQ(selected, (QList<bool>{false, true, false, true}));

    WhenAsked([](QWidget& window) {
        Key(window, Qt::Key_Space);
        Key(window, Qt::Key_Escape);
    });
    EXPECT_FALSE(ui.QuestionsBox(u"書き出す質問"_s, kQuestions, selected));
    EXPECT_EQ(selected, (QList<bool>{false, true, false, true}));
}

TEST(ProgressWindow, PaintsEachStretchInTheColourOfItsStartAndWipesBack) {
    QtUserInterface ui;
    QWidget other;
    SetUpForm(&other, ui, 0);
    other.show();
    const ProgressSpec load{.title = u"読み込み中"_s, .info = u"a.qb"_s, .caption = u"質問など"_s, .onFatalStop = {}};
    ui.ProgressOpen(load);
    ui.ProgressClose();
    QTest::qWait(400);
    EXPECT_FALSE(QApplication::activeModalWidget()) << "what was over at once shows nothing";
    QWidget* window = OpenProgress(ui, load);
    ASSERT_TRUE(window);
    EXPECT_EQ(window->windowTitle(), u"読み込み中"_s);
    EXPECT_EQ(Find<QLabel>(*window, u"lblInfomation"_s).text(), u"a.qb"_s);
    EXPECT_EQ(Find<QLabel>(*window, u"lblProcessing"_s).text(), u"質問など"_s);
    EXPECT_FALSE(other.isEnabled());

    const auto& bar = Find<PercentPicture>(*window, u"pctBar"_s);
    const QRgb black = qRgb(0, 0, 0);
    const struct {
        double fraction;
        QRgb at[4];  // just before and behind 25 % and 50 %
        int percent;
    } steps[] = {
        {0.25, {qRgb(0, 191, 0), black, black, black}, 25},
        {0.5, {qRgb(0, 191, 0), qRgb(64, 207, 64), qRgb(64, 207, 64), black}, 50},
        {1.5, {qRgb(0, 191, 0), qRgb(64, 207, 64), qRgb(64, 207, 64), qRgb(128, 223, 128)}, 100},
        {0.25, {qRgb(0, 191, 0), black, black, black}, 25},
    };
    for (const auto& step : steps) {
        EXPECT_TRUE(ui.Progress(u"回答"_s, step.fraction));
        EXPECT_EQ(bar.Percent(), step.percent);
        for (int i = 0; const int place : {24, 25, 49, 50})
            EXPECT_EQ(bar.ColorAt(place), step.at[i++]) << step.fraction << ' ' << place;
    }
    EXPECT_EQ(Find<QLabel>(*window, u"lblProcessing"_s).text(), u"回答"_s);
    ui.ProgressClose();
    EXPECT_TRUE(other.isEnabled());
    EXPECT_FALSE(window->isVisible());
}

TEST(ProgressWindow, StopAsksInTheWordsOfTheWorkAndCancelGoesOn) {
    const struct {
        bool fatal;
        bool save;
        QStringList told;
        int broken;
    } cases[] = {
        {true, false, {u"中止するとクイブラ内部のアンケートデータが壊れて保存出来なくなります。"_s}, 1},
        {true,
         true,
         {u"中止すると保存先のファイルが中途半端で読み込めなくなります。"_s,
          u"保存先のファイルが読み込めなくなりました。クイブラ終了前に必ず改めて保存し直してください。"_s},
         0},
        {false, true, {u"中止しますか？"_s}, 0},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(qPrintable(expected.told[0]));
        QtUserInterface ui;
        int broken = 0;
        QWidget* window = OpenProgress(ui, {.title = u"処理中"_s,
                                            .info = {},
                                            .caption = {},
                                            .fatal = expected.fatal,
                                            .save = expected.save,
                                            .onFatalStop = [&broken] { ++broken; }});
        ASSERT_TRUE(window && QTest::qWaitForWindowActive(window));
        QStringList told;
        const auto note = [&told](QWidget& box) { told += dynamic_cast<QMessageBox&>(box).text(); };
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            WhenAsked(
                [&](QWidget& box) {
                    note(box);
                    Key(box, key);
                },
                "QMessageBox");
            Key(*window, key);
            EXPECT_TRUE(ui.Progress({}, 0.5));
        }
        EXPECT_EQ(told, QStringList(2, expected.told[0]));
        told.clear();
        WhenAsked(
            [&](QWidget& box) {
                note(box);
                Key(box, Qt::Key_Tab);
                Key(box, Qt::Key_Return);
                if (expected.told.size() < 2) return;
                WhenAsked(
                    [&](QWidget& second) {
                        note(second);
                        Key(second, Qt::Key_Return);
                    },
                    "QMessageBox");
            },
            "QMessageBox");
        Key(*window, Qt::Key_Space);
        EXPECT_FALSE(ui.Progress({}, 0.6));
        EXPECT_EQ(told, expected.told);
        EXPECT_EQ(broken, expected.broken);
    }
}

TEST(DirBox, ListsFollowEachOther) {
    const QTemporaryDir home;
    QDir(home.path()).mkpath(u"調査/2024"_s);
    QFile file(home.filePath(u"調査/residents.qb"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    qputenv("HOME", home.path().toUtf8());

    QtUserInterface ui;
    WhenAsked([&](QWidget& window) {
        EXPECT_EQ(window.objectName(), u"frmDirBox"_s);
        EXPECT_EQ(window.windowTitle(), u"ディレクトリの選択"_s);
        auto& drives = Find<QComboBox>(window, u"drvDir"_s);
        auto& folders = Find<QTreeView>(window, u"dirDir"_s);
        auto& files = Find<QListWidget>(window, u"fleDir"_s);
        EXPECT_EQ(Focused(window), u"dirDir"_s);
        EXPECT_EQ(drives.currentData().toString(), home.path());
        EXPECT_EQ(files.count(), 0);
        ASSERT_TRUE(QTest::qWaitFor([&] { return folders.model()->rowCount(folders.currentIndex()) == 1; }));
        const auto inSight = [&folders] {
            return folders.viewport()->rect().contains(folders.visualRect(folders.currentIndex()).center());
        };
        EXPECT_TRUE(QTest::qWaitFor(inSight)) << "among all that stands before it";
        Key(window, Qt::Key_Down);
        EXPECT_EQ(folders.currentIndex().data().toString(), u"調査"_s);
        ASSERT_EQ(files.count(), 1);
        EXPECT_EQ(files.item(0)->text(), u"residents.qb"_s);

        // To the top of the file system and back by the drive list.
        drives.setFocus();
        Key(window, Qt::Key_Down);
        EXPECT_EQ(drives.currentData().toString(), u"/"_s);
        EXPECT_EQ(folders.currentIndex(), folders.model()->index(0, 0));
        Key(window, Qt::Key_Up);
        folders.setFocus();
        ASSERT_TRUE(QTest::qWaitFor([&] { return folders.isExpanded(folders.currentIndex()); }));
        Key(window, Qt::Key_Down);
        Key(window, Qt::Key_Return);
    });
    EXPECT_EQ(ui.DirBox(), home.filePath(u"調査"_s));
    WhenAsked([](QWidget& window) { Key(window, Qt::Key_Escape); });
    EXPECT_EQ(ui.DirBox(), QString());
}

TEST(FileBox, StartsAtThePathAndAppendsTheFirstFiltersSuffix) {
    const QTemporaryDir folder;
    QFile existing(folder.filePath(u"old.qb"_s));
    ASSERT_TRUE(existing.open(QIODevice::WriteOnly));
    existing.close();
    const QString filter = u"クイブラデータ(*.qb)|*.qb|全てのファイル(*.*)|*.*|"_s;

    QtUserInterface ui;
    const auto fileBox = [&](const QString& path, bool save, std::function<void(QFileDialog&, QLineEdit&)> act) {
        WhenAsked([act](QWidget& window) {
            act(dynamic_cast<QFileDialog&>(window), Find<QLineEdit>(window, u"fileNameEdit"_s));
        });
        return ui.FileBox(path, filter, save);
    };
    EXPECT_EQ(
        fileBox(folder.filePath(u"old.qb"_s), true,
                [&](QFileDialog& dialog, QLineEdit& name) {
                    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
                    EXPECT_EQ(dialog.nameFilters(), (QStringList{u"クイブラデータ (*.qb)"_s, u"全てのファイル (*)"_s}));
                    EXPECT_EQ(dialog.directory().path(), folder.path());
                    EXPECT_EQ(name.text(), u"old.qb"_s);
                    name.selectAll();
                    QTest::keyClicks(&name, u"new"_s);
                    QTest::keyClick(&name, Qt::Key_Return);
                }),
        folder.filePath(u"new.qb"_s));
    // The name of a file that is there is asked about.
    EXPECT_EQ(fileBox(folder.path().replace(u'/', u'\\') + u"\\old.qb"_s, true,
                      [](QFileDialog& dialog, QLineEdit& name) {
                          EXPECT_EQ(name.text(), u"old.qb"_s);
                          int asked = 0;
                          QTimer::singleShot(50, [&asked] {
                              asked = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()) != nullptr;
                              QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
                          });
                          QTest::keyClick(&name, Qt::Key_Return);
                          EXPECT_EQ(asked, 1);
                          EXPECT_TRUE(dialog.isVisible());
                          dialog.reject();
                      }),
              QString());
    EXPECT_EQ(fileBox(folder.path() + u'/', false,
                      [](QFileDialog& dialog, QLineEdit& name) {
                          EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
                          QTest::keyClicks(&name, u"old.qb"_s);
                          QTest::keyClick(&name, Qt::Key_Return);
                      }),
              folder.filePath(u"old.qb"_s));
}

}  // namespace quibra
