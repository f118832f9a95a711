// JSON a line: what verbs print, and the commands of those that are driven from standard input.
#pragma once

#include <QFile>
#include <optional>
#include <string>

#include "apps/quibra-cli/console.h"
#include "core/strict_json.h"

namespace quibra {

// A text as a JSON object takes it.
inline std::string Utf8(const QString& text) {
    return text.toStdString();
}

// One object on one line.
void PrintJson(StandardOutput& out, const Json& object);

// Standard input, line by line as it comes, so that whoever writes a command can wait for its answer. Empty lines are
// passed over.
class CommandLines {
  public:
    // Refuses a standard input that can't be read or was read already.
    CommandLines();

    // Nothing at the end of the input.
    std::optional<QByteArray> Next();
    // The number of the line that Next gave, from 1.
    int Number() const { return number_; }

  private:
    QFile input_;
    int number_ = 0;
};

}  // namespace quibra
