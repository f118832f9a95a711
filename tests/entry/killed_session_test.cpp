// Typed sessions that are killed: fifty at once, each in a process of its own that keys in sheets, saves now and then,
// and tells on a pipe what it has typed. The parent kills each at a random moment and looks at what is left.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QTemporaryDir>
#include <chrono>
#include <csignal>
#include <thread>

#include "core/answer_store.h"
#include "entry/entry_session.h"
#include "session/journal.h"
#include "session/journal_recovery.h"
#include "session/main_commands.h"
#include "session/survey_file.h"
#include "support/random_survey.h"
#include "support/scripted_interface.h"
#include "support/survey_builder.h"
#include "support/survey_bytes.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSessions = 50;

struct NoCaller : ExternCaller {
    QString CallExternal(Survey&, qint32, int, int) override { return QString(); }
    void Trust(const Survey&) override {}
};

// What stands on the pipe after each key: how many sheets are stored, how many keys of the next one are typed, and
// when.
struct Mark {
    int sheets;
    int keys;
    Clock::rep time;
};

// Sheet n has the text n.
QString TextOf(int n) {
    return u"1/sheet %1 of a long session/-"_s.arg(n);
}

[[noreturn]] void TypeForEver(const QString& folder, int pipe, unsigned seed) {
    ScriptedInterface user;
    SurveySession session(user, folder);
    Journal journal(session, folder + u"/journal/"_s);
    QString file = folder + u"/a.qb"_s;
    SurveyLoad(session, file, kExpectSurvey);
    NoCaller caller;
    EntryView view;
    EntrySession entry(session, caller, view);
    entry.Open();
    Random random(seed);
    for (int sheet = 0;; ++sheet) {
        entry.NextInput();
        const QString text = TextOf(sheet);
        for (int key = 1; key <= text.size(); ++key) {
            std::this_thread::sleep_for(std::chrono::milliseconds(Pick(random, 0, 12)));
            entry.TypeReply(text.left(key), key);
            const Mark mark{sheet, key, Clock::now().time_since_epoch().count()};
            if (write(pipe, &mark, sizeof mark) != sizeof mark) _exit(1);
        }
        entry.ReplyLostFocus();
        if (Pick(random, 0, 3) == 0) SaveSurvey(session);
    }
}

struct Typist {
    QTemporaryDir folder;
    pid_t process = 0;
    int pipe = -1;
    Clock::time_point end;
};

TEST(KilledSession, LosesTheLastSecondAtMostAndItsFileIsWhole) {
    SurveyBuilder builder;
    builder.Question(u"話"_s, u""_s, 1, {u"話"_s});
    builder.Status(0, 1, {kEssay});
    builder.Lines({{0, 0}});
    const QByteArray empty = WriteSurveyBytes(builder.Get());
    std::vector<Typist> typists(kSessions);
    Random random(8);
    for (int i = 0; i < kSessions; ++i) {
        Typist& typist = typists[static_cast<size_t>(i)];
        WriteFileBytes(typist.folder.filePath(u"a.qb"_s), empty);
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        typist.process = fork();
        ASSERT_GE(typist.process, 0);
        if (typist.process == 0) TypeForEver(typist.folder.path(), ends[1], static_cast<unsigned>(i));
        close(ends[1]);
        typist.pipe = ends[0];
        typist.end = Clock::now() + std::chrono::milliseconds(Pick(random, 200, 4000));
    }
    std::vector<Typist*> byEnd;
    for (Typist& typist : typists)
        byEnd.push_back(&typist);
    std::sort(byEnd.begin(), byEnd.end(), [](const Typist* a, const Typist* b) { return a->end < b->end; });
    for (Typist* typist : byEnd) {
        std::this_thread::sleep_until(typist->end);
        typist->end = Clock::now();
        kill(typist->process, SIGKILL);
        waitpid(typist->process, nullptr, 0);
    }
    int recovered = 0;
    for (const Typist& typist : typists) {
        Mark before{0, 0, 0};  // what was typed a second before the end
        Mark last{0, 0, 0};
        for (Mark mark; read(typist.pipe, &mark, sizeof mark) == sizeof mark; last = mark)
            if (Clock::time_point(Clock::duration(mark.time)) < typist.end - std::chrono::seconds(1)) before = mark;
        close(typist.pipe);
        ScriptedInterface user;
        SurveySession session(user, typist.folder.path());
        Journal journal(session, typist.folder.filePath(u"other/"_s));
        QString file = typist.folder.filePath(u"a.qb"_s);
        // A save that was cut short between its renames has left the version before under the backup's name.
        if (!QFile::exists(file)) file = typist.folder.filePath(u"a.qb~"_s);
        ASSERT_EQ(SurveyLoad(session, file, kExpectSurvey), kLoaded);
        for (const LeftJournal& left : LeftJournals(typist.folder.filePath(u"journal"_s))) {
            // One of before a save that was cut short behind it tells nothing new.
            if (!left.FitsItsFile()) continue;
            EXPECT_TRUE(RestoreJournal(session, left));
            ++recovered;
        }
        // All sheets in their order, and the draft of the last one.
        const Survey& survey = session.survey;
        int sheets = 0;
        while (sheets < survey.SampleCount() && survey.Samples.Essay(sheets, 0) == TextOf(sheets).section(u'/', 1, 1))
            ++sheets;
        EXPECT_GE(survey.SampleCount(), sheets);
        EXPECT_LE(survey.SampleCount(), sheets + 1);
        // A sheet that was stored just before the end may still stand in the draft, too.
        const bool stored = session.Draft() && sheets > 0 && session.Draft()->IDno == survey.Samples.IDno(sheets - 1);
        const auto keys = session.Draft() && !stored ? static_cast<int>(session.Draft()->Text.size()) : 0;
        EXPECT_GE(std::pair(sheets, keys), std::pair(before.sheets, before.keys));
        EXPECT_LE(std::pair(sheets, keys), std::pair(last.sheets + 1, 0));
        if (session.Draft()) {
            EXPECT_TRUE(TextOf(stored ? sheets - 1 : sheets).startsWith(session.Draft()->Text));
        }
    }
    EXPECT_GT(recovered, kSessions / 2);
}

}  // namespace
}  // namespace quibra
