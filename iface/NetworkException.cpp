#include "NetworkException.h"

namespace vesk {

NetworkException::NetworkException(const tr::Tr& message)
    : Exception(message) {}

NetworkException::~NetworkException() = default;

} // namespace vesk
