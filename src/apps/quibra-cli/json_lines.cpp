#include "apps/quibra-cli/json_lines.h"

namespace quibra {

void PrintJson(StandardOutput& out, const Json& object) {
    out.Print(QByteArray::fromStdString(object.dump(-1, ' ', false, Json::error_handler_t::replace)) + '\n');
}

CommandLines::CommandLines() {
    OpenStandardInput(input_);
}

std::optional<QByteArray> CommandLines::Next() {
    for (QByteArray line = input_.readLine(); !line.isEmpty(); line = input_.readLine()) {
        ++number_;
        if (!line.trimmed().isEmpty()) return line.trimmed();
    }
    return std::nullopt;
}

}  // namespace quibra
