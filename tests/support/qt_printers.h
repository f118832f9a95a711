// Lets a failed comparison of texts show them as text. Include it in every test of a program or in none.
#pragma once

#include <QString>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toUtf8().constData() << '"';
}
