// Writes at build time what is installed beside quibra-cli and made from its table of verbs:
//   verb_files completion OUT
//   verb_files manual TEMPLATE LANGUAGE OUT    LANGUAGE is "ja" or "en"
#include <QCoreApplication>
#include <QFile>
#include <cstdio>

#include "apps/quibra-cli/verb_texts.h"

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    QString text;
    if (words.value(1) == u"completion" && words.size() == 3) {
        text = quibra::BashCompletion();
    } else if (words.value(1) == u"manual" && words.size() == 5) {
        QFile page(words[2]);
        if (!page.open(QIODevice::ReadOnly)) return 1;
        text = quibra::ManualPage(QString::fromUtf8(page.readAll()), words[3] == u"ja");
    } else {
        std::fputs("usage: verb_files completion OUT | manual TEMPLATE LANGUAGE OUT\n", stderr);
        return 2;
    }
    QFile out(words.last());
    const QByteArray bytes = text.toUtf8();
    return out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size() && out.flush() ? 0 : 1;
}
