#include "Tr.h"

namespace tr {

Tr::Tr() = default;
Tr::Tr(const QString& text)
    : text_(text) {}
Tr::~Tr() = default;

QString Tr::text() const {
    return text_;
}

} // namespace tr
