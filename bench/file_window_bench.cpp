#include <QApplication>
#include <QFileInfo>
#include <QPushButton>
#include <QTemporaryDir>
#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "apps/quibra/frm_main.h"
#include "message_loop_probe.h"
#include "session/main_commands.h"
#include "session/survey_file.h"
#include "session/survey_session.h"
#include "silent_interface.h"
#include "synthetic_survey.h"
#include "window_bench.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kRuns = 7;
constexpr quint32 kSeed = 20261125;
// Milliseconds into a job at which its progress window is there to be clicked on.
constexpr double kProgressIsShown = 350;

void Shuffle(SampleList& samples) {
    std::vector<qint32> order(static_cast<size_t>(samples.Count()));
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), std::mt19937(kSeed));
    samples.Reorder(order);
}

void SaveTo(const QString& path, Survey survey) {
    SilentInterface ui;
    SurveySession session(ui, QString());
    session.survey = std::move(survey);
    if (!SurveySave(session, path)) qFatal("the survey to measure on could not be saved");
}

void MeasureFile(const char* what, const QString& path) {
    std::printf("%s, %lld bytes\n", what, QFileInfo(path).size());
    Asked ui;
    SurveySession session(ui, QString());
    FrmMain window(session);
    window.show();
    std::vector<double> loads, loadGaps, saves, saveGaps;
    const auto probed = [](std::vector<double>& times, std::vector<double>& gaps, const std::function<void()>& work) {
        QApplication::processEvents();
        MessageLoopProbe probe;
        times.push_back(Milliseconds(work));
        QApplication::processEvents();
        gaps.push_back(probe.LongestGapMilliseconds());
    };
    for (int run = 0; run < kRuns; ++run)
        probed(loads, loadGaps, [&] { window.SurveyOpen(path, kExpectSurvey); });
    session.survey.FileName = path + u".saved"_s;  // the file to load stays as it is
    for (int run = 0; run < kRuns; ++run) {
        session.ChangedOn();
        probed(saves, saveGaps, [&] { SaveSurvey(session); });
    }
    Print("  loaded", loads, "ms");
    Print("  longest gap between turns", loadGaps, "ms");
    Print("  saved", saves, "ms");
    Print("  longest gap between turns", saveGaps, "ms");

    if (loads.back() < 2 * kProgressIsShown) return;
    QPushButton* stop = nullptr;
    for (QWidget* each : QApplication::topLevelWidgets())
        if (auto* found = each->findChild<QPushButton*>(u"cmdStop"_s)) stop = found;
    std::vector<double> waits;
    for (int run = 0; run < kRuns; ++run) {
        const double into = kProgressIsShown + (loads.back() - kProgressIsShown) * run / (2 * kRuns);
        const auto delay = std::chrono::milliseconds(static_cast<int>(into));
        const double wait = ui.WaitForQuestion(stop, delay, [&] { window.SurveyOpen(path, kExpectSurvey); });
        if (wait >= 0) waits.push_back(wait);
    }
    std::printf("  %zu of %d clicks in time\n", waits.size(), kRuns);
    Print("  click on Stop to its question", waits, "ms");
}

}  // namespace

void MeasureFiles() {
    const QTemporaryDir folder;
    const QString plain = folder.filePath(u"million.qb"_s);
    SaveTo(plain, MakeSyntheticSurvey(kMillion));
    MeasureFile("a million samples", plain);
    for (const qint32 millions : {1, 3}) {
        const QString texts = folder.filePath(u"texts.qb"_s);
        Survey survey = MakeSyntheticSurvey(millions * kMillion, true);
        Shuffle(survey.Samples);
        SaveTo(texts, std::move(survey));
        MeasureFile(millions == 1 ? "a million samples in no order, a third with a text" : "three million of these",
                    texts);
    }
}

}  // namespace quibra
