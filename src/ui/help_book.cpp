#include "ui/help_book.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextDocumentFragment>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

QByteArray ResourceBytes(const QString& name) {
    QFile file(u":/help/"_s + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool HoldsAll(const QString& text, const QStringList& words) {
    return std::ranges::all_of(words, [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

}  // namespace

HelpBook::HelpBook() {
    for (const QJsonValue& entry : QJsonDocument::fromJson(ResourceBytes(u"index.json"_s)).array()) {
        HelpPage page{entry["topic"_L1].toInt(), entry["page"_L1].toString(), entry["title"_L1].toString(), {}};
        for (const QJsonValue& keyword : entry["keywords"_L1].toArray())
            page.keywords += keyword.toString();
        pages_.push_back(std::move(page));
    }
    Q_ASSERT(!pages_.empty());
}

const HelpPage& HelpBook::PageOf(int topic) const {
    const auto page = std::ranges::find(pages_, topic, &HelpPage::topic);
    return page == pages_.end() ? pages_.front() : *page;
}

const HelpPage* HelpBook::PageNamed(const QString& name) const {
    const auto page = std::ranges::find(pages_, name, &HelpPage::name);
    return page == pages_.end() ? nullptr : &*page;
}

QString HelpBook::Html(const HelpPage& page) const {
    return QString::fromUtf8(ResourceBytes(page.name + u".html"_s));
}

std::vector<HelpHit> HelpBook::Search(const QString& text) const {
    const QStringList words = text.simplified().split(u' ', Qt::SkipEmptyParts);
    std::vector<HelpHit> hits;
    if (words.isEmpty()) return hits;
    for (const HelpPage& page : pages_) {
        const QStringList lines = QTextDocumentFragment::fromHtml(Html(page)).toPlainText().split(u'\n');
        if (!HoldsAll(page.title + u'\n' + page.keywords.join(u'\n') + u'\n' + lines.join(u'\n'), words)) continue;
        const auto line = std::ranges::find_if(lines.begin() + 1, lines.end(),
                                               [&](const QString& each) { return HoldsAll(each, words.mid(0, 1)); });
        hits.push_back({&page, line == lines.end() ? QString() : line->trimmed()});
    }
    return hits;
}

}  // namespace quibra
