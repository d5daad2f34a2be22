#include "Exception.h"

namespace vesk {

Exception::Exception(int code, const tr::Tr& message)
    : BasicException(message)
    , code_(code) {}

Exception::Exception(const tr::Tr& message)
    : Exception(0, message) {}

Exception::~Exception() = default;

int Exception::code() const {
    return code_;
}

} // namespace vesk
