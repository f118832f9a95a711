// Any text is refused, or is a survey whose own text reads as the same survey again.
#include <QBuffer>
#include <cstdlib>

#include "core/survey_json.h"
#include "support/survey_bytes.h"

namespace {

const quibra::Survey& Read(const QByteArray& text) {
    static quibra::Survey survey;
    QBuffer device;
    device.setData(text);
    device.open(QIODevice::ReadOnly);
    quibra::MakeNewAgain(survey);
    quibra::ReadSurveyJson(device, survey);
    return survey;
}

QByteArray Write(const quibra::Survey& survey) {
    QByteArray text;
    QBuffer device(&text);
    device.open(QIODevice::WriteOnly);
    quibra::WriteSurveyJson(survey, device, true);
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    QByteArray text;
    try {
        text = Write(Read(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size))));
    } catch (const quibra::RuntimeError&) {
        return 0;
    }
    // What was written is never refused.
    if (Write(Read(text)) != text) std::abort();
    return 0;
}
