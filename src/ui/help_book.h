// The pages of the help, as they are built into the program: which topic is on which page, and where a word stands.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace quibra {

struct HelpPage {
    int topic;
    QString name;  // of its file, without ".html"
    QString title;
    QStringList keywords;
};

// A page that holds the words sought, and the line that shows where.
struct HelpHit {
    const HelpPage* page;
    QString line;
};

class HelpBook {
  public:
    HelpBook();

    const std::vector<HelpPage>& Pages() const { return pages_; }
    // The page of a topic; the contents for a number that has none.
    const HelpPage& PageOf(int topic) const;
    // Null for a name that is none.
    const HelpPage* PageNamed(const QString& name) const;
    QString Html(const HelpPage& page) const;
    // Pages whose title, keywords or text hold all words of `text`, which blanks part, in the order of the book.
    std::vector<HelpHit> Search(const QString& text) const;

  private:
    std::vector<HelpPage> pages_;
};

}  // namespace quibra
