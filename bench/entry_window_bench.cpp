#include <QTest>
#include <QTextBlock>
#include <vector>

#include "entry/windows/frm_add_data.h"
#include "entry/windows/sheet_box.h"
#include "entry_survey.h"
#include "silent_interface.h"
#include "support/windows/scripted_desk.h"
#include "window_bench.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kPresses = 300;

class NoCaller : public ExternCaller {
  public:
    QString CallExternal(Survey&, qint32, int, int) override { return QString(); }
    void Trust(const Survey&) override {}
};

struct Window {
    explicit Window(Survey survey) : session(ui, QString()) {
        session.survey = std::move(survey);
        session.survey.SavedTime = QDateTime::currentDateTime();
        opened = Milliseconds([this] {
            window = std::make_unique<FrmAddData>(session, caller, desk);
            window->show();
            QCoreApplication::processEvents();
        });
        box = window->findChild<SheetBox*>(u"txtReply"_s);
    }

    SilentInterface ui;
    SurveySession session;
    NoCaller caller;
    ScriptedDesk desk;
    double opened = 0;
    std::unique_ptr<FrmAddData> window;
    SheetBox* box;
};

// A person goes back to some line of a finished sheet, changes it and back again, and commits: all of it is read,
// checked, stored and built, and the box is painted.
void MeasureKeys(const QString& name, Survey survey) {
    Window rig(std::move(survey));
    std::vector<double> times;
    int line = 0;
    for (int i = 0; i < kPresses; ++i) {
        line = (line + 7) % rig.box->document()->blockCount();
        rig.box->setTextCursor(QTextCursor(rig.box->document()->findBlockByNumber(line)));
        QTest::keyClick(rig.box, Qt::Key_1);
        QTest::keyClick(rig.box, Qt::Key_Backspace);
        QCoreApplication::processEvents();
        times.push_back(Milliseconds([&] {
            QTest::keyClick(rig.box, Qt::Key_Space);
            rig.box->viewport()->repaint();
        }));
    }
    std::ranges::sort(times);
    std::printf("%-48s median %8.1f  p99 %8.1f ms (%d characters)\n", qPrintable(name), times[times.size() / 2],
                times[times.size() * 99 / 100], static_cast<int>(rig.box->Text().size()));
}

}  // namespace

void MeasureEntryWindow() {
    MeasureKeys(u"key to sheet, 60 questions, 200,000 samples"_s, MakeEntrySurvey(60, 1, 200'000));
    MeasureKeys(u"key to sheet, 255 questions of 4 with texts"_s, MakeEntrySurvey(255, 4, 1));
    Window rig(MakeEntrySurvey(20, 1, 1'000'000));
    Print("entry window opened, a million samples", {rig.opened}, "ms");
    std::vector<double> added;
    for (int i = 0; i < 10; ++i)
        added.push_back(Milliseconds([&] { rig.window->Entry().NextInput(); }));
    Print("sample added, the empty one before it dropped", added, "ms");
}

}  // namespace quibra
