#include <QIODevice>
#include <nlohmann/json.hpp>

#include "core/answer_store.h"
#include "core/survey_json.h"

namespace quibra {

namespace {

// Text on its way to the device. Nothing of the survey is held but one buffer.
class JsonOutput {
  public:
    explicit JsonOutput(QIODevice& out) : out_(out) {}

    void Raw(QByteArrayView text) {
        buffer_.append(text);
        if (buffer_.size() >= kBufferSize) Flush();
    }
    void Integer(qint64 value) { Raw(QByteArray::number(value)); }
    void Number(double value) { Raw(QByteArray::fromStdString(nlohmann::json(value).dump())); }
    void Boolean(bool value) { Raw(value ? "true" : "false"); }
    void Text(const QString& text) {
        buffer_.append('"');
        const QByteArray utf8 = text.toUtf8();
        for (const char character : utf8)
            AppendEscaped(character);
        Raw("\"");
    }
    void Key(const char* key) {
        Raw("\"");
        Raw(key);
        Raw("\":");
    }
    void Field(const char* key, qint64 value) {
        Key(key);
        Integer(value);
    }
    void Field(const char* key, const QString& value) {
        Key(key);
        Text(value);
    }
    void Flush() {
        if (out_.write(buffer_) != buffer_.size()) throw RuntimeError(kErrorDeviceIo, out_.errorString());
        buffer_.resize(0);
    }

  private:
    static constexpr qsizetype kBufferSize = 1 << 20;

    void AppendEscaped(char character) {
        switch (character) {
            case '"':
                buffer_.append("\\\"");
                return;
            case '\\':
                buffer_.append("\\\\");
                return;
            case '\r':
                buffer_.append("\\r");
                return;
            case '\n':
                buffer_.append("\\n");
                return;
            case '\t':
                buffer_.append("\\t");
                return;
            default:
                break;
        }
        if (static_cast<unsigned char>(character) >= 0x20) {
            buffer_.append(character);
        } else {
            buffer_.append("\\u00");
            buffer_.append(QByteArray(1, character).toHex());
        }
    }

    QIODevice& out_;
    QByteArray buffer_;
};

// Puts `separator` in front of every item but the first.
class Separator {
  public:
    explicit Separator(const char* separator) : separator_(separator) {}
    void Next(JsonOutput& json) {
        if (!first_) json.Raw(separator_);
        first_ = false;
    }

  private:
    const char* separator_;
    bool first_ = true;
};

void WriteLines(JsonOutput& json, std::span<const LimitLine, 16> column) {
    json.Raw("[");
    Separator comma(",");
    for (int line = 1; line < 16 && column[line].a != 0; ++line) {
        comma.Next(json);
        json.Raw("[");
        json.Integer(column[line].a);
        json.Raw(",");
        json.Integer(column[line].b);
        json.Raw("]");
    }
    json.Raw("]");
}

void WriteQuestion(JsonOutput& json, const Survey& survey, int q) {
    const QuestionRec& question = survey.Questions[q];
    qsizetype length = question.Text.size();
    while (length > 0 && question.Text[length - 1] == u' ')
        --length;
    json.Raw("{");
    json.Field("Text", question.Text.left(length));
    json.Raw(",");
    json.Field("Anum", question.Anum);
    json.Raw(",");
    json.Field("LabelKind", question.LabelKind);
    json.Raw(",");
    json.Field("ChoiceCount", question.ChoiceCount);
    json.Raw(",");
    json.Key("QLimit");
    WriteLines(json, survey.QLimit.Column(q));
    json.Raw(",");
    json.Key("Choices");
    json.Raw("[");
    Separator comma(",\n  ");
    for (int c = 0; c < question.ChoiceCount; ++c) {
        const ChoiceRec& choice = survey.Choices(c, q);
        comma.Next(json);
        json.Raw("{");
        json.Field("Text", choice.Text);
        json.Raw(",");
        json.Key("Low");
        json.Number(choice.Low);
        json.Raw(",");
        json.Key("High");
        json.Number(choice.High);
        json.Raw(",");
        json.Field("CodeText", choice.CodeText);
        json.Raw(",");
        json.Field("Status", choice.Status);
        json.Raw("}");
    }
    json.Raw("]}");
}

// The samples' answers, read into the same lists again and again.
class SampleWriter {
  public:
    explicit SampleWriter(const Survey& survey)
        : survey_(survey), counts_(survey.QuestionCount), answers_(survey.AnswerSlots + 1) {}

    void Write(JsonOutput& json, qint32 dno) {
        GetAllAnswers(survey_, dno, counts_.data(), answers_.data());
        json.Raw("{\"IDno\":");
        json.Integer(survey_.Samples.IDno(dno));
        json.Raw(",\"PreLimitBits\":");
        json.Integer(survey_.Samples.PreLimitBits(dno));
        json.Raw(",\"Answers\":[");
        const qint16* answer = answers_.data();
        Separator comma(",");
        for (const qint16 count : counts_) {
            comma.Next(json);
            json.Raw("[");
            Separator inner(",");
            for (const qint16* end = answer + count; answer != end; ++answer) {
                inner.Next(json);
                json.Integer(*answer);
            }
            json.Raw("]");
        }
        json.Raw("],\"Essays\":{");
        Separator essayComma(",");
        for (const Essay& essay : survey_.Samples.Essays(dno)) {
            essayComma.Next(json);
            json.Raw("\"");
            json.Integer(essay.slot);
            json.Raw("\":");
            json.Text(essay.text);
        }
        json.Raw("}}");
    }

  private:
    const Survey& survey_;
    std::vector<qint16> counts_;
    std::vector<qint16> answers_;
};

void WriteDefinition(JsonOutput& json, const Survey& survey) {
    const auto field = [&](const char* key, const auto& value) {
        json.Field(key, value);
        json.Raw(",\n");
    };
    field("Title", survey.Title);
    field("Editor", survey.Editor);
    field("Password", survey.Password);
    field("LockLevel", survey.LockLevel);
    field("QuestionCount", survey.QuestionCount);
    field("SampleCount", survey.SampleCount());
    field("CorrectFlags", survey.CorrectFlags);
    field("DistName", survey.DistName);
    field("DistQno", survey.DistQno);
    field("EssayFull", survey.EssayFull);
    field("ExternDLL", survey.ExternDLL);

    json.Raw("\"Questions\":[\n");
    Separator questionComma(",\n");
    for (int q = 0; q < survey.QuestionCount; ++q) {
        questionComma.Next(json);
        WriteQuestion(json, survey, q);
    }
    json.Raw("\n],\n\"PreLimit\":[");
    Separator slotComma(",");
    for (int slot = 0; slot < kPreLimitSlots; ++slot) {
        slotComma.Next(json);
        WriteLines(json, survey.PreLimit.Column(slot));
    }
    const int lineEnd = LineStartEnd(survey);
    json.Raw("],\n\"LineStart\":[");
    Separator startComma(",");
    for (int i = 0; i <= lineEnd; ++i) {
        startComma.Next(json);
        json.Integer(survey.LineStart[i]);
    }
    json.Raw("],\n\"LineFlag\":[");
    Separator flagComma(",");
    for (int i = 0; i < lineEnd - 1; ++i) {
        flagComma.Next(json);
        json.Boolean(survey.LineFlag[i]);
    }
    json.Raw("]");
}

}  // namespace

void WriteSurveyJson(const Survey& survey, QIODevice& out, bool withSamples, const std::function<bool(qint32)>& tick) {
    JsonOutput json(out);
    json.Raw("{");
    WriteDefinition(json, survey);
    if (withSamples) {
        json.Raw(",\n\"Samples\":[\n");
        SampleWriter writer(survey);
        Separator comma(",\n");
        for (qint32 dno = 0; dno < survey.SampleCount(); ++dno) {
            comma.Next(json);
            writer.Write(json, dno);
            if (tick && !tick(dno + 1)) return;
        }
        json.Raw("\n]");
    }
    json.Raw("}\n");
    json.Flush();
}

}  // namespace quibra
