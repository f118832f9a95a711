#include "entry/plugin_caller.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QRegularExpression>
#include <cerrno>
#include <cstdlib>
#include <memory>

#include "companion/quibra_plugin.h"
#include "core/answer_store.h"
#include "core/code_page.h"
#include "core/labels.h"
#include "core/runtime_error.h"
#include "core/session_bus.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QString Failure(const QString& description) {
    return u"DLL呼び出しエラーが起きました。"_s + description;
}

// What a call is about.
struct Call {
    Call(const Survey& survey, qint32 window_, qint32 dno, int q, int a)
        : window(window_),
          question(static_cast<qint16>(q + 1)),
          questionCount(survey.QuestionCount),
          answer(static_cast<qint16>(a)),
          sample(survey) {
        for (int i = 0; i < survey.QuestionCount; ++i)
            labels += QuestionLabel(survey, i, {.name = true});
        if (q >= 0)
            GetAllAnswersEssay(survey, dno, sample.AnswerCount.data(), sample.SlotCno.data(), sample.SlotEssay.data());
        if (dno < survey.SampleCount()) id = survey.Samples.IDno(dno);
    }

    qint32 window;
    qint16 question;
    qint16 questionCount;
    qint16 answer;
    QStringList labels;
    qint32 id = 0;
    WorkingSample sample;
};

// Texts as a plug-in gets them: in the code page, each in a buffer of the told size, with a null pointer behind the
// last.
class TextBuffers {
  public:
    void Add(const QString& text) {
        QByteArray bytes = EncodeCodePage(text);
        bytes.truncate(qstrlen(bytes.constData()));
        bytes.append(std::max<qsizetype>(QUIBRA_EXTERN_TEXT - bytes.size(), 1), '\0');
        buffers_.push_back(std::move(bytes));
    }
    char** Pointers() {
        pointers_.clear();
        for (QByteArray& buffer : buffers_)
            pointers_.push_back(buffer.data());
        pointers_.push_back(nullptr);
        return pointers_.data();
    }

  private:
    std::vector<QByteArray> buffers_;
    std::vector<char*> pointers_;
};

QString ReasonOf(int error, const QString& name) {
    switch (error) {
        case EINVAL:
            return u"「%1」はライブラリの名前として使えません。半角の英数字と「_」「-」で64字までです。"_s.arg(name);
        case ENOENT:
            return u"ライブラリ「%1」がプラグインのフォルダーにありません。"_s.arg(name);
        case ENOEXEC:
            return u"ライブラリ「%1」を読み込めないか、関数 QuibraExternMain がありません。"_s.arg(name);
        case ETIMEDOUT:
            return u"ライブラリ「%1」が%2秒たっても終わらないので打ち切りました。"_s.arg(name).arg(
                QUIBRA_EXTERN_SECONDS);
        case ECHILD:
            return u"ライブラリ「%1」が異常終了しました。"_s.arg(name);
        case EFAULT:
            return u"ライブラリ「%1」が渡された領域の外に書き込みました。"_s.arg(name);
        case EMSGSIZE:
            return u"ライブラリ「%1」の返した文字列が長すぎます。"_s.arg(name);
        case EPROTO:
            return u"ライブラリ「%1」の結果が壊れています。"_s.arg(name);
        default:
            return RuntimeError::FromErrno(error).Text();
    }
}

// The plug-in may give the survey another name to call from now on; all else it writes is dropped.
QString CallLibrary(Survey& survey, Call& call) {
    TextBuffers texts, labels, essays;
    texts.Add(survey.ExternDLL);
    texts.Add(survey.Title);
    for (const QString& label : call.labels)
        labels.Add(label);
    for (const QString& essay : call.sample.SlotEssay)
        essays.Add(essay);
    char** const nameAndTitle = texts.Pointers();
    const std::unique_ptr<char, decltype(&std::free)> result(
        CallExternDLL(nameAndTitle[0], &call.window, nameAndTitle[1], call.question, call.questionCount, call.answer,
                      labels.Pointers(), call.id, call.sample.AnswerCount.data(), call.sample.SlotCno.data(),
                      essays.Pointers()),
        &std::free);
    if (!result) return Failure(ReasonOf(errno, survey.ExternDLL));
    survey.ExternDLL = DecodeCodePage(nameAndTitle[0]);
    return DecodeCodePage(result.get());
}

// A service's name is that of its interface too, and with "/" for "." the path of its object; these two know no "-".
QString CallService(const Survey& survey, const Call& call) {
    const QString& name = survey.ExternDLL;
    static const QRegularExpression kBusName(u"\\A[A-Za-z_-][A-Za-z0-9_-]*(\\.[A-Za-z_-][A-Za-z0-9_-]*)+\\z"_s);
    constexpr qsizetype kLongestName = 255;
    if (name.size() > kLongestName || !kBusName.match(name).hasMatch())
        return Failure(u"「%1」は D-Bus のサービスの名前として使えません。"_s.arg(name));
    if (!HasSessionBus()) return Failure(u"セッションの D-Bus がありません。"_s);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return Failure(bus.lastError().message());

    const QString interface = QString(name).replace(u'-', u'_');
    const QString object = u'/' + QString(interface).replace(u'.', u'/');
    QDBusMessage message = QDBusMessage::createMethodCall(name, object, interface, u"QBExternProcessMain"_s);
    const auto numbers = [](const std::vector<qint16>& list) {
        return QVariant::fromValue(QList<short>(list.begin(), list.end()));
    };
    message << call.window << survey.Title << QVariant::fromValue<short>(call.question)
            << QVariant::fromValue<short>(call.questionCount) << QVariant::fromValue<short>(call.answer) << call.labels
            << call.id << numbers(call.sample.AnswerCount) << numbers(call.sample.SlotCno)
            << QStringList(call.sample.SlotEssay.begin(), call.sample.SlotEssay.end());
    const QDBusMessage reply = bus.call(message, QDBus::Block, QUIBRA_EXTERN_SECONDS * 1000);
    if (reply.type() == QDBusMessage::ErrorMessage) return Failure(u"「%1」: %2"_s.arg(name, reply.errorMessage()));
    const QVariant result = reply.arguments().value(0);
    return result.userType() == qMetaTypeId<QDBusVariant>() ? result.value<QDBusVariant>().variant().toString()
                                                            : result.toString();
}

}  // namespace

QString PluginCaller::CallExternal(Survey& survey, qint32 dno, int q, int a) {
    Call call(survey, window_, dno, q, a);
    const bool typing = q >= 0 && q < survey.QuestionCount;
    if (!survey.ExternDLL.isEmpty() && !consent_.MayRun(survey, ui_, !typing))
        return typing ? QString() : Failure(u"このアンケートのプログラムを動かすことは許可されていません。"_s);
    ui_.Busy(true);
    const QString text = survey.ExternDLL.contains(u'.') ? CallService(survey, call) : CallLibrary(survey, call);
    ui_.Busy(false);
    return text;
}

}  // namespace quibra
