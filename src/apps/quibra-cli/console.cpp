#include "apps/quibra-cli/console.h"

#include <unistd.h>

#include <QBuffer>
#include <QFile>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "core/runtime_error.h"

using namespace Qt::StringLiterals;

namespace quibra {

void RefuseUsage(const QString& reason) {
    throw Refusal{reason, kWrongUsage};
}

void OpenStandardInput(QFile& input) {
    static bool taken = false;
    if (std::exchange(taken, true)) RefuseUsage(u"標準入力（-）は一度しか読めません"_s);
    if (!input.open(stdin, QIODevice::ReadOnly)) throw Refusal{u"標準入力を読めません"_s};
}

std::unique_ptr<QIODevice> OpenInput(const QString& path) {
    if (path == u"-") {
        QFile input;
        OpenStandardInput(input);
        auto whole = std::make_unique<QBuffer>();
        whole->setData(input.readAll());
        whole->open(QIODevice::ReadOnly);
        return whole;
    }
    auto file = std::make_unique<QFile>(path);
    if (!file->exists()) throw Refusal{path + u"が見つかりません"_s};
    if (!file->open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw Refusal{u"%1 を読めません。%2"_s.arg(path, file->errorString())};
    return file;
}

QByteArray ShownOnTerminal(const QByteArray& text) {
    QByteArray shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
        if (byte == '\t' || byte == '\n' || (byte == '\r' && next == '\n')) {
            shown += text[i];
        } else if (byte < 0x20 || byte == 0x7F) {
            // The pictures stand in a row from U+2400 on, that of DEL behind them at U+2421.
            shown += "\xE2\x90";
            shown += static_cast<char>(byte == 0x7F ? 0xA1 : 0x80 + byte);
        } else if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {
            shown += "\xEF\xBF\xBD";  // the second set of control characters has no pictures
            ++i;
        } else {
            shown += text[i];
        }
    }
    return shown;
}

void ErrorLine(const QString& text) {
    static const bool terminal = isatty(STDERR_FILENO) == 1;
    QString lines = text;
    lines.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    const QByteArray bytes = (lines + u'\n').toUtf8();
    std::fputs((terminal ? ShownOnTerminal(bytes) : bytes).constData(), stderr);
}

StandardOutput::StandardOutput() : terminal_(isatty(STDOUT_FILENO) == 1) {
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

void StandardOutput::Print(const QByteArray& bytes) {
    if (write(bytes) != bytes.size()) throw RuntimeError(kErrorDeviceIo, errorString());
}

bool StandardOutput::IsAbandoned() const {
    return error_ == EPIPE;
}

qint64 StandardOutput::writeData(const char* data, qint64 size) {
    QByteArray bytes = QByteArray::fromRawData(data, size);
    if (terminal_) bytes = ShownOnTerminal(bytes);
    for (qint64 done = 0; done < bytes.size();) {
        const ssize_t step = ::write(STDOUT_FILENO, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (step < 0 && errno == EINTR) continue;
        if (step < 0) {
            error_ = errno;
            setErrorString(u"標準出力に書けません。"_s + RuntimeError::FromErrno(error_).Text());
            return -1;
        }
        done += step;
    }
    return size;
}

}  // namespace quibra
