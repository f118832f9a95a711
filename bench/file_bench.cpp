// Loading and saving a million samples, beside read() and write() of the same bytes.
#include <benchmark/benchmark.h>

#include <QDir>
#include <QTemporaryDir>

#include "core/file_names.h"
#include "core/whole_file.h"
#include "session/survey_file.h"
#include "silent_interface.h"
#include "synthetic_survey.h"

using namespace Qt::StringLiterals;

namespace quibra {
namespace {

constexpr size_t kPieceBytes = 1 << 20;

// The synthetic survey as a file of its own in a temporary folder.
const QString& SyntheticFile() {
    static const QTemporaryDir folder;
    static const QString path = [] {
        SilentInterface ui;
        SurveySession session(ui, folder.path());
        session.survey = SyntheticSurvey();
        QString file = folder.filePath(u"million.qb"_s);
        if (!SurveySave(session, file)) qFatal("the survey to measure on could not be saved");
        return file;
    }();
    return path;
}

void BytesPerSecond(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * BinaryFile::OpenToRead(SyntheticFile()).Size());
}

void ReadBytes(benchmark::State& state) {
    std::vector<unsigned char> bytes(static_cast<size_t>(BinaryFile::OpenToRead(SyntheticFile()).Size()));
    for (auto _ : state) {
        BinaryFile file = BinaryFile::OpenToRead(SyntheticFile());
        for (size_t done = 0; done < bytes.size();)
            done += file.Read(bytes.data() + done, std::min(kPieceBytes, bytes.size() - done));
        benchmark::DoNotOptimize(bytes.data());
    }
    BytesPerSecond(state);
}
BENCHMARK(ReadBytes)->Unit(benchmark::kMillisecond)->UseRealTime();

void LoadSurvey(benchmark::State& state) {
    SilentInterface ui;
    SurveySession session(ui, QDir::tempPath());
    for (auto _ : state) {
        QString path = SyntheticFile();
        if (SurveyLoad(session, path, kExpectSurvey) != kLoaded) state.SkipWithError("not loaded");
    }
    BytesPerSecond(state);
}
BENCHMARK(LoadSurvey)->Unit(benchmark::kMillisecond)->UseRealTime();

// Both leave the bytes on the disk, not in the system's memory, and replace what was there.
void WriteBytes(benchmark::State& state) {
    const QString path = SyntheticFile() + u".bytes"_s;
    BinaryFile source = BinaryFile::OpenToRead(SyntheticFile());
    std::vector<unsigned char> bytes(static_cast<size_t>(source.Size()));
    source.Read(bytes.data(), bytes.size());
    for (auto _ : state) {
        WholeFile file(path);
        for (size_t done = 0; done < bytes.size(); done += kPieceBytes)
            file.Bytes().Write(bytes.data() + done, std::min(kPieceBytes, bytes.size() - done));
        file.Replace();
    }
    RemoveFile(path);
    BytesPerSecond(state);
}
BENCHMARK(WriteBytes)->Unit(benchmark::kMillisecond)->UseRealTime();

void SaveSurvey(benchmark::State& state) {
    SilentInterface ui;
    SurveySession session(ui, QDir::tempPath());
    session.survey = SyntheticSurvey();
    for (auto _ : state)
        if (!SurveySave(session, SyntheticFile() + u".saved"_s)) state.SkipWithError("not saved");
    BytesPerSecond(state);
}
BENCHMARK(SaveSurvey)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace quibra
