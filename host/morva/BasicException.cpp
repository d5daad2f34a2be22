#include "BasicException.h"

BasicException::BasicException(const tr::Tr& message)
    : std::runtime_error(message.text().toStdString())
    , message_(message) {}

BasicException::~BasicException() = default;

const tr::Tr& BasicException::message() const {
    return message_;
}
