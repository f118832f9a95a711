#include "companion/extern_message.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "companion/quibra_plugin.h"

namespace quibra {

namespace {

class Writer {
  public:
    Writer() : bytes_(kLengthBytes, '\0') {}

    template <typename Number>
    void Put(Number value) {
        char bytes[sizeof value];
        std::memcpy(bytes, &value, sizeof value);
        bytes_.append(bytes, sizeof value);
    }
    void Put(const std::string& text) {
        PutLength(text.size());
        bytes_ += text;
    }
    template <typename Item>
    void Put(const std::vector<Item>& list) {
        PutLength(list.size());
        for (const Item& item : list)
            Put(item);
    }

    std::string TakeMessage() {
        const auto length = static_cast<uint32_t>(bytes_.size() - kLengthBytes);
        std::memcpy(bytes_.data(), &length, sizeof length);
        return std::move(bytes_);
    }

  private:
    void PutLength(size_t length) { Put(static_cast<uint32_t>(length)); }

    std::string bytes_;
};

class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    template <typename Number>
    bool Get(Number& value) {
        if (bytes_.size() < sizeof value) return false;
        std::memcpy(&value, bytes_.data(), sizeof value);
        bytes_.remove_prefix(sizeof value);
        return true;
    }
    bool Get(std::string& text) {
        uint32_t length = 0;
        if (!Get(length) || length > bytes_.size()) return false;
        text.assign(bytes_.substr(0, length));
        bytes_.remove_prefix(length);
        return true;
    }
    template <typename Item>
    bool Get(std::vector<Item>& list) {
        uint32_t length = 0;
        // A length that the bytes can't hold costs no memory.
        constexpr size_t kLeast = std::is_same_v<Item, std::string> ? kLengthBytes : sizeof(Item);
        if (!Get(length) || length > bytes_.size() / kLeast) return false;
        list.resize(length);
        return std::all_of(list.begin(), list.end(), [this](Item& item) { return Get(item); });
    }
    bool AtEnd() const { return bytes_.empty(); }

  private:
    std::string_view bytes_;
};

// `visit` gets all fields of a call, in the order in which they travel.
template <typename Call, typename Visit>
bool VisitFields(Call& call, Visit visit) {
    return visit(call.path) && visit(call.name) && visit(call.window) && visit(call.title) && visit(call.question) &&
           visit(call.questionCount) && visit(call.answer) && visit(call.labels) && visit(call.id) &&
           visit(call.counts) && visit(call.answers) && visit(call.essays);
}

void Put(Writer& writer, const ExternCall& call) {
    VisitFields(call, [&writer](const auto& field) {
        writer.Put(field);
        return true;
    });
}

bool Get(Reader& reader, ExternCall& call) {
    return VisitFields(call, [&reader](auto& field) { return reader.Get(field); });
}

bool Fits(const std::string& written, const std::string& text) {
    return written.size() < TextCapacity(text.size()) && written.find('\0') == std::string::npos;
}

bool Fits(const std::vector<std::string>& written, const std::vector<std::string>& texts) {
    return std::equal(written.begin(), written.end(), texts.begin(), texts.end(),
                      [](const std::string& a, const std::string& b) { return Fits(a, b); });
}

size_t Capacity(const std::vector<std::string>& texts) {
    size_t sum = 0;
    for (const std::string& text : texts)
        sum += kLengthBytes + TextCapacity(text.size());
    return sum;
}

}  // namespace

size_t TextCapacity(size_t length) {
    return std::max<size_t>(QUIBRA_EXTERN_TEXT, length + 1);
}

std::string EncodeCall(const ExternCall& call) {
    Writer writer;
    Put(writer, call);
    return writer.TakeMessage();
}

std::string EncodeAnswer(const ExternAnswer& answer) {
    Writer writer;
    writer.Put(answer.error);
    writer.Put(answer.result);
    Put(writer, answer.written);
    return writer.TakeMessage();
}

uint32_t BodyLength(const char* bytes) {
    uint32_t length = 0;
    std::memcpy(&length, bytes, sizeof length);
    return length;
}

bool DecodeCall(std::string_view body, ExternCall& call) {
    Reader reader(body);
    return Get(reader, call) && reader.AtEnd();
}

bool DecodeAnswer(std::string_view body, ExternAnswer& answer) {
    Reader reader(body);
    return reader.Get(answer.error) && reader.Get(answer.result) && Get(reader, answer.written) && reader.AtEnd();
}

size_t LongestAnswer(const ExternCall& call) {
    return EncodeCall(call).size() + QUIBRA_EXTERN_RESULT + Capacity({call.name, call.title}) + Capacity(call.labels) +
           Capacity(call.essays);
}

bool FitsInto(const ExternCall& written, const ExternCall& call) {
    return Fits(written.name, call.name) && Fits(written.title, call.title) && Fits(written.labels, call.labels) &&
           Fits(written.essays, call.essays) && written.counts.size() == call.counts.size() &&
           written.answers.size() == call.answers.size();
}

}  // namespace quibra
